# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
#
# Uses the library installed under `prefix`, in WORK_DIR: what CMake finds and rejects, and the
# consumer, built with CMake and with pkg-config. Needs GENERATOR, CXX_COMPILER, SOURCE_DIR, and
# NAME, under which it is found: OrvaUtils, or with Qt 6 OrvaUtils-qt6.

include("${SOURCE_DIR}/tests/support/run.cmake")

# configure(<result> <output> <source> <build> <option>...): the output of CMake for a project,
# which may fail. Results about the compiler are cached for the next call, those about packages are
# not.
function(configure result output source build)
  execute_process(
    COMMAND ${CMAKE_COMMAND} -S "${source}" -B "${build}" -G "${GENERATOR}"
      -UOrvaUtils* -UQt5* -UQt6* -UCMAKE_DISABLE_FIND_PACKAGE_* -UASKED_VERSION
      -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DCMAKE_BUILD_TYPE=Debug -DCMAKE_PREFIX_PATH=${prefix}
      -DNAME=${NAME}
      ${ARGN}
    RESULT_VARIABLE code OUTPUT_VARIABLE said ERROR_VARIABLE said)
  # CMake wraps its messages.
  string(REGEX REPLACE "[ \n]+" " " said "${said}")
  set(${result} "${code}" PARENT_SCOPE)
  set(${output} "${said}" PARENT_SCOPE)
endfunction()

# expect(<output> <text>): fails unless the output contains the text.
function(expect output text)
  string(FIND "${output}" "${text}" position)
  if(position EQUAL -1)
    message(FATAL_ERROR "\"${text}\" is not in this:\n${output}")
  endif()
endfunction()

# Removes the results of an earlier run.
foreach(build IN ITEMS optional program without_qt)
  file(REMOVE_RECURSE "${WORK_DIR}/${build}")
endforeach()

# The version. Another major version is rejected, and so is a newer one than the library's.
file(STRINGS "${SOURCE_DIR}/CMakeLists.txt" version REGEX "^  VERSION [0-9.]+$")
string(REGEX MATCH "([0-9]+)\\.([0-9]+)\\.[0-9]+" version "${version}")
set(major ${CMAKE_MATCH_1})
set(minor ${CMAKE_MATCH_2})
math(EXPR next_minor "${minor} + 1")
math(EXPR next_major "${major} + 1")
foreach(asked IN ITEMS "" ${major} ${major}.${minor} ${version})
  configure(result said "${SOURCE_DIR}/tests/consumer/optional" "${WORK_DIR}/optional"
    -DASKED_VERSION=${asked})
  expect("${said}" "got OrvaUtils ${version}")
endforeach()
foreach(asked IN ITEMS ${major}.${next_minor} ${next_major}.0 99 0.1)
  configure(result said "${SOURCE_DIR}/tests/consumer/optional" "${WORK_DIR}/optional"
    -DASKED_VERSION=${asked})
  expect("${said}" "compatible with requested version \"${asked}\"")
  expect("${said}" "${NAME}Config.cmake, version: ${version}")
  expect("${said}" "goes on without OrvaUtils")
endforeach()

# Without Qt: a program that can do without the library continues, others fail with the packages to
# install.
set(without_qt -DCMAKE_DISABLE_FIND_PACKAGE_Qt5=ON -DCMAKE_DISABLE_FIND_PACKAGE_Qt6=ON)
if(NAME MATCHES "-qt6$")
  set(qt "Qt 6 (6.2 or later) with its modules Core, Gui, Widgets, Network and Core5Compat")
  set(qt_package "qt6-base-dev qt6-5compat-dev")
else()
  set(qt "Qt 5 (5.6 or later) with its modules Core, Gui, Widgets and Network")
  set(qt_package qtbase5-dev)
endif()
configure(result said "${SOURCE_DIR}/tests/consumer/optional" "${WORK_DIR}/optional" ${without_qt})
if(NOT result EQUAL 0)
  message(FATAL_ERROR "a program that can do without OrvaUtils failed:\n${said}")
endif()
expect("${said}" "OrvaUtils needs ${qt}")
expect("${said}" "goes on without OrvaUtils")
configure(result said "${SOURCE_DIR}/tests/consumer" "${WORK_DIR}/program" ${without_qt})
if(result EQUAL 0)
  message(FATAL_ERROR "the consumer was configured without Qt:\n${said}")
endif()
expect("${said}" "it set OrvaUtils_FOUND to FALSE")
expect("${said}" "OrvaUtils needs ${qt}")
expect("${said}" "apt install ${qt_package}")

# The consumer, with CMake.
configure(result said "${SOURCE_DIR}/tests/consumer" "${WORK_DIR}/program")
if(NOT result EQUAL 0)
  message(FATAL_ERROR "the consumer is not configured:\n${said}")
endif()
run(${CMAKE_COMMAND} --build "${WORK_DIR}/program")
run("${WORK_DIR}/program/consumer")

# The consumer, with pkg-config and a bare compiler.
find_program(PKG_CONFIG pkg-config)
if(NOT PKG_CONFIG)
  message(STATUS "pkg-config not found: the consumer is built with CMake alone")
  return()
endif()
file(GLOB pc "${prefix}/lib*/pkgconfig/${NAME}.pc" "${prefix}/lib/*/pkgconfig/${NAME}.pc")
get_filename_component(pc_dir "${pc}" DIRECTORY)
get_filename_component(library_dir "${pc_dir}" DIRECTORY)
set(ENV{PKG_CONFIG_PATH} "${pc_dir}")
capture(said "${PKG_CONFIG}" --modversion ${NAME})
if(NOT said STREQUAL "${version}\n")
  message(FATAL_ERROR "pkg-config says version \"${said}\" instead of ${version}")
endif()
capture(flags "${PKG_CONFIG}" --cflags --libs ${NAME})
string(STRIP "${flags}" flags)
separate_arguments(flags UNIX_COMMAND "${flags}")
# Qt's headers require position-independent code, those of Qt 6 also C++17, and callers of the
# compiler must ask for both.
set(standard -std=c++14)
if(NAME MATCHES "-qt6$")
  set(standard -std=c++17)
endif()
run("${CXX_COMPILER}" -fPIC ${standard}
  "${SOURCE_DIR}/tests/consumer/main.cpp" -o "${WORK_DIR}/plain" ${flags})
run(${CMAKE_COMMAND} -E env "LD_LIBRARY_PATH=${library_dir}:$ENV{LD_LIBRARY_PATH}"
  "${WORK_DIR}/plain")
