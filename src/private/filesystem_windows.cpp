// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "filesystem_p.h"

#include <QDir>
#include <QFileInfo>

#ifndef NOMINMAX
#define NOMINMAX // or min() and max() are macros
#endif
#include <io.h>
#include <windows.h>

namespace OrvaUtilsPrivate {

namespace {

QString nativePath(const QString& path)
{
    // The system stops at a NUL, and would find another file.
    return path.contains(QChar()) ? QString()
                                  : QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath());
}

const wchar_t* wide(const QString& text)
{
    return reinterpret_cast<const wchar_t*>(text.utf16());
}

} // namespace

bool isSameFile(const QString& one, const QString& other)
{
    const QString real = QFileInfo(one).canonicalFilePath();
    return !real.isEmpty()
        && real.compare(QFileInfo(other).canonicalFilePath(), Qt::CaseInsensitive) == 0;
}

QString replaceablePath(const QFile& file)
{
    return QFileInfo(file.fileName()).canonicalFilePath();
}

bool putOnDisk(int file, QString* reason)
{
    if (_commit(file) == 0)
        return true;
    *reason = qt_error_string(int(GetLastError()));
    return false;
}

bool setPermissions(QFile* file, QFile::Permissions permissions)
{
    return file->setPermissions(permissions);
}

bool takeAttributes(int, int)
{
    return true;
}

bool moveOver(const QString& path, const QString& newPath, QString* reason)
{
    if (MoveFileExW(wide(nativePath(path)), wide(nativePath(newPath)),
                    MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return true;
    *reason = qt_error_string(int(GetLastError()));
    return false;
}

bool takesNewFiles(const QString& folder)
{
    return QFileInfo(folder).isWritable();
}

void removeTreeByBytes(const QString& path)
{
    // Every name is a text here.
    QDir(path).removeRecursively();
}

void hideFile(const QString& path)
{
    const QString native = nativePath(path);
    const DWORD attributes = GetFileAttributesW(wide(native));
    if (attributes != INVALID_FILE_ATTRIBUTES)
        SetFileAttributesW(wide(native), attributes | FILE_ATTRIBUTE_HIDDEN);
}

} // namespace OrvaUtilsPrivate
