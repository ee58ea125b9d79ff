# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
#
# Finds the Qt that OrvaUtils is built with: the major version ORVAUTILS_QT, 5 or 6; if that is
# empty, the version that the including project has already found, else 5, else 6. Sets
# ORVAUTILS_QT_MAJOR to the version found. If it is missing, ORVAUTILS_QT_MISSING says how to
# install it; otherwise that is empty. Used by the build and by the installed package.

set(ORVAUTILS_QT_MISSING "")
set(ORVAUTILS_QT_MAJOR "${ORVAUTILS_QT}")
if(NOT ORVAUTILS_QT_MAJOR MATCHES "^(5|6|)$")
  set(ORVAUTILS_QT_MISSING "ORVAUTILS_QT is \"${ORVAUTILS_QT}\"; it can be 5, 6 or empty.")
  return()
endif()

set(ORVAUTILS_QT_MODULES Core Gui Widgets Network)
if(NOT ORVAUTILS_QT_MAJOR AND TARGET Qt6::Core AND NOT TARGET Qt5::Core)
  set(ORVAUTILS_QT_MAJOR 6)
endif()
if(NOT ORVAUTILS_QT_MAJOR STREQUAL 6)
  find_package(Qt5 5.6 QUIET COMPONENTS ${ORVAUTILS_QT_MODULES})
  if(Qt5_FOUND)
    set(ORVAUTILS_QT_MAJOR 5)
  endif()
endif()
if(NOT ORVAUTILS_QT_MAJOR STREQUAL 5)
  # FileUtils takes a QRegExp, and QExifValue uses text codecs.
  find_package(Qt6 6.2 QUIET COMPONENTS ${ORVAUTILS_QT_MODULES} Core5Compat)
  if(Qt6_FOUND)
    set(ORVAUTILS_QT_MAJOR 6)
    list(APPEND ORVAUTILS_QT_MODULES Core5Compat)
  endif()
endif()

if(Qt${ORVAUTILS_QT_MAJOR}_FOUND)
  set(ORVAUTILS_QT_LIBRARIES ${ORVAUTILS_QT_MODULES})
  list(TRANSFORM ORVAUTILS_QT_LIBRARIES PREPEND "Qt${ORVAUTILS_QT_MAJOR}::")
  set(ORVAUTILS_QT_FLOOR 5.6)
  if(ORVAUTILS_QT_MAJOR EQUAL 6)
    set(ORVAUTILS_QT_FLOOR 6.2)
  endif()
  return()
endif()

set(what_5 "Qt 5 (5.6 or later) with its modules Core, Gui, Widgets and Network")
set(how_5 "Debian: apt install qtbase5-dev; macOS: brew install qt@5")
set(what_6 "Qt 6 (6.2 or later) with its modules Core, Gui, Widgets, Network and Core5Compat")
set(how_6 "Debian: apt install qt6-base-dev qt6-5compat-dev; macOS: brew install qt")
if(ORVAUTILS_QT_MAJOR)
  set(what "${what_${ORVAUTILS_QT_MAJOR}}")
  set(how "${how_${ORVAUTILS_QT_MAJOR}}")
else()
  set(what "${what_5}, or ${what_6}")
  set(how "${how_5}; Qt 6 on Debian: apt install qt6-base-dev qt6-5compat-dev")
endif()
set(ORVAUTILS_QT_MISSING "OrvaUtils needs ${what}, and CMake did not find them. Install them (${how}), \
or name the folder in which Qt is installed in CMAKE_PREFIX_PATH.")
foreach(major IN ITEMS 5 6)
  if(Qt${major}_NOT_FOUND_MESSAGE)
    string(APPEND ORVAUTILS_QT_MISSING " What Qt says: ${Qt${major}_NOT_FOUND_MESSAGE}")
  endif()
  unset(what_${major})
  unset(how_${major})
endforeach()
unset(what)
unset(how)
