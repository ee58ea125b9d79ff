# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
#
# Builds the host, runs it and looks for the library's record in the host's own log.

include("${SOURCE_DIR}/tests/support/run.cmake")

set(log "${WORK_DIR}/host.log")
file(REMOVE "${log}")
run(${CMAKE_COMMAND} -S "${SOURCE_DIR}/tests/host" -B "${WORK_DIR}" -G "${GENERATOR}"
  -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DCMAKE_BUILD_TYPE=Debug
  -DORVAUTILS_SOURCE_DIR=${SOURCE_DIR})
run(${CMAKE_COMMAND} --build "${WORK_DIR}" --target host)
run(${CMAKE_COMMAND} -E env "HOST_LOG=${log}" "${WORK_DIR}/host")

file(READ "${log}" written)
set(expected "2 FileUtils forceCopy: /nowhere/a.txt  est introuvable !! (forceCopy)\n")
if(NOT written STREQUAL expected)
  message(FATAL_ERROR "the host's log holds\n${written}instead of\n${expected}")
endif()
