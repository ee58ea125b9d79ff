// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "photofile_p.h"

#include "filepatch_p.h"

#include <QCoreApplication>
#include <QFile>

namespace OrvaUtilsPrivate {

namespace {

QString sentence(PhotoFailure failure)
{
    switch (failure) {
    case PhotoFailure::NotRead:
        return QCoreApplication::translate("ExifEditor", "The file cannot be read.");
    case PhotoFailure::NotJpeg:
        return QCoreApplication::translate("ExifEditor", "The file is not a JPEG picture.");
    case PhotoFailure::Damaged:
        return QCoreApplication::translate("ExifEditor",
                                           "The EXIF data of the picture is damaged.");
    case PhotoFailure::NotWritten:
        return QCoreApplication::translate("ExifEditor", "The file cannot be written.");
    case PhotoFailure::Irreplaceable:
        break;
    }
    return QCoreApplication::translate(
        "ExifEditor",
        "The file cannot be replaced: it has several names, belongs to somebody else, or its "
        "folder takes no new file.");
}

} // namespace

bool fail(QString* error, const QString& reason)
{
    if (error)
        *error = reason;
    return false;
}

bool fail(QString* error, PhotoFailure failure)
{
    return fail(error, sentence(failure));
}

bool failToOpen(QString* error, const QFile& file)
{
    return fail(error,
                QCoreApplication::translate("ExifEditor", "The file cannot be opened: %1")
                    .arg(file.errorString()));
}

bool openPhoto(QFile* file, QString* error)
{
    return openToPatch(file) || failToOpen(error, *file);
}

bool patchPhoto(QFile* file, const FilePatch& patch, QString* error)
{
    switch (patchFile(file, patch, Irreplaceable::Refuse)) {
    case Patched::Yes:
        return true;
    case Patched::Failed:
        break;
    case Patched::Refused:
        return fail(error, PhotoFailure::Irreplaceable);
    }
    return fail(error, PhotoFailure::NotWritten);
}

} // namespace OrvaUtilsPrivate
