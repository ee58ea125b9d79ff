// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Lets a compiler on Linux parse our sources as on macOS. It is included first, declares all of Qt
// and of the C library as they are here, and then changes the platform macros, so that our sources
// take their branches for macOS. Names that exist only on Linux become errors, and those of macOS
// are declared. None of this is run.

#ifndef ORVAUTILS_TESTS_MACOS_H
#define ORVAUTILS_TESTS_MACOS_H

#include <bits/stdc++.h>

#include <QtCore>
#include <QtGui>
#include <QtNetwork>
#include <QtWidgets>

#include <dirent.h>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#undef Q_OS_LINUX
#define Q_OS_DARWIN
#define Q_OS_MAC
#define Q_OS_MACX
#define Q_OS_OSX

#define st_atimespec st_atim
#define st_mtimespec st_mtim
#define st_ctimespec st_ctim
#define F_FULLFSYNC 51

#undef O_TMPFILE
#undef MADV_HUGEPAGE
#pragma GCC poison O_TMPFILE MADV_HUGEPAGE FICLONE fdatasync mkostemp pipe2 renameat2 sendfile
#pragma GCC poison st_atim st_mtim st_ctim

#endif // ORVAUTILS_TESTS_MACOS_H
