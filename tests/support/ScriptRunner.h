// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ScriptRunner: has the code that the library generates read by the languages themselves.

#ifndef SCRIPTRUNNER_H
#define SCRIPTRUNNER_H

#include <QByteArray>
#include <QJsonValue>
#include <QString>

/// What a script said.
struct ScriptResult
{
    int exitCode = -1; ///< -1 when it did not run to its end
    QByteArray output;
    QByteArray errors;
};

/// Runs the interpreter \a program on a file that holds \a script.
ScriptResult runScript(const QString& program, const QByteArray& script);

/// The value of \a json, which may be any value, not only an object or an array.
QJsonValue valueOfJson(const QByteArray& json);

#endif // SCRIPTRUNNER_H
