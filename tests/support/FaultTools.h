// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// FaultTools: shared by tests with FaultShim: plans of faults, and snapshots of folders.

#ifndef FAULTTOOLS_H
#define FAULTTOOLS_H

#include "FaultShim.h"
#include "Sandbox.h"

#include <QFile>
#include <QMap>
#include <QPair>
#include <QVector>

#include <cerrno>
#include <cstring>
#include <dlfcn.h>
#include <sys/stat.h>
#include <vector>

inline QString operator""_s(const char* text, size_t size)
{
    return QString::fromUtf8(text, int(size));
}

inline QLatin1Char operator""_L1(char c)
{
    return QLatin1Char(c);
}

// ---- The shim ----------------------------------------------------------------------------------

inline FaultShimArm* shimArm()
{
    return reinterpret_cast<FaultShimArm*>(dlsym(RTLD_DEFAULT, "faultShimArm"));
}

inline FaultShimDisarm* shimDisarm()
{
    return reinterpret_cast<FaultShimDisarm*>(dlsym(RTLD_DEFAULT, "faultShimDisarm"));
}

const char* const kindNames[FaultKindCount] = {"open",   "read",  "write", "rename",
                                               "unlink", "mkdir", "close", "attribute"};

inline FaultPlan plan(FaultKind kind, int error, bool isLasting)
{
    FaultPlan plan = {};
    plan.kind = kind;
    plan.error = error;
    plan.isLasting = isLasting;
    return plan;
}

/// All the ways in which a call can be refused.
inline std::vector<FaultPlan> refusals()
{
    const QVector<QPair<FaultKind, int>> errors = {
        {FaultOpen, EACCES},       {FaultOpen, EMFILE},       {FaultRead, EIO},
        {FaultWrite, ENOSPC},      {FaultWrite, EIO},         {FaultRename, EACCES},
        {FaultRename, EXDEV},      {FaultUnlink, EACCES},     {FaultUnlink, EBUSY},
        {FaultMakeFolder, EACCES}, {FaultMakeFolder, ENOSPC}, {FaultClose, EIO}};
    std::vector<FaultPlan> plans;
    for (const auto& error : errors) {
        for (const bool isLasting : {false, true})
            plans.push_back(plan(error.first, error.second, isLasting));
    }
    return plans;
}

inline QString textOf(const FaultPlan& plan, const FaultReport& report)
{
    return "%1 %2 fails (%3)%4%5%6, first %7 %8"_s.arg(
        QString::fromLatin1(kindNames[plan.kind]), QString::number(plan.nth),
        QString::fromLocal8Bit(std::strerror(plan.error)),
        plan.isLasting ? " from then on"_s : QString(),
        (plan.lacksExchange ? ", no RENAME_EXCHANGE"_s : QString())
            + (plan.lacksUnnamedFiles ? ", no O_TMPFILE"_s : QString()),
        plan.lacksHardLinks ? ", no link()"_s : QString(), QString::fromLatin1(report.function),
        QString::fromLocal8Bit(report.path));
}

// ---- Snapshots of folders ----------------------------------------------------------------------

/// The content of a folder: relative paths, and what is there. A file is represented by its
/// permissions and its content.
using Tree = QMap<QString, QByteArray>;

const QByteArray folderMark = "folder";

inline Tree snapshotOf(const QString& root)
{
    Tree tree;
    for (const QString& path : entriesBelow(root)) {
        struct stat status;
        if (lstat(QFile::encodeName(path).constData(), &status) != 0)
            qFatal("cannot look at %s", qPrintable(path));
        QByteArray& entry = tree[path.mid(root.size() + 1)];
        if (S_ISLNK(status.st_mode))
            entry = "link " + QFile::symLinkTarget(path).toUtf8();
        else if (S_ISDIR(status.st_mode))
            entry = folderMark;
        else
            entry = QByteArray::number(status.st_mode & 0777, 8) + ' ' + contentOf(path);
    }
    return tree;
}

/// The part of the tree below one of its folders.
inline Tree below(const Tree& tree, const QString& folder)
{
    Tree part;
    const QString prefix = folder + '/'_L1;
    for (auto it = tree.begin(); it != tree.end(); ++it) {
        if (it.key().startsWith(prefix))
            part.insert(it.key().mid(prefix.size()), it.value());
    }
    return part;
}

/// \a tree with all entries of \a over, which replace entries of the same path.
inline Tree merged(Tree tree, const Tree& over)
{
    for (auto it = over.begin(); it != over.end(); ++it)
        tree.insert(it.key(), it.value());
    return tree;
}

/// Describes the difference between two trees; empty if they are equal.
inline QString difference(const Tree& actual, const Tree& expected)
{
    const Tree all = merged(actual, expected);
    for (auto it = all.begin(); it != all.end(); ++it) {
        if (!expected.contains(it.key()))
            return it.key() + " is there"_s;
        if (!actual.contains(it.key()))
            return it.key() + " is missing"_s;
        if (actual.value(it.key()) != expected.value(it.key()))
            return "%1 is \"%2\" (%3 bytes) instead of \"%4\" (%5 bytes)"_s.arg(
                it.key(), QString::fromUtf8(actual.value(it.key()).left(40)),
                QString::number(actual.value(it.key()).size()),
                QString::fromUtf8(expected.value(it.key()).left(40)),
                QString::number(expected.value(it.key()).size()));
    }
    return QString();
}

/// Whether \a path has the name of a temporary file or folder.
inline bool isTemporary(const QString& path)
{
    const QString name = path.mid(path.lastIndexOf('/'_L1) + 1);
    return name.startsWith(".orvautils-"_s) || name.startsWith("orvautils_temp."_s)
        || name.startsWith("qt_temp."_s);
}

inline void makeFile(const QString& path, const QByteArray& content, mode_t mode = 0644)
{
    writeFile(path, content);
    changeMode(path, mode);
}

/// Bytes without a repeated sequence.
inline QByteArray bytes(int size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 state = 1;
    for (char& byte : bytes) {
        state = state * 1664525 + 1013904223;
        byte = char(state >> 24);
    }
    return bytes;
}

#endif // FAULTTOOLS_H
