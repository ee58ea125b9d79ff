// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "DirectorySynchronizer.h"

#include "DirectoryWatcher.h"
#include "FileUtils.h"
#include "logrecord_p.h"

#include <QDir>
#include <QFile>

namespace OrvaUtilsPrivate {

class DirectorySynchronizerPrivate
{
public:
    QString mirrorOf(const QString& path) const;

    QString source;
    QString destination;
    DirectoryWatcher* watcher = nullptr; // child of the synchronizer
};

QString DirectorySynchronizerPrivate::mirrorOf(const QString& path) const
{
    QString mirror = path;
    return source.isEmpty() ? path : mirror.replace(source, destination);
}

} // namespace OrvaUtilsPrivate

DirectorySynchronizer::DirectorySynchronizer(QObject* parent)
    : QObject(parent)
    , d(std::make_unique<OrvaUtilsPrivate::DirectorySynchronizerPrivate>())
{
    d->watcher = new DirectoryWatcher(this);
    connect(d->watcher, &DirectoryWatcher::deletedFile, this,
            &DirectorySynchronizer::onFileDeleted);
    connect(d->watcher, &DirectoryWatcher::addedFiles, this,
            &DirectorySynchronizer::onFileAddedOrModified);
    connect(d->watcher, &DirectoryWatcher::modifiedFile, this,
            &DirectorySynchronizer::onFileAddedOrModified);
}

DirectorySynchronizer::~DirectorySynchronizer() = default;

bool DirectorySynchronizer::startWatcher(const QString& source, const QString& destination)
{
    d->source = QDir::cleanPath(source);
    d->destination = QDir::cleanPath(destination);
    checkDirs();
    if (d->watcher->setPath(d->source))
        return true;
    Q_EMIT error(QStringLiteral("Watcher fail"));
    ORVAUTILS_LOG_CRITICAL() << "Watcher fail";
    return false;
}

bool DirectorySynchronizer::checkDirs()
{
    if (!QDir(d->source).exists()) {
        const QString message = d->source + QStringLiteral(" doesn't exist");
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
    const QString mirror = d->mirrorOf(path);
    // A path that has no mirror stands for itself: it is not ours to remove.
    if (mirror != path && QFile::remove(mirror))
        Q_EMIT log(QStringLiteral("[DEL] %1").arg(mirror));
    else
        Q_EMIT error(QStringLiteral("unable to remove ") + mirror);
}

void DirectorySynchronizer::onFileAddedOrModified(const QString& path)
{
    const QString mirror = d->mirrorOf(path);
    const bool hasMirror = mirror != path;
    if (hasMirror)
        FileUtils::fileMkPath(mirror, nullptr);
    if (hasMirror && FileUtils::forceCopy(path, mirror))
        Q_EMIT log(QStringLiteral("[MOD] %1").arg(mirror));
    else
        Q_EMIT error(QStringLiteral("unable to copy ") + path);
}
