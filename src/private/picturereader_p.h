// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Loading of pictures from files that may be forged, damaged or on a failing disk.

#ifndef ORVAUTILS_PICTUREREADER_P_H
#define ORVAUTILS_PICTUREREADER_P_H

#include <QSize>

class QImage;
class QString;

namespace OrvaUtilsPrivate {

/// Loads the whole picture in the file \a path. False, with \a image untouched or null, where the
/// image reader cannot, where the file cannot be read to where the reader wanted it, and where the
/// picture would not fit into memory.
bool loadWhole(const QString& path, QImage* image);

/// As loadWhole(), for the JPEG file \a path whose size is \a whole and which is to be scaled to
/// \a target, or not at all where \a target is invalid. It may be decoded at a reduced size where
/// the scaled picture will not show it.
bool loadJpeg(const QString& path, const QSize& whole, const QSize& target, QImage* image);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_PICTUREREADER_P_H
