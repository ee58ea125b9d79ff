// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ChildProcess.h"

#include <QCoreApplication>
#include <QProcess>
#include <QProcessEnvironment>

#include <cstring>

#include <sys/resource.h>

namespace {

const char childOption[] = "--child-role";

} // namespace

ChildResult runChild(const char* roleName)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_MESSAGE_PATTERN"),
                       QStringLiteral("%{type} %{category} %{file} %{function}: %{message}"));

    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(),
                  {QLatin1String(childOption), QLatin1String(roleName)});
    const bool finished = process.waitForFinished(120000);
    if (!finished) {
        process.kill();
        process.waitForFinished();
    }
    return {finished, process.exitStatus() == QProcess::CrashExit, process.exitCode(),
            process.readAllStandardError()};
}

ChildRole childRole(int argc, char** argv, const QMap<QByteArray, ChildRole>& roles)
{
    if (argc != 3 || std::strcmp(argv[1], childOption) != 0)
        return ChildRole();

    // Some roles end by a signal on purpose: no core files.
    const rlimit none = {0, 0};
    setrlimit(RLIMIT_CORE, &none);
    return roles.value(argv[2], [] { return 2; });
}
