// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ExifEditor on any block: a change affects nothing else, saving twice is the same as saving once,
// and the shortcuts of ExifUtils agree with the editor.

#include "ExifEditor.h"
#include "ExifUtils.h"
#include "Fuzz.h"

#include "../tests/support/TiffWalk.h"

#include <QBuffer>

namespace {

using Header = QExifImageHeader;

QByteArray jpegOf(const QByteArray& block)
{
    const int length = block.size() + 8;
    return QByteArray::fromHex("FFD8FFE1").append(char(length >> 8)).append(char(length & 0xFF))
        + QByteArray("Exif\0\0", 6) + block + QByteArray::fromHex("FFDB00040102FFD9");
}

/// The block of a saved file.
QByteArray blockOf(const QByteArray& jpeg)
{
    return jpeg.mid(12, (uchar(jpeg[4]) << 8 | uchar(jpeg[5])) - 8);
}

QList<QByteArray> without(const QByteArray& block, const QByteArray& entry)
{
    return TiffWalk(block).entriesBut({entry});
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 2 || size > 60000)
        return 0;
    const int textSize = data[0];
    const bool removes = data[1] % 4 == 0;
    const QByteArray block(reinterpret_cast<const char*>(data) + 2, int(size) - 2);
    QByteArray file = jpegOf(block);
    QBuffer buffer(&file);
    buffer.open(QIODevice::ReadWrite);
    ExifEditor editor;
    if (!editor.load(&buffer))
        return 0;
    buffer.seek(0);
    FUZZ_PROMISE(ExifUtils::imageExifOrientation(&buffer) == editor.orientation()
                 || block.size() < 14);
    editor.dateTimeOriginal();
    editor.gpsPosition(nullptr, nullptr);

    const QString artist(textSize, QLatin1Char('a'));
    if (removes)
        editor.remove(Header::Artist);
    else
        editor.setValue(Header::Artist, QExifValue(artist));
    if (!editor.save(&buffer))
        return 0;
    const QByteArray once = file;
    FUZZ_PROMISE(once.endsWith(QByteArray::fromHex("FFDB00040102FFD9")));
    FUZZ_PROMISE(editor.save(&buffer) && file == once);

    ExifEditor again;
    buffer.seek(0);
    FUZZ_PROMISE(again.load(&buffer));
    FUZZ_PROMISE(again.contains(Header::Artist) == !removes);
    if (!removes)
        FUZZ_PROMISE(again.value(Header::Artist).toString() == artist);
    // Values that extend beyond the end of the block read differently in a longer one.
    if (TiffWalk(block).isSound())
        FUZZ_PROMISE(without(blockOf(file), "IFD0 013b") == without(block, "IFD0 013b"));

    again.removeGps();
    again.removeThumbnail();
    if (again.save(&buffer))
        FUZZ_PROMISE(again.gpsTags().isEmpty());
    return 0;
}
