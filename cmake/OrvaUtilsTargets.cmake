# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
#
# Compiler settings of all targets in this repository.

# orvautils_configure_target(<target>): warnings, sanitizers and the Qt settings of our own code.
function(orvautils_configure_target target)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
    $<$<BOOL:${ORVAUTILS_WERROR}>:-Werror>
    # A program must not contain the path of the machine it was built on.
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=)
  target_compile_definitions(${target} PRIVATE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_URL_CAST_FROM_STRING
    # A host may use names such as "signals" and "emit" itself.
    QT_NO_KEYWORDS
    # Only functions that were deprecated before Qt 5.6, the floor, have a successor that may be
    # used.
    QT_DEPRECATED_WARNINGS_SINCE=0x050600)
  if(ORVAUTILS_SANITIZE)
    target_compile_options(${target} PRIVATE
      -fsanitize=${ORVAUTILS_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=${ORVAUTILS_SANITIZE})
  endif()
  if(ORVAUTILS_COVERAGE)
    # Only code under src/ is counted, wherever it is compiled: a template in a header exists only
    # in the programs that use it. The library throws no exceptions; without this option the
    # compiler would count a branch for them after every call, which can never be taken.
    string(REGEX REPLACE "([.+*?|$(){}])" "[\\1]" sources "${PROJECT_SOURCE_DIR}/src/")
    target_compile_options(${target} PRIVATE
      --coverage -fprofile-update=atomic "-fprofile-filter-files=^${sources}.*" -fno-exceptions)
    target_link_options(${target} PRIVATE --coverage)
  endif()
endfunction()

# orvautils_precompile(<target> <header>...): precompiles headers that the target's sources include.
# Another target may share it by target_precompile_headers(... REUSE_FROM).
function(orvautils_precompile target)
  target_precompile_headers(${target} PRIVATE ${ARGN})
  # For ccache, which otherwise refuses to cache the target.
  target_compile_options(${target} PRIVATE
    $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>
    "$<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp>")
endfunction()

# The commands of Qt with the major version in their names. Before 5.15 there are none without it.
macro(orvautils_add_resources)
  if(ORVAUTILS_QT_MAJOR EQUAL 6)
    qt6_add_resources(${ARGN})
  else()
    qt5_add_resources(${ARGN})
  endif()
endmacro()
macro(orvautils_generate_moc)
  if(ORVAUTILS_QT_MAJOR EQUAL 6)
    qt6_generate_moc(${ARGN})
  else()
    qt5_generate_moc(${ARGN})
  endif()
endmacro()
