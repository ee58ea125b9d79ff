// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "metadatachoice_p.h"

namespace OrvaUtilsPrivate {

PictureMetadata chosenMetadata(const PictureMetadata& found, ImageImport::Metadata choice)
{
    return choice == ImageImport::AllMetadata ? found : PictureMetadata();
}

PictureMetadata withOrientation(const PictureMetadata& metadata, int orientation)
{
    Q_UNUSED(orientation)
    return metadata;
}

PictureMetadata adaptedMetadata(const PictureMetadata& metadata, const QSize& size, bool isUpright)
{
    Q_UNUSED(size)
    Q_UNUSED(isUpright)
    return metadata;
}

int orientationIn(const PictureMetadata& metadata)
{
    Q_UNUSED(metadata)
    return 0;
}

} // namespace OrvaUtilsPrivate
