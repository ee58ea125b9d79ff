// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// RootGuard: detects when a path may lead to another folder than before.

#ifndef ORVAUTILS_ROOTGUARD_P_H
#define ORVAUTILS_ROOTGUARD_P_H

#include "filestate_p.h"

#include <QHash>
#include <QString>

#include <functional>
#include <memory>

class QFileSystemWatcher;
class QObject;

namespace OrvaUtilsPrivate {

/// Watches the folders above a folder. The platform watches folders, not paths: it sends no
/// notification when a folder is moved away or replaced by another one.
class RootGuard
{
public:
    RootGuard();
    ~RootGuard();

    /// Watches the folders above \a root from now on. \a changed is called in the thread of
    /// \a context, which owns this guard, whenever something happened in one of them;
    /// it must not call stop() or destroy the guard.
    void watch(const QString& root, QObject* context, const std::function<void()>& changed);

    void stop();

private:
    Q_DISABLE_COPY(RootGuard)

    void renew();

    std::unique_ptr<QFileSystemWatcher> mPlatform;
    QHash<QString, FileState> mFolders;
};

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_ROOTGUARD_P_H
