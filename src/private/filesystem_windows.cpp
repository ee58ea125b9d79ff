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

/// Whether a file was read-only, which it is not any more: such a file is neither replaced nor
/// removed here, other than on Unix.
bool clearReadOnly(const QString& native)
{
    const DWORD attributes = GetFileAttributesW(wide(native));
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY)
        && !(attributes & FILE_ATTRIBUTE_DIRECTORY)
        && SetFileAttributesW(wide(native), attributes & ~DWORD(FILE_ATTRIBUTE_READONLY));
}

/// Whether a program has a file open, other than in order to replace or remove it.
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

/// Tries \a step until it succeeds, as long as a program holds the file \a native, but not for
/// long: readers, indexers and virus scanners let go of a file after a moment.
template <typename Step>
bool onceLetGo(const QString& native, Step step)
{
    const int attempts = 25;
    const int attemptsInARow = 5; // while nobody holds the file
    const int pause = 20; // milliseconds
    int whileFree = 0;
    for (int attempt = 1;; ++attempt) {
        if (step())
            return true;
        const DWORD reason = GetLastError();
        // Who held the file may have let go of it since the attempt: the next one, at once, tells.
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
    // Not every system of this kind refuses to put a folder in the place of a file.
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
