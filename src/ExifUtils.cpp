// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ExifUtils.h"

#include "QExifImageHeader.h"

int ExifUtils::imageExifRotation(const QString& fileName)
{
    return imageExifRotation(QExifImageHeader(fileName));
}

int ExifUtils::imageExifRotation(QIODevice* device)
{
    return imageExifRotation(QExifImageHeader(device));
}

int ExifUtils::imageExifRotation(const QExifImageHeader& header)
{
    switch (header.value(QExifImageHeader::Orientation).toShort()) {
    case 3:
        return 180;
    case 6:
        return 90;
    case 8:
        return -90;
    default:
        return 0;
    }
}

bool ExifUtils::clearRotation(const QString& fileName)
{
    QExifImageHeader header;
    if (!header.loadFromJpeg(fileName))
        return false;
    header.setValue(QExifImageHeader::Orientation, QExifValue(qint32(0)));
    return header.saveToJpeg(fileName);
}
