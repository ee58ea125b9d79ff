// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Lets a compiler on Linux parse our sources as on Windows: included before everything else, it has
// all of Qt and of C++ declared as they are here and then names the platform anew, so that our own
// sources take their branches for Windows. The folder beside it holds the headers that Windows has
// and refuses those that it has not. Nothing of this is run.

#ifndef ORVAUTILS_TESTS_WINDOWS_H
#define ORVAUTILS_TESTS_WINDOWS_H

#include <bits/stdc++.h>

#include <QtCore>
#include <QtGui>
#include <QtNetwork>
#include <QtWidgets>

#undef Q_OS_LINUX
#undef Q_OS_UNIX
#define Q_OS_WIN
#define Q_OS_WIN32
#define Q_OS_WIN64

// From here on the headers that Windows has not are refused.
#define ORVAUTILS_NO_POSIX

#endif // ORVAUTILS_TESTS_WINDOWS_H
