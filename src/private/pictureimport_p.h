// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The import of one picture, for ImageUtils and for ImageImporter.

#ifndef ORVAUTILS_PICTUREIMPORT_P_H
#define ORVAUTILS_PICTUREIMPORT_P_H

#include "ImageImport.h"
#include "ImageImportResult.h"

#include <QString>

namespace OrvaUtilsPrivate {

/// Delays and cancels an import that runs in parallel with others.
class ImportControl
{
public:
    virtual ~ImportControl() = default;

    /// Called before about \a bytes of memory are allocated for the picture; may wait until other
    /// imports have freed theirs. Returns false if the import is to be cancelled.
    virtual bool mayTake(qint64 bytes) = 0;

    /// Whether the import is to be cancelled. Called between its steps.
    virtual bool isCancelled() const = 0;
};

/// Implements ImageUtils::importImage(). \a control may be null.
ImageImportResult importPicture(const QString& src, const QString& dst, const ImageImport& how,
                                ImportControl* control = nullptr);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_PICTUREIMPORT_P_H
