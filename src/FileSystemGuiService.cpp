// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "FileSystemGuiService.h"

#include <QProcess>

namespace {

QString openCommand()
{
    return QStringLiteral("open");
}

} // namespace

bool FileSystemGuiService::revealInFileExplorer(const QString& path)
{
    QProcess::execute(openCommand(), {QStringLiteral("-R"), path});
    return true;
}

bool FileSystemGuiService::openProgram(QObject* parent, const QString& program,
                                       const QStringList& arguments)
{
    auto* const process = new QProcess(parent);
    process->setProgram(openCommand());
    process->setArguments(QStringList({QStringLiteral("-a"), program}) + arguments);
    process->start(QIODevice::ReadWrite);
    return true;
}
