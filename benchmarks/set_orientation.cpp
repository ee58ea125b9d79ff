// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Sets the orientation of one photograph to 3 (clearRotation: to 0) in one of the ways that
// scripts/losses compares: set_orientation WAY FILE.

#include "ExifEditor.h"
#include "ExifUtils.h"
#include "QExifImageHeader.h"

#include <QFile>
#include <QString>

#include <cstdlib>
#include <libexif/exif-data.h>

namespace {

bool editByLibexif(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite))
        return false;
    const QByteArray content = file.readAll();
    // Locating the segment is up to the user of the library.
    const int name = content.indexOf(QByteArray("Exif\0\0", 6));
    if (name < 4)
        return false;
    const int size = (uchar(content[name - 2]) << 8 | uchar(content[name - 1])) - 2;
    ExifData* const data = exif_data_new_from_data(
        reinterpret_cast<const unsigned char*>(content.constData()) + name, unsigned(size));
    ExifEntry* const entry = exif_content_get_entry(data->ifd[EXIF_IFD_0], EXIF_TAG_ORIENTATION);
    if (!entry) {
        exif_data_unref(data);
        return false;
    }
    exif_set_short(entry->data, exif_data_get_byte_order(data), 3);
    unsigned char* payload = nullptr;
    unsigned payloadSize = 0;
    exif_data_save_data(data, &payload, &payloadSize);
    exif_data_unref(data);
    const QByteArray segment =
        QByteArray().append(char((payloadSize + 2) >> 8)).append(char((payloadSize + 2) & 0xFF))
        + QByteArray(reinterpret_cast<const char*>(payload), int(payloadSize));
    std::free(payload);
    return file.resize(0) && file.seek(0)
        && file.write(content.left(name - 2) + segment + content.mid(name + size)) > 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3)
        return 2;
    const QByteArray way = argv[1];
    const QString path = QFile::decodeName(argv[2]);
    bool isSet = false;
    if (way == "orientation") {
        isSet = ExifUtils::setOrientation(path, 3);
    } else if (way == "edit") {
        ExifEditor editor;
        isSet = editor.load(path);
        editor.setOrientation(3);
        isSet = isSet && editor.save(path);
    } else if (way == "header") {
        QExifImageHeader header;
        isSet = header.loadFromJpeg(path);
        header.setValue(QExifImageHeader::Orientation, QExifValue(quint16(3)));
        isSet = isSet && header.saveToJpeg(path);
    } else if (way == "clear") {
        isSet = ExifUtils::clearRotation(path);
    } else if (way == "libexif") {
        isSet = editByLibexif(path);
    }
    return isSet ? 0 : 1;
}
