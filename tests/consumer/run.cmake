# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
#
# Installs the library built in LIBRARY_BUILD into a new prefix, moves that elsewhere, then builds
# and runs the consumer with it, like a user without the source tree: with CMake, and with
# pkg-config.

include("${SOURCE_DIR}/tests/support/run.cmake")

set(prefix "${WORK_DIR}/prefix")
file(REMOVE_RECURSE "${WORK_DIR}/installed" "${prefix}")
run(${CMAKE_COMMAND} --install "${LIBRARY_BUILD}" --prefix "${WORK_DIR}/installed")
# The installed files must not contain the original prefix.
file(RENAME "${WORK_DIR}/installed" "${prefix}")

# The requested parts have been installed.
file(GLOB_RECURSE libraries "${prefix}/*/lib${NAME}.*")
if(NOT "${libraries}" MATCHES "${EXPECTS}")
  message(FATAL_ERROR "no library ${EXPECTS} is installed, but \"${libraries}\"")
endif()
file(GLOB_RECURSE private_headers "${prefix}/*_p.h")
if(private_headers)
  message(FATAL_ERROR "private headers are installed: ${private_headers}")
endif()

include("${SOURCE_DIR}/tests/consumer/use.cmake")

# A build of the library itself without Qt fails with the same message.
configure(result said "${SOURCE_DIR}" "${WORK_DIR}/without_qt" ${without_qt})
if(result EQUAL 0)
  message(FATAL_ERROR "the library was configured without Qt:\n${said}")
endif()
expect("${said}" "apt install ${qt_package}")
