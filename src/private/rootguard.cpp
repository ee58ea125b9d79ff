// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "rootguard_p.h"

#include <QDir>
#include <QFileInfo>
#include <QFileSystemWatcher>

namespace OrvaUtilsPrivate {

RootGuard::RootGuard() = default;

RootGuard::~RootGuard()
{
    stop();
}

void RootGuard::watch(const QString& root, QObject* context, const std::function<void()>& changed)
{
    stop();
    mPlatform = std::make_unique<QFileSystemWatcher>();
    QObject::connect(mPlatform.get(), &QFileSystemWatcher::directoryChanged, context,
                     [this, changed] {
                         renew();
                         changed();
                     });
    QString path = QDir::cleanPath(QDir::current().absoluteFilePath(root));
    for (QString above = QFileInfo(path).path(); above != path;
         path = above, above = QFileInfo(path).path())
        mFolders.insert(above, FileState());
    renew();
}

void RootGuard::stop()
{
    mFolders.clear();
    mPlatform.reset();
}

/// The folders above may have been replaced as well.
void RootGuard::renew()
{
    for (auto folder = mFolders.begin(); folder != mFolders.end(); ++folder) {
        const FileState state = stateOf(folder.key());
        if (state.isSameFile(folder.value()))
            continue;
        folder.value() = state;
        mPlatform->removePath(folder.key());
        if (state.isFolder() && QFileInfo(folder.key()).isReadable())
            mPlatform->addPath(folder.key());
    }
}

} // namespace OrvaUtilsPrivate
