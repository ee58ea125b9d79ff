// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// How the classes that change a photograph open and change its file, and the errors that they
// report.

#ifndef ORVAUTILS_PHOTOFILE_P_H
#define ORVAUTILS_PHOTOFILE_P_H

#include <QString>

class QFile;

namespace OrvaUtilsPrivate {

struct FilePatch;

enum class PhotoFailure { NotRead, NotJpeg, Damaged, NotWritten, Irreplaceable };

/// Returns false, with a sentence for the user in \a error, if that is not null.
bool fail(QString* error, const QString& reason);
bool fail(QString* error, PhotoFailure failure);

/// The same for a file that could not be opened.
bool failToOpen(QString* error, const QFile& file);

/// openToPatch(), with the reason in \a error on failure.
bool openPhoto(QFile* file, QString* error);

/// patchFile(), refused if a kill might leave neither the old nor the new content; with the reason
/// in \a error on failure.
bool patchPhoto(QFile* file, const FilePatch& patch, QString* error);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_PHOTOFILE_P_H
