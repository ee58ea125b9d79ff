// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// QExifImageHeader::read() on any bytes, and the header that results.

#include "Fuzz.h"
#include "QExifImageHeader.h"

#include <QBuffer>

namespace {

void askEverything(const QExifValue& value)
{
    const quint32 count = value.count();
    const auto holds = [&](quint16 type, int elements) {
        return quint32(elements) == (value.type() == type ? count : 0);
    };
    FUZZ_PROMISE(holds(QExifValue::Byte, value.toByteVector().size()));
    FUZZ_PROMISE(holds(QExifValue::Short, value.toShortVector().size()));
    FUZZ_PROMISE(holds(QExifValue::Long, value.toLongVector().size()));
    FUZZ_PROMISE(holds(QExifValue::SignedLong, value.toSignedLongVector().size()));
    FUZZ_PROMISE(holds(QExifValue::Rational, value.toRationalVector().size()));
    FUZZ_PROMISE(holds(QExifValue::SignedRational, value.toSignedRationalVector().size()));
    if (value.type() == QExifValue::Undefined)
        FUZZ_PROMISE(quint32(value.toByteArray().size()) == count);
    if (value.type() == QExifValue::Ascii)
        FUZZ_PROMISE(quint32(value.toString().size()) + 1 == count);
    value.toByte();
    value.toShort();
    value.toLong();
    value.toSignedLong();
    value.toRational();
    value.toSignedRational();
    value.toDateTime();
    if (value.encoding() != QExifValue::NoEncoding)
        value.toString();
}

QByteArray written(const QExifImageHeader& header)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    const int size = header.write(&buffer);
    FUZZ_PROMISE(size == buffer.data().size());
    FUZZ_PROMISE(size == header.size());
    return buffer.data();
}

/// The block that \a header writes, without the GPS pointer that writing leaves in it.
QByteArray writtenAgain(QExifImageHeader& header)
{
    header.remove(QExifImageHeader::GpsInfoIfdPointer);
    return written(header);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, size_t size)
{
    const QByteArray block(reinterpret_cast<const char*>(data), int(size));
    QBuffer device;
    device.setData(block);
    device.open(QIODevice::ReadOnly);
    QExifImageHeader header;
    const bool wasRead = header.read(&device);
    FUZZ_PROMISE(device.data() == block);
    if (!wasRead) {
        FUZZ_PROMISE(header.imageTags().isEmpty() && header.extendedTags().isEmpty()
                     && header.gpsTags().isEmpty());
        return 0;
    }
    FUZZ_PROMISE(block.startsWith(QByteArray("II*\0", 4))
                 || block.startsWith(QByteArray("MM\0*", 4)));

    for (const auto tag : header.imageTags())
        askEverything(header.value(tag));
    for (const auto tag : header.extendedTags())
        askEverything(header.value(tag));
    for (const auto tag : header.gpsTags())
        askEverything(header.value(tag));
    header.thumbnail();

    // The place of the block in the device makes no difference.
    QBuffer behindOthers;
    behindOthers.setData("JPG" + block);
    behindOthers.open(QIODevice::ReadOnly);
    behindOthers.seek(3);
    QExifImageHeader same;
    FUZZ_PROMISE(same.read(&behindOthers));
    const QByteArray first = written(header);
    FUZZ_PROMISE(written(same) == first);
    // Writing twice gives the same.
    FUZZ_PROMISE(writtenAgain(header) == first);

    // The output is a valid block.
    QBuffer result;
    result.setData(first);
    result.open(QIODevice::ReadOnly);
    QExifImageHeader readBack;
    FUZZ_PROMISE(readBack.read(&result));
    FUZZ_PROMISE(readBack.byteOrder() == header.byteOrder());
    FUZZ_PROMISE(readBack.imageTags() == [&header] {
        header.remove(QExifImageHeader::GpsInfoIfdPointer);
        return header.imageTags();
    }());
    FUZZ_PROMISE(readBack.gpsTags() == header.gpsTags());
    return 0;
}
