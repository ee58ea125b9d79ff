// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The import of one picture, for ImageUtils and for ImageImporter.

#ifndef ORVAUTILS_PICTUREIMPORT_P_H
#define ORVAUTILS_PICTUREIMPORT_P_H

#include "ImageImport.h"
#include "ImageImportResult.h"

#include <QString>

namespace OrvaUtilsPrivate {

/// How an import that runs beside others is held back and stopped.
class ImportControl
{
public:
    virtual ~ImportControl() = default;

    /// Called before memory is taken for the picture, about \a bytes of it; may wait until others
    /// have given theirs back. False where the import is to end.
    virtual bool mayTake(qint64 bytes) = 0;

    /// Whether the import is to end. Asked between its steps.
    virtual bool isCancelled() const = 0;
};

/// What ImageUtils::importImage() does. \a control may be null.
ImageImportResult importPicture(const QString& src, const QString& dst, const ImageImport& how,
                                ImportControl* control = nullptr);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_PICTUREIMPORT_P_H
