// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// How the classes that change a photograph open and change its file, and what they tell where that
// fails.

#ifndef ORVAUTILS_PHOTOFILE_P_H
#define ORVAUTILS_PHOTOFILE_P_H

#include <QString>

class QFile;

namespace OrvaUtilsPrivate {

struct FilePatch;

enum class PhotoFailure { NotRead, NotJpeg, Damaged, NotWritten, Irreplaceable };

/// Returns false, with a sentence for the user in \a error where that is not null.
bool fail(QString* error, const QString& reason);
bool fail(QString* error, PhotoFailure failure);

/// The same for a file that could not be opened.
bool failToOpen(QString* error, const QFile& file);

/// openToPatch(), with the reason where it fails.
bool openPhoto(QFile* file, QString* error);

/// patchFile() for a file that is not changed unless a kill finds the old one or the new one; with
/// the reason where it fails.
bool patchPhoto(QFile* file, const FilePatch& patch, QString* error);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_PHOTOFILE_P_H
