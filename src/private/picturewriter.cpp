// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "picturewriter_p.h"

#include "replacement_p.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFileDevice>
#include <QImage>
#include <QImageWriter>

namespace OrvaUtilsPrivate {

namespace {

/// Replaces what is at \a dst with what \a write writes to the device that it is given.
template <typename Write>
SaveResult replaceWith(const QString& dst, QString* error, Write write)
{
    Replacement replacement(dst, Replacement::Old::Removed);
    // In a folder in which no file can be created, none can be removed either.
    const bool begun = replacement.begin();
    if (begun && !write(replacement.device()))
        return SaveResult::CannotSave;
    if (begun && replacement.commit())
        return SaveResult::Saved;
    *error = replacement.reason();
    return replacement.replaces() && replacement.failure() != Replacement::Failure::Content
        ? SaveResult::CannotRemove
        : SaveResult::CannotSave;
}

/// Writes \a image to \a file and hands it to the operating system.
bool encode(const QImage& image, QFileDevice& file, const Encoding& encoding, QString* error)
{
    QImageWriter writer(&file, encoding.format);
    if (encoding.progressive) {
        writer.setCompression(encoding.quality);
        writer.setProgressiveScanWrite(true);
    } else {
        writer.setQuality(qMin(encoding.quality, 100));
    }
    if (!writer.write(image)) {
        *error = writer.errorString();
        return false;
    }
    // The last bytes are still in the buffer of the file: a full disk may be noticed only now.
    if (!file.flush()) {
        *error = file.errorString();
        return false;
    }
    return true;
}

} // namespace

bool encodeInMemory(const QImage& image, const Encoding& encoding, QByteArray* bytes,
                    QString* error)
{
    QBuffer buffer(bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, encoding.format);
    if (encoding.format == "jpeg" || encoding.format == "webp")
        writer.setQuality(encoding.quality);
    writer.setProgressiveScanWrite(encoding.progressive);
    if (writer.write(image))
        return true;
    *error = writer.errorString();
    return false;
}

SaveResult replacePicture(const QImage& image, const QString& dst, const Encoding& encoding,
                          QString* error)
{
    return replaceWith(dst, error,
                       [&](QFileDevice& file) { return encode(image, file, encoding, error); });
}

bool writePicture(const QImage& image, const QString& path, const Encoding& encoding,
                  QString* error)
{
    Replacement replacement(path, Replacement::Old::WrittenTo);
    replacement.setDirectWriteFallback(true);
    if (!replacement.begin()) {
        // The message of a writer that opens the file itself.
        *error = QCoreApplication::translate("QImageWriter", "Cannot open device for writing: %1")
                     .arg(replacement.reason());
        return false;
    }
    if (!encode(image, replacement.device(), encoding, error))
        return false;
    if (!replacement.commit()) {
        *error = replacement.reason();
        return false;
    }
    return true;
}

SaveResult replaceBytes(const QByteArray& bytes, const QString& dst, QString* error)
{
    return replaceWith(dst, error, [&](QFileDevice& file) {
        if (file.write(bytes) == bytes.size() && file.flush())
            return true;
        *error = file.errorString();
        return false;
    });
}

} // namespace OrvaUtilsPrivate
