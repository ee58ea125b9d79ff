// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "DirectorySynchronizer.h"

#include "DirectoryWatcher.h"
#include "FileUtils.h"
#include "logrecord_p.h"

#include <QDir>
#include <QFile>

DirectorySynchronizer::DirectorySynchronizer(QObject* parent)
    : QObject(parent)
    , mWatcher(new DirectoryWatcher(this))
{
    connect(mWatcher, &DirectoryWatcher::deletedFile, this, &DirectorySynchronizer::onFileDeleted);
    connect(mWatcher, &DirectoryWatcher::addedFiles, this,
            &DirectorySynchronizer::onFileAddedOrModified);
    connect(mWatcher, &DirectoryWatcher::modifiedFile, this,
            &DirectorySynchronizer::onFileAddedOrModified);
}

bool DirectorySynchronizer::startWatcher(const QString& source, const QString& destination)
{
    mSource = QDir::cleanPath(source);
    mDestination = QDir::cleanPath(destination);
    checkDirs();
    if (mWatcher->setPath(mSource))
        return true;
    Q_EMIT error(QStringLiteral("Watcher fail"));
    ORVAUTILS_LOG_CRITICAL() << "Watcher fail";
    return false;
}

bool DirectorySynchronizer::checkDirs()
{
    if (!QDir(mSource).exists()) {
        const QString message = mSource + QStringLiteral(" doesn't exist");
        Q_EMIT error(message);
        ORVAUTILS_LOG_CRITICAL() << message;
    }
    return true;
}

bool DirectorySynchronizer::fullSync(const QString& source, const QString& destination)
{
    if (FileUtils::copyDir(source, destination, false))
        return true;
    ORVAUTILS_LOG_CRITICAL() << "FullSync fail";
    return false;
}

void DirectorySynchronizer::onFileDeleted(const QString& path)
{
    const QString mirror = mirrorOf(path);
    // A path that has no mirror stands for itself: it is not ours to remove.
    if (mirror != path && QFile::remove(mirror))
        Q_EMIT log(QStringLiteral("[DEL] %1").arg(mirror));
    else
        Q_EMIT error(QStringLiteral("unable to remove ") + mirror);
}

void DirectorySynchronizer::onFileAddedOrModified(const QString& path)
{
    const QString mirror = mirrorOf(path);
    const bool hasMirror = mirror != path;
    if (hasMirror)
        FileUtils::fileMkPath(mirror, nullptr);
    if (hasMirror && FileUtils::forceCopy(path, mirror))
        Q_EMIT log(QStringLiteral("[MOD] %1").arg(mirror));
    else
        Q_EMIT error(QStringLiteral("unable to copy ") + path);
}

QString DirectorySynchronizer::mirrorOf(const QString& path) const
{
    QString mirror = path;
    return mSource.isEmpty() ? path : mirror.replace(mSource, mDestination);
}
