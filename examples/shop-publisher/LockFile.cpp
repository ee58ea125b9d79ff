// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "LockFile.h"

#include <QFileInfo>
#include <QLockFile>
#include <QThread>

namespace {

bool isEmptyFile(const QString& path)
{
    const QFileInfo info(path);
    return info.isFile() && info.size() == 0;
}

} // namespace

bool LockFile::removeNobodys(const QString& path)
{
    if (!isEmptyFile(path))
        return false;
    // Long enough for a program that is just making it.
    QThread::msleep(100);
    return isEmptyFile(path) && QLockFile(path).removeStaleLockFile();
}
