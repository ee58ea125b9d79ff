# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
#
# A toolchain file: compiles for Windows with mingw-w64, and runs the programs with wine.
# CMAKE_PREFIX_PATH is the folder of Qt for Windows. See scripts/windows.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
find_program(CMAKE_CROSSCOMPILING_EMULATOR wine64 HINTS /usr/lib/wine)

# Programs are found on the build machine, everything else for Windows.
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 ${CMAKE_PREFIX_PATH})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
