# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
#
# Builds the host, runs it and looks for the library's record in the host's own log or, if it has
# none, among Qt's messages; then runs targets of the host.

include("${SOURCE_DIR}/tests/support/run.cmake")

set(log "${WORK_DIR}/host.log")
file(REMOVE "${log}" "${WORK_DIR}/CMakeCache.txt")
run(${CMAKE_COMMAND} -S "${SOURCE_DIR}/tests/host" -B "${WORK_DIR}" -G "${GENERATOR}"
  -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O0
  -DFETCHCONTENT_FULLY_DISCONNECTED=ON
  -DHOST_QT=${QT_MAJOR} -DHOST_ADDS=${ADDS} -DORVAUTILS_SOURCE_DIR=${SOURCE_DIR})
run(${CMAKE_COMMAND} --build "${WORK_DIR}" --target host)

set(record "/nowhere/a.txt  est introuvable !! (forceCopy)\n")
if(ADDS STREQUAL "folder")
  run(${CMAKE_COMMAND} -E env "HOST_LOG=${log}" "${WORK_DIR}/host")
  file(READ "${log}" written)
  set(expected "2 FileUtils forceCopy: ${record}")
else()
  capture(written ${CMAKE_COMMAND} -E env "QT_MESSAGE_PATTERN=%{category} %{type}: %{message}"
    "${WORK_DIR}/host")
  set(expected "orvautils warning: ${record}")
endif()
if(NOT written STREQUAL expected)
  message(FATAL_ERROR "the log holds\n${written}instead of\n${expected}")
endif()

foreach(name IN ITEMS uninstall docs format package test)
  capture(said ${CMAKE_COMMAND} --build "${WORK_DIR}" --target ${name})
  if(NOT said MATCHES "the host's own ${name}")
    message(FATAL_ERROR "the target ${name} is not the host's:\n${said}")
  endif()
endforeach()
