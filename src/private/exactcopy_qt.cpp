// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "exactcopy_p.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace OrvaUtilsPrivate {

namespace {

void takeTime(const QString& source, QFile* file)
{
#if QT_VERSION >= QT_VERSION_CHECK(5, 10, 0)
    file->setFileTime(QFileInfo(source).lastModified(), QFileDevice::FileModificationTime);
#else
    Q_UNUSED(source)
    Q_UNUSED(file)
#endif
}

} // namespace

bool copyFileExactly(const QString& source, const QString& destination, qint64* size,
                     QString* reason)
{
    QFile from(source);
    if (!from.copy(destination)) {
        *reason = from.errorString();
        return false;
    }
    *size = QFileInfo(destination).size();
    QFile to(destination);
    if (to.open(QIODevice::ReadWrite))
        takeTime(source, &to);
    return true;
}

bool copyLinkExactly(const QString& source, const QString& destination, QString* reason)
{
    QFile target(QFileInfo(source).symLinkTarget());
    if (target.link(destination))
        return true;
    *reason = target.errorString();
    return false;
}

bool makePrivateFolder(const QString& path, QString* reason)
{
    if (QDir().mkdir(path))
        return true;
    *reason = QStringLiteral("mkdir");
    return false;
}

bool finishFolderExactly(const QString& source, const QString& destination, QString*)
{
    QFile::setPermissions(destination, QFile::permissions(source));
    return true;
}

} // namespace OrvaUtilsPrivate
