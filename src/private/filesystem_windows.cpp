// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "filesystem_p.h"

#include <QDir>
#include <QFileInfo>

#ifndef NOMINMAX
#define NOMINMAX // otherwise min() and max() are macros
#endif
#include <io.h>
#include <windows.h>

namespace OrvaUtilsPrivate {

namespace {

QString nativePath(const QString& path)
{
    // The system would stop at a NUL and find another file.
    return path.contains(QChar()) ? QString()
                                  : QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath());
}

const wchar_t* wide(const QString& text)
{
    return reinterpret_cast<const wchar_t*>(text.utf16());
}

/// Clears the read-only attribute of a file. Returns false if there was nothing to clear, or it
/// failed. Unlike on Unix, a read-only file can be neither replaced nor removed.
bool clearReadOnly(const QString& native)
{
    const DWORD attributes = GetFileAttributesW(wide(native));
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY)
        && !(attributes & FILE_ATTRIBUTE_DIRECTORY)
        && SetFileAttributesW(wide(native), attributes & ~DWORD(FILE_ATTRIBUTE_READONLY));
}

/// Whether a program has a file open in a way that prevents replacing or removing it.
bool isHeld(const QString& native)
{
    const HANDLE file =
        CreateFileW(wide(native), DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return GetLastError() == ERROR_SHARING_VIOLATION;
    CloseHandle(file);
    return false;
}

/// Repeats \a step until it succeeds while a program has the file \a native open, but not for long:
/// readers, indexers and virus scanners close a file after a moment.
template <typename Step>
bool onceLetGo(const QString& native, Step step)
{
    const int attempts = 25;
    const int attemptsInARow = 5; // while no program has the file open
    const int pause = 20; // milliseconds
    int whileFree = 0;
    for (int attempt = 1;; ++attempt) {
        if (step())
            return true;
        const DWORD reason = GetLastError();
        // The file may have been closed since the attempt; the next one then follows at once.
        const bool held = isHeld(native);
        whileFree = held ? 0 : whileFree + 1;
        SetLastError(reason);
        if (attempt == attempts || whileFree == attemptsInARow)
            return false;
        if (held)
            Sleep(pause);
    }
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
    const QString from = nativePath(path);
    const QString to = nativePath(newPath);
    const DWORD moved = GetFileAttributesW(wide(from));
    const DWORD replaced = GetFileAttributesW(wide(to));
    const bool isOverFile =
        replaced != INVALID_FILE_ATTRIBUTES && !(replaced & FILE_ATTRIBUTE_DIRECTORY);
    // Not every implementation of Windows refuses to replace a file with a folder.
    if (isOverFile && moved != INVALID_FILE_ATTRIBUTES && (moved & FILE_ATTRIBUTE_DIRECTORY)) {
        *reason = qt_error_string(ERROR_DIRECTORY);
        return false;
    }
    const bool isReadOnly = isOverFile && moved != INVALID_FILE_ATTRIBUTES && clearReadOnly(to);
    const auto move = [&] {
        return MoveFileExW(wide(from), wide(to), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)
            != 0;
    };
    if (isOverFile ? onceLetGo(to, move) : move())
        return true;
    *reason = qt_error_string(int(GetLastError()));
    if (isReadOnly)
        SetFileAttributesW(wide(to), replaced);
    return false;
}

bool removeOldFile(QFile* file)
{
    const QString native = nativePath(file->fileName());
    const DWORD attributes = GetFileAttributesW(wide(native));
    const bool isReadOnly = clearReadOnly(native);
    if (onceLetGo(native, [&] { return file->remove(); }))
        return true;
    if (isReadOnly)
        SetFileAttributesW(wide(native), attributes);
    return false;
}

bool takesNewFiles(const QString& folder)
{
    return QFileInfo(folder).isWritable();
}

void removeTreeByBytes(const QString& path)
{
    // Here a QString can represent every name.
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
