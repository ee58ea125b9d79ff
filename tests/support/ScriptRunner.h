// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ScriptRunner: runs interpreters on the code that the library generates.

#ifndef SCRIPTRUNNER_H
#define SCRIPTRUNNER_H

#include <QByteArray>
#include <QJsonValue>
#include <QString>

/// The outcome of a script.
struct ScriptResult
{
    int exitCode = -1; ///< -1 if it did not run to its end
    QByteArray output;
    QByteArray errors;
};

/// Runs the interpreter \a program on a file with the content \a script.
ScriptResult runScript(const QString& program, const QByteArray& script);

/// The value of \a json, which need not be an object or an array.
QJsonValue valueOfJson(const QByteArray& json);

#endif // SCRIPTRUNNER_H
