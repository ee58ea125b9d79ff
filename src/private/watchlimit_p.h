// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The reason why the platform refuses to watch files, as a text for the user.

#ifndef ORVAUTILS_WATCHLIMIT_P_H
#define ORVAUTILS_WATCHLIMIT_P_H

#include <QString>
#include <QStringList>

namespace OrvaUtilsPrivate {

/// The reason why \a paths, which must not be empty, could not be watched: they may not be read, or
/// the platform's limit is reached, with the way to raise it. Translated in the context
/// "DirectoryWatcher".
QString refusalReason(const QStringList& paths);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_WATCHLIMIT_P_H
