# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
#
# Installs the library that is built in LIBRARY_BUILD into a fresh prefix, moves that elsewhere, then
# builds and runs the consumer against it, as a user who has never seen the source tree would: with
# CMake, and with pkg-config.

include("${SOURCE_DIR}/tests/support/run.cmake")

set(prefix "${WORK_DIR}/prefix")
file(REMOVE_RECURSE "${WORK_DIR}/installed" "${prefix}")
run(${CMAKE_COMMAND} --install "${LIBRARY_BUILD}" --prefix "${WORK_DIR}/installed")
# What is installed must not know where that was.
file(RENAME "${WORK_DIR}/installed" "${prefix}")

# What was installed is what was asked for.
file(GLOB_RECURSE libraries "${prefix}/*/lib${NAME}.*")
if(NOT "${libraries}" MATCHES "${EXPECTS}")
  message(FATAL_ERROR "no library ${EXPECTS} is installed, but \"${libraries}\"")
endif()
file(GLOB_RECURSE private_headers "${prefix}/*_p.h")
if(private_headers)
  message(FATAL_ERROR "private headers are installed: ${private_headers}")
endif()

include("${SOURCE_DIR}/tests/consumer/use.cmake")

# Who builds the library itself without Qt is told the same.
configure(result said "${SOURCE_DIR}" "${WORK_DIR}/without_qt" ${without_qt})
if(result EQUAL 0)
  message(FATAL_ERROR "the library was configured without Qt:\n${said}")
endif()
expect("${said}" "apt install ${qt_package}")
