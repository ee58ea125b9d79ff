// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ChildRole: a part of a test that ends its program and therefore runs in a separate process.
//
//     int main(int argc, char** argv)
//     {
//         if (const ChildRole role = childRole(argc, argv, {{"abort", [] { abort(); return 0; }}}))
//             return role();
//         ...
//     }
//
//     void tst_Something::aborts() { QVERIFY(!runChildRole("abort").exitedNormally); }

#ifndef CHILDROLE_H
#define CHILDROLE_H

#include "ChildProgram.h"
#include "SystemCalls.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QMap>

#include <cstring>
#include <functional>

/// What a child process runs; returns its exit code.
using ChildRole = std::function<int()>;

/// Starts the program of the calling test again in the role \a name and waits until it ends. The
/// child writes each log message as "type category file function: text".
inline ChildResult runChildRole(const char* name)
{
    return runChildProgram(QCoreApplication::applicationFilePath(),
                           {QStringLiteral("--child-role"), QString::fromUtf8(name)},
                           {{QStringLiteral("QT_MESSAGE_PATTERN"),
                             QStringLiteral("%{type} %{category} %{file} %{function}: "
                                            "%{message}")}});
}

/// The role that this process was started for; empty in the test itself. Must be called first in
/// main(). A process that is started for an unknown role exits with code 2.
inline ChildRole childRole(int argc, char** argv, const QMap<QByteArray, ChildRole>& roles)
{
    if (argc != 3 || std::strcmp(argv[1], "--child-role") != 0)
        return ChildRole();

    // Some roles are ended by a signal on purpose: leave no core files.
    const rlimit none = {0, 0};
    setrlimit(RLIMIT_CORE, &none);
    return roles.value(argv[2], [] { return 2; });
}

#endif // CHILDROLE_H
