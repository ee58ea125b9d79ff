// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "MoveOver.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

bool moveOver(const QString& path, const QString& target, QString* reason)
{
#ifdef Q_OS_WIN
    const auto native = [](const QString& name) {
        return QDir::toNativeSeparators(QFileInfo(name).absoluteFilePath()).toStdWString();
    };
    if (MoveFileExW(native(path).c_str(), native(target).c_str(), MOVEFILE_REPLACE_EXISTING))
        return true;
    *reason = qt_error_string(int(GetLastError()));
#else
    if (std::rename(QFile::encodeName(path).constData(), QFile::encodeName(target).constData())
        == 0)
        return true;
    *reason = QString::fromLocal8Bit(std::strerror(errno));
#endif
    return false;
}
