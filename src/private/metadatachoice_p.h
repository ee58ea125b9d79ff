// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Chooses the metadata of a picture that an import keeps.

#ifndef ORVAUTILS_METADATACHOICE_P_H
#define ORVAUTILS_METADATACHOICE_P_H

#include "ImageImport.h"
#include "picturemetadata_p.h"

#include <QSize>

namespace OrvaUtilsPrivate {

/// The part of \a found that the imported file may contain.
PictureMetadata chosenMetadata(const PictureMetadata& found, ImageImport::Metadata choice);

/// \a metadata with the orientation of a picture that is not turned, which must be kept whatever
/// else is removed.
PictureMetadata withOrientation(const PictureMetadata& metadata, int orientation);

/// \a metadata for a picture that was re-encoded in \a size: an orientation becomes upright if \a
/// isUpright, and the thumbnail, which would show the old picture, is removed.
PictureMetadata adaptedMetadata(const PictureMetadata& metadata, const QSize& size, bool isUpright);

/// The orientation that \a metadata states: 1 to 8, 0 for none.
int orientationIn(const PictureMetadata& metadata);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_METADATACHOICE_P_H
