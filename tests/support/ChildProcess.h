// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ChildProcess: a part of a test that ends its program, run in a process of its own.
//
//     int main(int argc, char** argv)
//     {
//         if (const ChildRole role = childRole(argc, argv, {{"abort", [] { abort(); return 0; }}}))
//             return role();
//         ...
//     }
//
//     void tst_Something::aborts() { QVERIFY(runChild("abort").crashed); }

#ifndef CHILDPROCESS_H
#define CHILDPROCESS_H

#include <QByteArray>
#include <QMap>

#include <functional>

/// What a child process does; its result is the exit code.
using ChildRole = std::function<int()>;

/// How a child process ended.
struct ChildResult
{
    bool finished; ///< false if it had to be killed, or did not start
    bool crashed; ///< ended by a signal, for example by qFatal()
    int exitCode; ///< of one that did not crash
    QByteArray errors; ///< what it wrote to its standard error output
};

/// Runs the program of the calling test again, in the role of that name, and waits for its end.
/// The child writes each log message as "type category file function: text".
ChildResult runChild(const char* roleName);

/// The role that this process was started for; empty in the test itself. To be called first in
/// main(). A process that was started for an unknown role ends at once with exit code 2.
ChildRole childRole(int argc, char** argv, const QMap<QByteArray, ChildRole>& roles);

#endif // CHILDPROCESS_H
