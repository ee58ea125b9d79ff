// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// moveOver: a file that takes the place of another one.

#ifndef MOVEOVER_H
#define MOVEOVER_H

class QString;

/// Moves the file \a path to \a target, where another one may be. Not QFile::rename(), which never
/// replaces: the old file stays until the new one is there. On failure \a reason says why.
bool moveOver(const QString& path, const QString& target, QString* reason);

#endif // MOVEOVER_H
