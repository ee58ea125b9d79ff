// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "filepatch_p.h"

#include "replacement_p.h"

#include <QFile>

#include <algorithm>
#include <iterator>

namespace OrvaUtilsPrivate {

namespace {

bool writeAt(QIODevice* device, qint64 position, const char* data, qint64 size)
{
    if (!device->seek(position) || device->write(data, size) != size)
        return false;
    auto* const file = qobject_cast<QFileDevice*>(device);
    return !file || file->flush();
}

bool writeAt(QIODevice* device, qint64 position, const QByteArray& bytes)
{
    return writeAt(device, position, bytes.constData(), bytes.size());
}

bool readAt(QIODevice* device, qint64 position, QByteArray* bytes)
{
    return device->seek(position) && device->read(bytes->data(), bytes->size()) == bytes->size();
}

/// Replaces the content of a device with longer content. The part beyond the old end is written
/// first, so that a lack of space is detected while the old content is still intact.
bool replaceContent(QIODevice* device, const QByteArray& before, const QByteArray& after)
{
    const int oldSize = int(before.size());
    const bool grown =
        writeAt(device, oldSize, after.constData() + oldSize, after.size() - oldSize);
    if (grown && writeAt(device, 0, after.constData(), oldSize))
        return true;
    if (grown)
        writeAt(device, 0, before);
    if (auto* const file = qobject_cast<QFileDevice*>(device))
        file->resize(oldSize);
    return false;
}

/// Reads the bytes that a patch of the same length replaces. False if the file cannot be read.
bool readBefore(QIODevice* device, FilePatch* patch)
{
    if (patch->before.size() == patch->bytes.size())
        return true;
    patch->before = QByteArray(patch->bytes.size(), Qt::Uninitialized);
    return readAt(device, patch->begin, &patch->before);
}

/// Removes unchanged bytes from both ends of a patch.
void trimUnchanged(FilePatch* patch)
{
    const QByteArray& before = patch->before;
    const QByteArray& after = patch->bytes;
    const auto first = std::mismatch(after.begin(), after.end(), before.begin()).first;
    const auto last =
        std::mismatch(after.rbegin(), std::make_reverse_iterator(first), before.rbegin()).first;
    const int at = static_cast<int>(first - after.begin());
    const int size = static_cast<int>(last.base() - first);
    patch->end = patch->begin + at + size;
    patch->begin += at;
    patch->before = before.mid(at, size);
    patch->bytes = after.mid(at, size);
}

/// Whether a process that is killed while it writes these bytes has written either all of them or
/// none: the system copies them page by page, and a killed process ends between two pages. No
/// system has smaller pages.
bool isWrittenAtOnce(const FilePatch& patch)
{
    const qint64 pageSize = 4096;
    return patch.begin / pageSize == (patch.end - 1) / pageSize;
}

/// Patches a file in place, and closes it: some file systems report a failure only then.
Patched patchAndClose(QFile* file, const FilePatch& patch)
{
    const bool isPatched = patchInPlace(file, patch);
    file->close();
    return isPatched && file->error() == QFileDevice::NoError ? Patched::Yes : Patched::Failed;
}

} // namespace

bool openToPatch(QFile* file)
{
    // The system would end the path there, and open another file.
    if (file->fileName().contains(QChar()))
        return false;
#if QT_VERSION >= QT_VERSION_CHECK(5, 11, 0)
    return !file->fileName().isEmpty()
        && file->open(QIODevice::ReadWrite | QIODevice::ExistingOnly | QIODevice::Unbuffered);
#else
    return file->exists() && file->open(QIODevice::ReadWrite | QIODevice::Unbuffered);
#endif
}

Patched patchFile(QFile* file, FilePatch patch, Irreplaceable irreplaceable)
{
    if (!patch.movesWhatFollows()) {
        if (!readBefore(file, &patch))
            return Patched::Failed;
        trimUnchanged(&patch);
        if (patch.bytes.isEmpty())
            return Patched::Yes;
        if (isWrittenAtOnce(patch))
            return patchAndClose(file, patch);
    }
    switch (replaceBytes(file, patch.begin, patch.end, patch.bytes, patch.file)) {
    case Replaced::Yes:
        return Patched::Yes;
    case Replaced::No:
        return Patched::Failed;
    case Replaced::NotTried:
        break;
    }
    if (irreplaceable == Irreplaceable::Refuse)
        return Patched::Refused;
    return file->isOpen() || openToPatch(file) ? patchAndClose(file, patch) : Patched::Failed;
}

bool patchInPlace(QIODevice* device, FilePatch patch)
{
    if (!patch.movesWhatFollows()) {
        if (!readBefore(device, &patch))
            return false;
        const bool isWritten = writeAt(device, patch.begin, patch.bytes);
        if (!isWritten)
            writeAt(device, patch.begin, patch.before);
        return isWritten;
    }
    if (!device->seek(0))
        return false;
    const QByteArray before = device->readAll();
    if (before.size() != device->size())
        return false;
    QByteArray after = before.left(static_cast<int>(patch.begin)) + patch.bytes;
    after.append(before.constData() + patch.end, before.size() - static_cast<int>(patch.end));
    return replaceContent(device, before, after);
}

} // namespace OrvaUtilsPrivate
