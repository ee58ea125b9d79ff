// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Sandbox: a folder for one test, and helpers that make, read and list files. A helper that fails
// ends the program, so that no test continues with less than it asked for.

#ifndef SANDBOX_H
#define SANDBOX_H

#include "SystemCalls.h"

#include <QByteArray>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#ifdef Q_OS_WIN
#include <QTest>
#endif

#include <cstdio>

// Files

/// Makes the folder \a path and all folders above it.
inline void makeFolder(const QString& path)
{
    if (!QDir().mkpath(path))
        qFatal("cannot make %s", qPrintable(path));
}

/// Writes \a content to \a path and makes missing folders.
inline void writeFile(const QString& path, const QByteArray& content = "content")
{
    makeFolder(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush())
        qFatal("cannot write %s", qPrintable(path));
}

/// The whole content of \a path, or "(cannot be read)", to tell it from an empty file.
inline QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(cannot be read)");
}

/// Ends the program. On Windows, where this is to be expected, only the test fails.
inline void failSandbox(const char* what, const QString& path)
{
#ifdef Q_OS_WIN
    QTest::qFail(qPrintable(QLatin1String(what) + QLatin1Char(' ') + path), __FILE__, __LINE__);
#else
    qFatal("%s %s", what, qPrintable(path));
#endif
}

/// Makes \a path a symbolic link to \a target, which is stored unchanged.
inline void makeLink(const QString& target, const QString& path)
{
    if (::symlink(QFile::encodeName(target).constData(), QFile::encodeName(path).constData()) != 0)
        failSandbox("cannot link", path);
}

/// Sets the permissions of \a path.
inline void changeMode(const QString& path, mode_t mode)
{
    if (::chmod(QFile::encodeName(path).constData(), mode) != 0)
        failSandbox("cannot change the mode of", path);
}

/// Renames \a path to \a newPath and replaces what is there: the way in which editors save.
inline bool renameOver(const QString& path, const QString& newPath)
{
#ifdef Q_OS_WIN
    const unsigned long replaceExisting = 1;
    return MoveFileExW(reinterpret_cast<const wchar_t*>(path.utf16()),
                       reinterpret_cast<const wchar_t*>(newPath.utf16()), replaceExisting)
        != 0;
#else
    return std::rename(QFile::encodeName(path).constData(), QFile::encodeName(newPath).constData())
        == 0;
#endif
}

/// Whether \a path exists, even as a broken link.
inline bool isThere(const QString& path)
{
    struct stat status;
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0;
}

// Folders

/// Sorts what a folder lists, because the order is undefined.
inline QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

/// The files below \a folder with their content, by relative path, including hidden files and links
/// to files.
inline QMap<QString, QByteArray> filesBelow(const QString& folder)
{
    QMap<QString, QByteArray> files;
    QDirIterator entries(folder, QDir::Files | QDir::Hidden | QDir::System,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString path = entries.next();
        files.insert(QDir(folder).relativeFilePath(path), contentOf(path));
    }
    return files;
}

/// The paths of everything below \a folder. Links are not followed.
inline QStringList entriesBelow(const QString& folder)
{
    QStringList paths;
    QDirIterator entries(folder,
                         QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext())
        paths.append(entries.next());
    return paths;
}

/// All entries below \a folder, sorted: "a/", "a/file=content", "link -> target", "pipe|". Links
/// are not followed.
inline QStringList treeOf(const QString& folder)
{
    QStringList tree;
    for (const QString& path : entriesBelow(folder)) {
        QString entry = path.mid(folder.size() + 1);
        char target[4096];
        const ssize_t size = ::readlink(QFile::encodeName(path).constData(), target, sizeof target);
        if (size >= 0)
            entry += QLatin1String(" -> ") + QString::fromUtf8(target, int(size));
        else if (QFileInfo(path).isDir())
            entry += QLatin1Char('/');
        else if (QFileInfo(path).isFile())
            entry += QLatin1Char('=') + QString::fromUtf8(contentOf(path));
        else
            entry += QLatin1Char('|');
        tree.append(entry);
    }
    tree.sort();
    return tree;
}

/// Makes a folder the current one as long as the object lives.
class CurrentFolder
{
public:
    explicit CurrentFolder(const QString& path) { QDir::setCurrent(path); }
    ~CurrentFolder() { QDir::setCurrent(mPrevious); }

private:
    Q_DISABLE_COPY(CurrentFolder)

    const QString mPrevious = QDir::currentPath();
};

/// A folder in memory, or the folder for temporary files if there is none.
inline QString folderInMemory()
{
    const QString memory = QStringLiteral("/dev/shm");
    return QFileInfo(memory).isWritable() ? memory : QDir::tempPath();
}

// The sandbox

/// A folder that everybody may write to, and that is removed with its content when the sandbox is
/// destroyed. Functions that make something return its absolute path.
/// sandbox(QStringLiteral("a/b.txt")) returns a path, whether or not it exists.
class Sandbox
{
public:
    /// Makes the sandbox in \a parent, which must exist.
    explicit Sandbox(const QString& parent = QDir::tempPath())
        : mFolder(parent + QStringLiteral("/orvautils-test"))
        // Resolves links, because tests compare paths.
        , mRoot(QFileInfo(mFolder.path()).canonicalFilePath())
    {
        if (!mFolder.isValid())
            qFatal("cannot make a sandbox");
        changeMode(mRoot, 0777);
    }

    ~Sandbox()
    {
        // A failed test may have left a folder that cannot be entered.
        for (const QString& path : qAsConst(mLocked))
            ::chmod(QFile::encodeName(path).constData(), 0777);
    }

    QString operator()(const QString& relative) const
    {
        return mRoot + QLatin1Char('/') + relative;
    }

    QString root() const { return mRoot; }

    /// Makes a file and its folders.
    QString file(const QString& relative, const QByteArray& content = "content") const
    {
        const QString path = (*this)(relative);
        writeFile(path, content);
        return path;
    }

    /// Makes a folder and the folders above it.
    QString folder(const QString& relative) const
    {
        const QString path = QDir::cleanPath((*this)(relative));
        makeFolder(path);
        return path;
    }

    /// Makes a symbolic link to \a target, which is stored unchanged.
    QString link(const QString& relative, const QString& target) const
    {
        const QString path = (*this)(relative);
        makeLink(target, path);
        return path;
    }

    /// Makes a named pipe.
    QString pipe(const QString& relative) const
    {
        const QString path = (*this)(relative);
        if (::mkfifo(QFile::encodeName(path).constData(), 0666) != 0)
            failSandbox("cannot make the pipe", path);
        return path;
    }

    /// Changes the permissions of \a path until the sandbox is destroyed.
    void lock(const QString& path, mode_t mode)
    {
        mLocked.prepend(path);
        changeMode(path, mode);
    }

private:
    Q_DISABLE_COPY(Sandbox)

    QTemporaryDir mFolder;
    const QString mRoot;
    QStringList mLocked;
};

#endif // SANDBOX_H
