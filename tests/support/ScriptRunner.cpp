// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ScriptRunner.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QTemporaryDir>

ScriptResult runScript(const QString& program, const QByteArray& script)
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("script")));
    if (!file.open(QIODevice::WriteOnly) || file.write(script) != script.size())
        return ScriptResult();
    file.close();

    QProcess process;
    // Settings of the machine, such as a file of certificates, may cause a warning.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QStringList names = environment.keys();
    for (const QString& name : names) {
        if (name.startsWith(QLatin1String("NODE_")))
            environment.remove(name);
    }
    process.setProcessEnvironment(environment);
    process.start(program, {file.fileName()});
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
        return ScriptResult();
    ScriptResult result;
    result.exitCode = process.exitCode();
    result.output = process.readAllStandardOutput();
    result.errors = process.readAllStandardError();
    return result;
}

QJsonValue valueOfJson(const QByteArray& json)
{
    return QJsonDocument::fromJson('[' + json + ']').array().at(0);
}
