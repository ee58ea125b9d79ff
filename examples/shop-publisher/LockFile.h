// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// LockFile: what QLockFile leaves to its users.

#ifndef LOCKFILE_H
#define LOCKFILE_H

#include <QString>

namespace LockFile {

/// Removes the lock file \a path when it names nobody, and stays so for a tenth of a second: that
/// of a program which was killed between making and filling it. QLockFile would respect it for half
/// a minute, or for ever. One that a program holds is never removed. False when it was not removed.
bool removeNobodys(const QString& path);

} // namespace LockFile

#endif // LOCKFILE_H
