// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ImageImportResult: the result of importing a picture.

#ifndef ORVAUTILS_IMAGEIMPORTRESULT_H
#define ORVAUTILS_IMAGEIMPORTRESULT_H

#include "orvautils_export.h"

#include <QByteArray>
#include <QMetaType>
#include <QSize>
#include <QString>

QT_BEGIN_NAMESPACE
class QDebug;
QT_END_NAMESPACE

/// The result of ImageUtils::importImage() and ImageImporter.
struct ImageImportResult
{
    /// How an import can end.
    enum Status {
        Imported, ///< the destination is the picture, re-encoded
        Copied, ///< the destination is the picture; its pixels were copied as they are stored
        NotFound, ///< there is no such source
        NotAnImage, ///< Qt has no reader for the source
        TooLarge, ///< the source has more pixels than allowed, or than fit into memory
        Truncated, ///< the source is truncated, and that is refused or leaves nothing to decode
        NotReadable, ///< the source cannot be read or decoded
        NotWritable, ///< the destination cannot be written, or not in that format
        Cancelled ///< the import was cancelled before it was complete
    };

    /// Whether the destination is the imported picture now. If not, what was there before is
    /// unchanged.
    explicit operator bool() const { return status == Imported || status == Copied; }

    /// How the import ended.
    Status status = NotFound;
    /// Why the import failed: one translated sentence for a user, without any folder. Empty if it
    /// succeeded.
    QString error;
    /// The format of the imported file, such as "jpeg"; that of the source if the import failed.
    QByteArray format;
    /// The size of the source as its header states it, not rotated; invalid if it is unknown.
    QSize sourceSize;
    /// The size of the imported picture; invalid if the import failed.
    QSize size;
    /// The orientation of the source: 1 to 8 as in EXIF, 0 if it states none. For formats other
    /// than JPEG it is what Qt's reader reports, which is 0 for an upright picture.
    int orientation = 0;
    /// Whether the source ends prematurely. The missing part is grey, or whatever else the image
    /// reader makes of it.
    bool truncated = false;
};

Q_DECLARE_METATYPE(ImageImportResult)

/// Writes how the import ended, and what is known about the picture:
///
/// \code
/// qDebug() << result;
/// // ImageImportResult(Imported, "jpeg", 4000 x 3000 to 1600 x 1200, orientation 6)
/// // ImageImportResult(NotReadable, "beach.jpg cannot be read")
/// \endcode
///
/// \relates ImageImportResult
ORVAUTILS_EXPORT QDebug operator<<(QDebug debug, const ImageImportResult& result);

#endif // ORVAUTILS_IMAGEIMPORTRESULT_H
