// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// openExistingFile(): opens a file to change bytes in the middle of it.
//
// This header is private to the library and is not installed.

#ifndef ORVAUTILS_EXISTINGFILE_H
#define ORVAUTILS_EXISTINGFILE_H

#include <QFile>

/// Opens \a file for reading and writing where it exists; opening alone would create it.
/// Unbuffered, so that a write that fails is known at once and what was there can be put back.
inline bool openExistingFile(QFile* file)
{
#if QT_VERSION >= QT_VERSION_CHECK(5, 11, 0)
    return !file->fileName().isEmpty()
        && file->open(QIODevice::ReadWrite | QIODevice::ExistingOnly | QIODevice::Unbuffered);
#else
    return file->exists() && file->open(QIODevice::ReadWrite | QIODevice::Unbuffered);
#endif
}

#endif // ORVAUTILS_EXISTINGFILE_H
