# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
#
# Test programs that are not built for Windows, and why. A test function that needs something that
# Windows or wine lacks skips itself: see SKIP_ON_WINDOWS() and SKIP_UNDER_WINE() in
# support/SystemCalls.h, and scripts/windows.

set(ORVAUTILS_NOT_ON_WINDOWS
  "Kills, KillsPublisher: they send SIGKILL, and the child must end with its test"
  "Faults: a library that takes the place of the C library's calls, which is for Linux"
  "ApplicationFrameX11, WidgetUtilsX11, WidgetGalleryKeyboardX11: they need an X server"
  "FileUtils*Portable: what they compile with a macro is what Windows has anyway"
  "host-log, host-content, consumer, consumer-static: builds of their own, with no toolchain file"
  "exported-symbols: reads an ELF file"
  "the part of ExifEditorReaders that libexif judges: the library is not there for Windows")

if(WIN32)
  foreach(line IN LISTS ORVAUTILS_NOT_ON_WINDOWS)
    message(STATUS "Not for Windows: ${line}")
  endforeach()
endif()
