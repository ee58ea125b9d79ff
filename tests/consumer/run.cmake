# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
#
# Installs the library into a fresh prefix, moves that elsewhere, then builds and runs the consumer
# against it, as a user who has never seen the source tree would: with CMake, and with pkg-config.

include("${SOURCE_DIR}/tests/support/run.cmake")

if(KIND STREQUAL "shared")
  set(shared ON)
else()
  set(shared OFF)
endif()

set(library_build "${WORK_DIR}/library")
set(prefix "${WORK_DIR}/prefix")
file(REMOVE_RECURSE "${WORK_DIR}/installed" "${prefix}")

run(${CMAKE_COMMAND} -S "${SOURCE_DIR}" -B "${library_build}" -G "${GENERATOR}"
  -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DCMAKE_BUILD_TYPE=Debug -DBUILD_SHARED_LIBS=${shared}
  -DORVAUTILS_BUILD_TESTS=OFF -DORVAUTILS_BUILD_EXAMPLES=OFF -DORVAUTILS_BUILD_BENCHMARKS=OFF)
run(${CMAKE_COMMAND} --build "${library_build}")
run(${CMAKE_COMMAND} --install "${library_build}" --prefix "${WORK_DIR}/installed")
# What is installed must not know where that was.
file(RENAME "${WORK_DIR}/installed" "${prefix}")

include("${SOURCE_DIR}/tests/consumer/use.cmake")

# Who builds the library itself without Qt is told the same.
configure(result said "${SOURCE_DIR}" "${WORK_DIR}/without_qt" ${without_qt})
if(result EQUAL 0)
  message(FATAL_ERROR "the library was configured without Qt:\n${said}")
endif()
expect("${said}" "apt install qtbase5-dev")
