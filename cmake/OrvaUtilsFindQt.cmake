# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
#
# Finds the Qt that OrvaUtils is made with. Where it is missing, ORVAUTILS_QT_MISSING tells how to
# get it; else it is empty. Used by the build and by the installed package.

find_package(Qt5 5.6 QUIET COMPONENTS Core Gui Widgets Network)
set(ORVAUTILS_QT_MISSING "")
if(NOT Qt5_FOUND)
  set(ORVAUTILS_QT_MISSING
"OrvaUtils needs Qt 5 (5.6 or later) with its modules Core, Gui, Widgets and Network, and CMake did \
not find them. Install them (Debian: apt install qtbase5-dev; macOS: brew install qt@5), or name the \
folder in which Qt 5 is installed in CMAKE_PREFIX_PATH.")
  if(Qt5_NOT_FOUND_MESSAGE)
    string(APPEND ORVAUTILS_QT_MISSING " What Qt says: ${Qt5_NOT_FOUND_MESSAGE}")
  endif()
endif()
