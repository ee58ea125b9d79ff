// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "picturewriter_p.h"

#include "filesystem_p.h"

#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageWriter>

namespace OrvaUtilsPrivate {

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
    // The last bytes are still in the buffer of the file: a full disk may show only now.
    if (!file.flush()) {
        *error = file.errorString();
        return false;
    }
    return true;
}

SaveResult replacePicture(const QImage& image, const QString& dst, const Encoding& encoding,
                          QString* error)
{
    const bool replaces = QFileInfo::exists(dst);
    QFile file(pathBeside(dst));
    // A folder in which no file can be made does not let go of one either.
    if (!file.open(QIODevice::WriteOnly) && replaces) {
        *error = file.errorString();
        return SaveResult::CannotRemove;
    }

    bool encoded = encode(image, file, encoding, error);
    // Not even a power failure may find the old picture gone and the new one not there yet.
    if (encoded && replaces && !putOnDisk(file.handle(), error))
        encoded = false;
    file.close();
    // Some file systems tell only now that they are full.
    if (encoded && file.error() != QFileDevice::NoError) {
        *error = file.errorString();
        encoded = false;
    }
    if (encoded && moveOver(file.fileName(), dst, error))
        return SaveResult::Saved;
    file.remove();
    return encoded && replaces ? SaveResult::CannotRemove : SaveResult::CannotSave;
}

} // namespace OrvaUtilsPrivate
