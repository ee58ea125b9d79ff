// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// A disk that fails at the worst moment: every function that changes files is run repeatedly, and
// in each run another one of its calls on files is refused, until a run needs no refused call any
// more. Each time the result, the message and the log must agree with the files: success means
// complete and exact; failure means an unchanged source, and no partial file under the final name.
// Functions that promise to lose nothing are also killed before each of their calls.
//
// The program starts itself a second time with FaultShim loaded before all other libraries.

#include "Columns.h"
#include "DirectorySynchronizer.h"
#include "ExifEditor.h"
#include "ExifUtils.h"
#include "FileUtils.h"
#include "ImageUtils.h"
#include "ProjectFileLocker.h"
#include "QExifImageHeader.h"

#include "FaultRuns.h"
#include "LogCapture.h"

#include <QBuffer>
#include <QDir>
#include <QDirIterator>
#include <QImage>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QtTest>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <functional>
#include <memory>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace {

// ---- Scenarios ----------------------------------------------------------------------------------

const QString copied = "warning orvautils FileUtils forceCopy: "_s;
const QString copiedDir = "warning orvautils FileUtils copyDir: "_s;

/// Stores what follows \a start at the beginning of \a text in \a rest. False if \a text does not
/// begin with \a start.
bool takeAfter(const QString& text, const QString& start, QString* rest)
{
    if (!text.startsWith(start))
        return false;
    *rest = text.mid(start.size());
    return true;
}

// forceCopy

/// Describes what is wrong with a failed copy of a file, and with its record.
QString wrongInForceCopy(const Run& run, const QString& record, const QString& source,
                         const QString& destination)
{
    if (record == copied + "FileUtils::forceCopy can't remove  "_s + destination)
        return run.after.value(destination) == run.before.value(destination)
            ? QString()
            : "a file that could not be removed changed"_s;
    const QRegularExpression cannotCopy(
        "^"_s
        + QRegularExpression::escape(copied + "FileUtils::forceCopy can't copy "_s + source + ' '_L1
                                     + destination)
        + "  error= ([1-9]|1[0-4])$"_s);
    if (!cannotCopy.match(record).hasMatch())
        return "not a record of forceCopy()"_s;
    // The old file is removed first, unless the source cannot even be opened.
    if (run.after.contains(destination)
        && run.after.value(destination) != run.before.value(destination))
        return "something was left under the name of the copy"_s;
    return QString();
}

Scenario forceCopy(const QString& destination)
{
    Scenario scenario;
    scenario.function = "forceCopy"_s;
    scenario.prepare = [](const Run& run) {
        makeFile(run.path("src/photo"_s), bytes(150000), 0640);
        makeFile(run.path("dst/photo"_s), "an older one", 0600);
    };
    scenario.act = [destination](const Run& run, QString*) {
        return FileUtils::forceCopy(run.path("src/photo"_s), run.path(destination));
    };
    scenario.complete = [destination](const Run& run) {
        Tree complete = run.before;
        complete[destination] = run.before.value("src/photo"_s);
        for (QString folder = destination; folder.contains('/'_L1);) {
            folder = folder.left(folder.lastIndexOf('/'_L1));
            complete[folder] = folderMark;
        }
        return complete;
    };
    scenario.wrongInFailure = [destination](const Run& run) {
        if (run.succeeded || run.records.size() != 1)
            return "not the described answer"_s;
        return wrongInForceCopy(run, run.records.first(), "src/photo"_s, destination);
    };
    return scenario;
}

// copyDir

/// The expected copy of the tree: links become what they lead to, broken ones are left out.
Tree copyOf(const Tree& tree)
{
    Tree copy = tree;
    copy["link"_s] = tree.value("file"_s);
    copy.remove("broken"_s);
    return copy;
}

void prepareFolders(const Run& run)
{
    makeFile(run.path("src/file"_s), "some text");
    makeFile(run.path("src/large"_s), bytes(150000), 0640);
    makeFile(run.path("src/.hidden"_s), "", 0600);
    makeFile(run.path("src/sub/program"_s), "#!", 0755);
    makeFile(run.path("src/sub/deep/file"_s), "deep");
    QDir().mkpath(run.path("src/empty"_s));
    makeLink("file"_s, run.path("src/link"_s));
    makeLink("nowhere"_s, run.path("src/broken"_s));
    makeFile(run.path("dst/large"_s), "an older one", 0600);
    makeFile(run.path("dst/sub/program"_s), "an older one");
    makeFile(run.path("dst/sub/kept"_s), "kept");
    makeFile(run.path("dst/old/kept"_s), "kept");
}

/// Describes what is wrong with a copy of "src" to "dst" that failed with those records.
QString wrongInCopyDir(const Run& run, bool merge, const QStringList& records)
{
    const Tree old = below(run.before, "dst"_s);
    const Tree whole = copyOf(below(run.before, "src"_s));
    const Tree now = below(run.after, "dst"_s);
    if (records.isEmpty())
        return "no record"_s;

    const bool cannotMakeWay = records.last() == copiedDir + "unable to removeRecursively dst"_s;
    const bool isStillOld = cannotMakeWay || now == old;
    for (auto it = now.begin(); it != now.end(); ++it) {
        const bool isOld = (merge || isStillOld) && old.value(it.key()) == it.value();
        const bool isNew = !isStillOld && whole.value(it.key()) == it.value();
        const bool cannotGo = run.plan.kind == FaultUnlink && isTemporary(it.key());
        if (!isOld && !isNew && !cannotGo)
            return it.key() + " is neither an old file nor a whole copy"_s;
    }
    for (auto it = old.begin(); merge && it != old.end(); ++it) {
        if (!whole.contains(it.key()) && !now.contains(it.key()))
            return it.key() + " was removed"_s;
    }

    QString rest;
    if (cannotMakeWay)
        return records.size() == 1 && !merge ? QString() : "unexpected records"_s;
    if (takeAfter(records.last(), copiedDir + "unable to mkdir "_s, &rest)) {
        const bool isFolder = rest == "dst"_s || whole.value(rest.mid(4)) == folderMark;
        return isFolder && !run.after.contains(rest) && records.size() == 1
            ? QString()
            : "wrong record of a folder"_s;
    }
    if (!takeAfter(records.last(), copiedDir + "unable to copy src"_s, &rest))
        return "not a record of copyDir()"_s;
    const QString name = rest.left(rest.indexOf(" to "_s));
    if (rest != name + " to dst"_s + name)
        return "wrong record of a copy"_s;
    if (name.isEmpty() || run.before.value("src"_s + name) == folderMark)
        return records.size() == 1 ? QString() : "more than one record"_s;
    if (records.size() != 2)
        return "not the two records of a file"_s;
    return wrongInForceCopy(run, records.first(), "src"_s + name, "dst"_s + name);
}

/// The expected content of the whole folder after the copy.
Tree withCopy(const Run& run, bool merge)
{
    const Tree copy = copyOf(below(run.before, "src"_s));
    const Tree old = merge ? below(run.before, "dst"_s) : Tree();
    const Tree both = merged(old, copy);
    Tree complete;
    for (auto it = run.before.begin(); it != run.before.end(); ++it) {
        if (!it.key().startsWith("dst/"_s))
            complete.insert(it.key(), it.value());
    }
    for (auto it = both.begin(); it != both.end(); ++it)
        complete.insert("dst/"_s + it.key(), it.value());
    return complete;
}

Scenario copyDir(bool merge)
{
    Scenario scenario;
    scenario.function = "copyDir"_s;
    scenario.prepare = prepareFolders;
    scenario.act = [merge](const Run& run, QString*) {
        return FileUtils::copyDir(run.path("src"_s), run.path("dst"_s), merge);
    };
    scenario.complete = [merge](const Run& run) { return withCopy(run, merge); };
    scenario.wrongInFailure = [merge](const Run& run) {
        return run.succeeded ? "it succeeded and logged"_s
                             : wrongInCopyDir(run, merge, run.records);
    };
    return scenario;
}

/// Begins to replace "dst", which clears what an earlier process left, and fails at once.
void beginToReplaceDst(const Run& run)
{
    const LogCapture log;
    if (FileUtils::replaceDir(run.path("nowhere"_s), run.path("dst"_s)))
        qFatal("replaced by nothing");
}

/// Describes what is wrong with a file or folder that was being replaced when the process was
/// killed.
QString wrongAfterKill(const Run& run, const Tree& complete, const QString& path)
{
    const auto at = [&path](const Tree& tree) {
        Tree part = below(tree, path);
        part.insert(QString(), tree.value(path));
        return part;
    };
    if (at(run.after) == at(run.before) || at(run.after) == at(complete))
        return QString();
    return "neither the old nor the new one: "_s + difference(at(run.after), at(run.before));
}

/// Complains about a temporary file or folder that no process uses any more.
QString wrongLeftover(const Run& run)
{
    for (const QString& path : run.after.keys()) {
        if (isTemporary(path))
            return path + " stayed behind"_s;
    }
    return QString();
}

/// Everything that the folder contains, or a reason: never less without a reason.
Scenario listEntries()
{
    Scenario scenario;
    scenario.function = "listEntries"_s;
    scenario.prepare = prepareFolders;
    scenario.act = [](const Run& run, QString* message) {
        QVector<FileUtils::Entry> entries;
        if (!FileUtils::listEntries(run.path("src"_s), entries, message))
            return false;
        QStringList names;
        for (const FileUtils::Entry& entry : entries)
            names.append(entry.name);
        const QStringList all = below(run.before, "src"_s).keys();
        return std::all_of(all.begin(), all.end(), [&names](const QString& path) {
            return names.contains(path.section('/'_L1, 0, 0));
        });
    };
    scenario.complete = [](const Run& run) { return run.before; };
    scenario.wrongInFailure = [](const Run& run) {
        const bool isAnswer = !run.succeeded && run.records.isEmpty()
            && run.message == QString::fromLocal8Bit(std::strerror(run.plan.error));
        return isAnswer ? QString() : "not the described answer"_s;
    };
    return scenario;
}

/// 200,000 bytes, most of which are in holes.
void makeSparseFile(const QString& path)
{
    makeFile(path, "begins");
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite) || !file.seek(100000) || file.write("middle") != 6
        || !file.resize(200000))
        qFatal("cannot make %s", qPrintable(path));
}

/// One of the two trees, complete, in any case.
Scenario replaceDir()
{
    Scenario scenario;
    scenario.function = "replaceDir"_s;
    scenario.leavesTrees = true;
    scenario.prepare = [](const Run& run) {
        prepareFolders(run);
        makeSparseFile(run.path("src/sparse"_s));
        // Owned by another user, if this process may change owners.
        if (getuid() == 0
            && chown(QFile::encodeName(run.path("src/large"_s)).constData(), 1, 1) != 0)
            qFatal("cannot give a file away");
    };
    scenario.act = [](const Run& run, QString* message) {
        return FileUtils::replaceDir(run.path("src"_s), run.path("dst"_s), nullptr, message);
    };
    scenario.complete = [](const Run& run) {
        Tree complete;
        for (auto it = run.before.begin(); it != run.before.end(); ++it) {
            if (!it.key().startsWith("dst/"_s))
                complete.insert(it.key(), it.value());
            // Links are compared by their targets.
            if (it.key().startsWith("src/"_s))
                complete.insert("dst"_s + it.key().mid(3),
                                QByteArray(it.value()).replace("/run/src/", "/run/dst/"));
        }
        return complete;
    };
    scenario.wrongInFailure = [](const Run& run) {
        if (run.succeeded || run.message.isEmpty() || run.records.size() != 1
            || !run.records.first().startsWith(
                "warning orvautils FileUtils replaceDir: unable to replace "_s))
            return "not the described answer"_s;
        for (auto it = run.after.begin(); it != run.after.end(); ++it) {
            const bool isCopy = it.key().startsWith(".orvautils-"_s);
            if (!isCopy && run.before.value(it.key()) != it.value())
                return it.key() + " changed"_s;
        }
        for (auto it = run.before.begin(); it != run.before.end(); ++it) {
            if (!run.after.contains(it.key()))
                return it.key() + " is gone"_s;
        }
        return QString();
    };
    scenario.recover = beginToReplaceDst;
    const auto complete = scenario.complete;
    scenario.wrongAfterKill = [complete](const Run& run) {
        const QString wrong = wrongAfterKill(run, complete(run), "dst"_s);
        return wrong.isEmpty() ? wrongLeftover(run) : wrong;
    };
    return scenario;
}

// moveOver

Scenario moveOverFolder()
{
    Scenario scenario;
    scenario.function = "moveOver"_s;
    scenario.isOnDiskEarly = true;
    scenario.leavesTrees = true;
    scenario.prepare = [](const Run& run) {
        makeFile(run.path("src/file"_s), "neighbour");
        makeFile(run.path("draft/file"_s), "new", 0640);
        makeFile(run.path("draft/sub/file"_s), bytes(5000));
        makeFile(run.path("dst/file"_s), "an older one", 0600);
        makeFile(run.path("dst/old/deep/file"_s), "an older one");
    };
    scenario.act = [](const Run& run, QString* message) {
        return FileUtils::moveOver(run.path("draft"_s), run.path("dst"_s), message);
    };
    scenario.complete = [](const Run& run) {
        Tree complete = run.before;
        for (const QString& path : run.before.keys()) {
            if (path.startsWith("dst/"_s) || path.startsWith("draft"_s))
                complete.remove(path);
        }
        const Tree moved = below(run.before, "draft"_s);
        for (auto it = moved.begin(); it != moved.end(); ++it)
            complete.insert("dst/"_s + it.key(), it.value());
        // The remains of the old tree that cannot be removed are in the place of the new one.
        if (run.report.refused > 0
            && (run.plan.kind == FaultUnlink || run.plan.kind == FaultOpen
                || run.plan.kind == FaultRead)) {
            for (auto it = run.after.begin(); it != run.after.end(); ++it) {
                if (it.key().startsWith("draft"_s))
                    complete.insert(it.key(), it.value());
            }
        }
        return complete;
    };
    scenario.wrongInFailure = [](const Run& run) {
        if (run.succeeded || run.message.isEmpty() || !run.records.isEmpty())
            return "not the described answer"_s;
        return difference(run.after, run.before);
    };
    scenario.recover = beginToReplaceDst;
    const auto complete = scenario.complete;
    scenario.wrongAfterKill = [complete](const Run& run) -> QString {
        const QString wrong = wrongAfterKill(run, complete(run), "dst"_s);
        if (!wrong.isEmpty())
            return wrong;
        if (below(run.after, "dst"_s) == below(run.before, "dst"_s)
            && below(run.after, "draft"_s) != below(run.before, "draft"_s))
            return "the new tree is lost"_s;
        return wrongLeftover(run);
    };
    return scenario;
}

Scenario moveOverFile()
{
    Scenario scenario;
    scenario.function = "moveOver"_s;
    scenario.isOnDiskEarly = true;
    scenario.prepare = [](const Run& run) {
        makeFile(run.path("src/file"_s), "neighbour");
        makeFile(run.path("draft"_s), bytes(5000), 0640);
        makeFile(run.path("dst/file"_s), "an older one", 0600);
    };
    scenario.act = [](const Run& run, QString* message) {
        return FileUtils::moveOver(run.path("draft"_s), run.path("dst/file"_s), message);
    };
    scenario.complete = [](const Run& run) {
        Tree complete = run.before;
        complete["dst/file"_s] = complete.take("draft"_s);
        return complete;
    };
    scenario.wrongInFailure = [](const Run& run) {
        if (run.succeeded || run.message.isEmpty() || !run.records.isEmpty())
            return "not the described answer"_s;
        return difference(run.after, run.before);
    };
    const auto complete = scenario.complete;
    scenario.wrongAfterKill = [complete](const Run& run) {
        return run.after == run.before ? QString() : difference(run.after, complete(run));
    };
    return scenario;
}

Scenario fullSync()
{
    Scenario scenario = copyDir(false);
    scenario.function = "fullSync"_s;
    scenario.act = [](const Run& run, QString* message) {
        DirectorySynchronizer synchronizer;
        const QSignalSpy error(&synchronizer, &DirectorySynchronizer::error);
        const QSignalSpy log(&synchronizer, &DirectorySynchronizer::log);
        const bool succeeded = synchronizer.fullSync(run.path("src"_s), run.path("dst"_s));
        if (error.count() + log.count() > 0)
            *message = "a signal was sent"_s;
        return succeeded;
    };
    scenario.wrongInFailure = [](const Run& run) {
        if (run.succeeded || !run.message.isEmpty() || run.records.isEmpty()
            || run.records.last()
                != "critical orvautils DirectorySynchronizer fullSync: FullSync fail"_s)
            return "not the described answer"_s;
        return wrongInCopyDir(run, false, run.records.mid(0, run.records.size() - 1));
    };
    return scenario;
}

// The mirror of a file

/// A file of "src" is copied to "dst", or removed there, as after a signal of the watcher.
Scenario mirrorFile(const QString& mirror, bool isRemoval)
{
    // Started before any fault.
    const auto synchronizer = std::make_shared<DirectorySynchronizer>();
    const QString file = mirror.mid(int(std::strlen("dst/")));
    Scenario scenario;
    scenario.function = "mirrored files"_s;
    scenario.prepare = [=](const Run& run) {
        makeFile(run.path("src/"_s + file), bytes(150000), 0640);
        makeFile(run.path("dst/photo"_s), "an older one", 0600);
        if (!synchronizer->startWatcher(run.path("src"_s), run.path("dst"_s)))
            qFatal("cannot watch");
        synchronizer->stop();
    };
    scenario.act = [=](const Run& run, QString* message) {
        const QSignalSpy mirrored(synchronizer.get(), &DirectorySynchronizer::mirrored);
        const QSignalSpy removed(synchronizer.get(), &DirectorySynchronizer::removed);
        const QSignalSpy failed(synchronizer.get(), &DirectorySynchronizer::failed);
        const QString path = run.path("src/"_s + file);
        if (isRemoval)
            synchronizer->onFileDeleted(path);
        else
            synchronizer->onFileAddedOrModified(path);
        if (!failed.isEmpty())
            *message = failed.first().at(1).toString();
        return mirrored.count() + removed.count() == 1 && failed.isEmpty();
    };
    scenario.complete = [=](const Run& run) {
        Tree complete = run.before;
        complete[mirror] = run.before.value("src/"_s + file);
        if (isRemoval)
            complete.remove(mirror);
        else if (mirror.count('/'_L1) > 1)
            complete["dst/new"_s] = folderMark;
        return complete;
    };
    scenario.wrongInFailure = [=](const Run& run) -> QString {
        if (run.succeeded || run.message.isEmpty() || run.records.size() != int(!isRemoval))
            return "no reason, or not the described answer"_s;
        if (run.after.value(mirror) != run.before.value(mirror))
            return "the mirror is neither as it was nor as it is to be"_s;
        return QString();
    };
    const auto complete = scenario.complete;
    scenario.wrongAfterKill = [=](const Run& run) {
        return wrongAfterKill(run, complete(run), mirror);
    };
    return scenario;
}

// Locks

Scenario lockProject()
{
    Scenario scenario;
    scenario.function = "openNewProjectFile"_s;
    scenario.prepare = [](const Run& run) {
        makeFile(run.path("src/project"_s), "project");
        // Left incomplete by a process that was killed.
        makeFile(run.path("dst/project.locked"_s), "");
    };
    scenario.act = [](const Run& run, QString* message) {
        ProjectFileLocker locker;
        return locker.openNewProjectFile(run.path("dst/project"_s), message)
            && locker.lockState() == ProjectFileLocker::LockState::Locked
            && ProjectFileLocker::holder(run.path("dst/project"_s)).processId == getpid();
    };
    scenario.complete = [](const Run& run) {
        Tree complete = run.before;
        complete.remove("dst/project.locked"_s);
        return complete;
    };
    scenario.wrongInFailure = [](const Run& run) -> QString {
        Tree after = run.after;
        for (const char* lock : {"dst/project.locked", "dst/project.locked.rmlock"})
            after.remove(QString::fromLatin1(lock));
        Tree before = run.before;
        before.remove("dst/project.locked"_s);
        return difference(after, before);
    };
    scenario.wrongAfterKill = [](const Run& run) {
        ProjectFileLocker locker;
        QString message;
        locker.openNewProjectFile(run.path("dst/project"_s), &message);
        return message;
    };
    scenario.isOnDiskEarly = true;
    return scenario;
}

// Removing

void prepareRemoval(const Run& run)
{
    makeFile(run.path("src/file"_s), "outside");
    makeFile(run.path("box/a"_s), "a");
    makeFile(run.path("box/.hidden"_s), "h");
    makeFile(run.path("box/Sub/b"_s), "b");
    makeFile(run.path("box/Sub/deep/c"_s), "c");
    makeFile(run.path("box/z"_s), "z");
    makeLink("../src"_s, run.path("box/linked folder"_s));
    makeLink("../src/file"_s, run.path("box/linked file"_s));
    makeLink("nowhere"_s, run.path("box/broken"_s));
}

/// What is left must be unchanged.
QString wrongInRemains(const Run& run)
{
    for (auto it = run.after.begin(); it != run.after.end(); ++it) {
        if (run.before.value(it.key()) != it.value())
            return it.key() + " changed"_s;
    }
    return QString();
}

Scenario removeContentDirectory(bool recursive)
{
    Scenario scenario;
    scenario.function = "removeContentDirectory"_s;
    scenario.prepare = prepareRemoval;
    scenario.act = [recursive](const Run& run, QString*) {
        return FileUtils::removeContentDirectory(run.path("box"_s), recursive);
    };
    scenario.complete = [recursive](const Run& run) {
        Tree complete = run.before;
        for (const QString& path : below(run.before, "box"_s).keys()) {
            if (recursive || !path.startsWith("Sub"_s))
                complete.remove("box/"_s + path);
        }
        return complete;
    };
    scenario.wrongInFailure = [](const Run& run) {
        QString path;
        if (run.succeeded || run.records.size() != 1
            || !takeAfter(run.records.first(),
                          "critical orvautils FileUtils removeContentDirectory: "
                          "enable to removeRecursively "_s,
                          &path))
            return "not the described answer"_s;
        // The folder itself, which cannot be read, or an entry of it.
        if (!run.after.contains(path) || (path != "box"_s && path.count('/'_L1) != 1))
            return path + " was removed"_s;
        return wrongInRemains(run);
    };
    return scenario;
}

Scenario removeDirectory()
{
    Scenario scenario;
    scenario.function = "old::removeDirectory"_s;
    scenario.prepare = [](const Run& run) {
        prepareRemoval(run);
        QFile::remove(run.path("box/broken"_s)); // otherwise it would stay, and so would the folder
    };
    scenario.act = [](const Run& run, QString* message) {
        return FileUtils::old::removeDirectory(run.path("box"_s), true, message);
    };
    scenario.complete = [](const Run& run) {
        Tree complete = run.before;
        complete.remove("box"_s);
        for (const QString& path : below(run.before, "box"_s).keys())
            complete.remove("box/"_s + path);
        return complete;
    };
    scenario.wrongInFailure = [](const Run& run) {
        const QRegularExpression failed("^Failed to remove (file|directory): (.*) \\((.+)\\)$"_s);
        const QRegularExpressionMatch match = failed.match(run.message);
        if (run.succeeded || !run.records.isEmpty() || !match.hasMatch())
            return "not the described answer"_s;
        const QString path = match.captured(2);
        if (!run.after.contains(path))
            return path + " was removed"_s;
        const bool isFolder = run.before.value(path) == folderMark;
        if (isFolder != (match.captured(1) == "directory"_s))
            return path + " is called a "_s + match.captured(1);
        if (!isFolder && match.captured(3) != QString::fromLocal8Bit(std::strerror(run.plan.error)))
            return "another reason"_s;
        return wrongInRemains(run);
    };
    return scenario;
}

// File content

/// The permissions of a new file.
QByteArray newFileMode()
{
    const mode_t mask = umask(0);
    umask(mask);
    return QByteArray::number(0666 & ~mask, 8) + ' ';
}

/// Describes what is wrong with a failure of writeFileContent(), with those records, to write data
/// to path.
QString wrongInWriting(const Run& run, const QString& message, const QString& path,
                       const QByteArray& data)
{
    const QString folder = path.left(path.lastIndexOf('/'_L1));
    const QByteArray now = run.after.value(path);
    const bool isUntouched = now == run.before.value(path);
    if (message == "(fileMkPath) Cant create folder '%1' !"_s.arg(folder))
        return isUntouched && run.records.isEmpty() ? QString() : "more than a missing folder"_s;
    if (run.records
        != QStringList("warning orvautils FileUtils writeFileContent: cannot open file  "_s + path))
        return "not the described record"_s;
    if (message == "Cannot open (WriteOnly) %1"_s.arg(path))
        return isUntouched ? QString() : "the file changed"_s;
    if (message != "Cannot write datas (WriteOnly) in %1"_s.arg(path))
        return "not the described message"_s;
    // Only the beginning of the data is left.
    return data.startsWith(now.mid(now.indexOf(' ') + 1)) ? QString() : "other content"_s;
}

Scenario writeFileContent(const QString& path)
{
    const QByteArray data = bytes(50000);
    Scenario scenario;
    scenario.function = "writeFileContent"_s;
    scenario.prepare = [](const Run& run) {
        makeFile(run.path("src/file"_s), "neighbour");
        makeFile(run.path("dst/file"_s), "an older one", 0640);
    };
    scenario.act = [path, data](const Run& run, QString* message) {
        return FileUtils::writeFileContent(run.path(path), data, message);
    };
    scenario.complete = [path, data](const Run& run) {
        Tree complete = run.before;
        complete[path] = (run.before.contains(path) ? "640 " : newFileMode()) + data;
        for (QString folder = path; folder.contains('/'_L1);) {
            folder = folder.left(folder.lastIndexOf('/'_L1));
            complete[folder] = folderMark;
        }
        return complete;
    };
    scenario.wrongInFailure = [path, data](const Run& run) {
        return run.succeeded ? "it succeeded and logged"_s
                             : wrongInWriting(run, run.message, path, data);
    };
    return scenario;
}

/// Like writing, but the old content is never lost.
Scenario replaceFileContent(const QString& path)
{
    const QByteArray data = bytes(50000);
    Scenario scenario = writeFileContent(path);
    scenario.function = "replaceFileContent"_s;
    scenario.act = [path, data](const Run& run, QString* message) {
        return FileUtils::replaceFileContent(run.path(path), data, message);
    };
    scenario.wrongInFailure = [path](const Run& run) {
        if (run.succeeded || run.message.isEmpty() || !run.records.isEmpty())
            return "not the described answer"_s;
        return run.after.value(path) == run.before.value(path) ? QString() : "the file changed"_s;
    };
    const auto complete = scenario.complete;
    scenario.wrongAfterKill = [complete, path](const Run& run) {
        return wrongAfterKill(run, complete(run), path);
    };
    return scenario;
}

Scenario replaceInFile()
{
    const QByteArray before = QByteArray("Bien s\xC3\xBBr, dit-elle. ").repeated(3000);
    const QByteArray after = QByteArray("Bien s\xC3\xBBr, dit-il. ").repeated(3000);
    Scenario scenario;
    scenario.function = "replaceInFile"_s;
    scenario.prepare = [before](const Run& run) {
        makeFile(run.path("src/file"_s), "neighbour");
        makeFile(run.path("dst/file"_s), before, 0640);
    };
    scenario.act = [](const Run& run, QString*) {
        return FileUtils::replaceInFile(run.path("dst/file"_s), "elle"_s, "il"_s);
    };
    scenario.complete = [after](const Run& run) {
        Tree complete = run.before;
        complete["dst/file"_s] = "640 " + after;
        return complete;
    };
    scenario.wrongInFailure = [after](const Run& run) {
        // The result is false only if reading fails; a failure to write is logged.
        if (!run.succeeded)
            return run.records.isEmpty() && run.after == run.before ? QString()
                                                                    : "something was written"_s;
        const QString path = "dst/file"_s;
        const bool isUntouched = run.after == run.before;
        return wrongInWriting(run,
                              (isUntouched ? "Cannot open (WriteOnly) %1"_s
                                           : "Cannot write datas (WriteOnly) in %1"_s)
                                  .arg(path),
                              path, after);
    };
    return scenario;
}

Scenario checkWritingRightInFolder(const QString& folder, const QString& label)
{
    const QString probe = folder + "/check_write"_s;
    Scenario scenario;
    scenario.function = "checkWritingRightInFolder"_s;
    scenario.prepare = [](const Run& run) {
        makeFile(run.path("src/file"_s), "neighbour");
        makeFile(run.path("dst/file"_s), "neighbour");
    };
    scenario.act = [folder, label](const Run& run, QString* message) {
        return FileUtils::checkWritingRightInFolder(run.path(folder), label, message);
    };
    scenario.complete = [folder, probe](const Run& run) {
        Tree complete = run.before;
        for (QString path = folder; !path.isEmpty();) {
            complete[path] = folderMark;
            path = path.left(qMax(0, path.lastIndexOf('/'_L1)));
        }
        // A temporary file that cannot be removed does not make the answer false.
        if (run.report.refused > 0 && run.plan.kind == FaultUnlink)
            complete[probe] = newFileMode() + "data_test";
        return complete;
    };
    scenario.wrongInFailure = [label, probe](const Run& run) {
        QString message = run.message;
        if (run.succeeded
            || (!label.isEmpty()
                && !takeAfter(run.message, "Cant write in %1 error="_s.arg(label), &message)))
            return "not the described answer"_s;
        return wrongInWriting(run, message, probe, "data_test");
    };
    return scenario;
}

// copyImageFile

/// A picture with so much detail that its file has some kilobytes.
QByteArray picture(const char* format)
{
    QImage image(320, 240, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x * y % 251, (x + 2 * y) % 256, (x ^ y) % 256));
    }
    QByteArray file;
    QBuffer buffer(&file);
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, format, 90))
        qFatal("cannot make a picture");
    return file;
}

/// The picture turned by 90 degrees, with an EXIF block that states this.
QByteArray turnedJpeg()
{
    const QByteArray block = QByteArray::fromHex("4D4D 002A 00000008 0001"
                                                 "0112 0003 00000001 00060000 00000000");
    QByteArray jpeg = picture("jpeg");
    return jpeg.insert(2, QByteArray::fromHex("FFE1 0022") + QByteArray("Exif\0\0", 6) + block);
}

struct Import
{
    QString source;
    QByteArray content;
    QString destination;
    QSize maximum;
    ImageUtils::OptionsImageCopy options;
    bool isCopied; ///< byte for byte
    QString format;
    QSize size; ///< of the result
};

bool import(const Import& import, const QString& root)
{
    return ImageUtils::copyImageFile(root + '/'_L1 + import.source,
                                     root + '/'_L1 + import.destination, true, import.maximum,
                                     import.options);
}

/// The resulting file on a disk without faults.
QByteArray imported(const Import& import)
{
    const Sandbox folder;
    makeFile(folder(import.source), import.content);
    if (!::import(import, folder.root()))
        qFatal("cannot import a picture");
    return contentOf(folder(import.destination));
}

QString textOf(const QSize& size)
{
    return "QSize(%1, %2)"_s.arg(size.width()).arg(size.height());
}

/// Describes what is wrong with the records of a failed import.
QString wrongInRecords(const Run& run, const Import& import)
{
    const QString warning = "warning orvautils ImageUtils copyImageFile: "_s;
    // Image readers have error messages of their own.
    QStringList records = run.records.filter(" orvautils "_s);
    if (records
            == QStringList(
                "critical orvautils ImageUtils copyImageFile: copyImageFile : can't remove "_s
                + import.destination)
        && run.before.contains(import.destination) && !import.isCopied)
        return QString();
    if (records == QStringList(warning + "importImageFile format null"_s)
        || records == QStringList(warning + "importImageFile can't load  "_s + import.source))
        return QString();

    if (run.plan.kind == FaultMakeFolder) {
        const QString folder = import.destination.left(import.destination.lastIndexOf('/'_L1) + 1);
        const QString made = "warning orvautils FileUtils forceDirectoryCreationForAFile: "_s;
        while (!records.isEmpty() && records.first().startsWith(made + "Mkdir fail on \""_s))
            records.removeFirst();
        if (records.isEmpty()
            || records.takeFirst() != made + "The folder '%1' cannot be created!"_s.arg(folder))
            return "no record of the folder"_s;
    }
    if (records.isEmpty())
        return "no record"_s;
    const QString last = records.takeLast();
    if (import.isCopied) {
        if (last != warning + "FileUtils::forceCopy"_s || records.size() != 1)
            return "not the two records of a copy"_s;
        return wrongInForceCopy(run, records.first(), import.source, import.destination);
    }
    if (last
        != warning + "importImageFile can't save  "_s + import.destination + ' '_L1 + import.format
            + ' '_L1 + textOf(import.size) + " maxSizeImage= "_s + textOf(import.maximum))
        return "not the described record"_s;
    if (!import.options.testFlag(ImageUtils::ProgressiveJpeg))
        return records.isEmpty() ? QString() : "more than one record"_s;
    const QRegularExpression progressive(
        "^warning orvautils ImageUtils writeProgressiveImage: can't save writeProgressiveImage  "_s
        + QRegularExpression::escape(import.destination) + "  errorString= .+  size= "_s
        + QRegularExpression::escape(textOf(import.size)) + '$'_L1);
    return records.size() == 1 && progressive.match(records.first()).hasMatch()
        ? QString()
        : "not the record of a progressive picture"_s;
}

Scenario copyImageFile(const Import& import)
{
    const QByteArray whole = imported(import);
    Scenario scenario;
    scenario.function = "copyImageFile"_s;
    scenario.prepare = [import](const Run& run) {
        makeFile(run.path("src/file"_s), "neighbour");
        makeFile(run.path("dst/picture"_s), "an older one", 0640);
        makeFile(run.path(import.source), import.content, 0600);
    };
    scenario.act = [import](const Run& run, QString*) { return ::import(import, run.root); };
    scenario.complete = [import, whole](const Run& run) {
        Tree complete = run.before;
        complete[import.destination] = (import.isCopied ? "600 " : newFileMode()) + whole;
        for (QString folder = import.destination; folder.contains('/'_L1);) {
            folder = folder.left(folder.lastIndexOf('/'_L1));
            complete[folder] = folderMark;
        }
        return complete;
    };
    scenario.wrongInFailure = [import](const Run& run) -> QString {
        if (run.succeeded)
            return "it succeeded and logged"_s;
        if (run.after.value(import.destination) != run.before.value(import.destination))
            return "what stood at the destination is lost"_s;
        return wrongInRecords(run, import);
    };
    return scenario;
}

// writeProgressiveImage

bool writeProgressively(const QString& path)
{
    return ImageUtils::writeProgressiveImage(QImage::fromData(picture("png")), path, "jpeg", 80);
}

Scenario writeProgressiveImage()
{
    const Sandbox folder;
    if (!writeProgressively(folder("picture"_s)))
        qFatal("cannot write a picture");
    const QByteArray whole = contentOf(folder("picture"_s));
    Scenario scenario;
    scenario.function = "writeProgressiveImage"_s;
    scenario.isOnDiskEarly = true;
    scenario.prepare = [](const Run& run) {
        makeFile(run.path("src/file"_s), "neighbour");
        makeFile(run.path("dst/picture"_s), "an older one", 0640);
    };
    scenario.act = [](const Run& run, QString*) {
        return writeProgressively(run.path("dst/picture"_s));
    };
    scenario.complete = [whole](const Run& run) {
        Tree complete = run.before;
        complete["dst/picture"_s] = "640 " + whole;
        return complete;
    };
    scenario.wrongInFailure = [](const Run& run) -> QString {
        const QRegularExpression record(
            "^warning orvautils ImageUtils writeProgressiveImage: can't save "
            "writeProgressiveImage  dst/picture  errorString= .+  size= "_s
            + QRegularExpression::escape(textOf(QSize(320, 240))) + '$'_L1);
        const QStringList records = run.records.filter(" orvautils "_s);
        if (run.succeeded || records.size() != 1 || !record.match(records.first()).hasMatch())
            return "not the described answer"_s;
        return run.after.value("dst/picture"_s) == run.before.value("dst/picture"_s)
            ? QString()
            : "the older picture is lost"_s;
    };
    return scenario;
}

// saveToJpeg and the functions that use the same code

/// A photograph with these values in its EXIF block.
QByteArray photograph(const QExifImageHeader& header)
{
    QByteArray photo = picture("jpeg");
    QBuffer buffer(&photo);
    if (!buffer.open(QIODevice::ReadWrite) || !header.saveToJpeg(&buffer))
        qFatal("cannot make a photograph");
    return photo;
}

std::shared_ptr<QExifImageHeader> headerOf(const QString& artist)
{
    auto header = std::make_shared<QExifImageHeader>();
    header->setValue(QExifImageHeader::Artist, QExifValue(artist));
    return header;
}

/// A header that fills most of a segment, so that it takes several calls to read it.
QByteArray photographWithLargeHeader()
{
    QExifImageHeader header;
    header.setValue(QExifImageHeader::Orientation, QExifValue(quint16(6)));
    header.setValue(QExifImageHeader::MakerNote, QExifValue(bytes(60000)));
    return photograph(header);
}

/// A function that changes the photograph at a path.
using Change = std::function<bool(const QString& path)>;

Change saving(const QString& artist)
{
    const auto header = headerOf(artist);
    return [header](const QString& path) { return header->saveToJpeg(path); };
}

Change editing(const QString& artist)
{
    return [artist](const QString& path) {
        ExifEditor editor;
        if (!editor.load(path))
            return false;
        editor.setValue(QExifImageHeader::Artist, QExifValue(artist));
        return editor.save(path);
    };
}

/// A photograph with an orientation, a position and a maker note of several pages.
QByteArray locatedPhotograph()
{
    QExifImageHeader header;
    header.setValue(QExifImageHeader::Orientation, QExifValue(quint16(6)));
    header.setValue(QExifImageHeader::MakerNote, QExifValue(bytes(9000)));
    header.setValue(QExifImageHeader::GPSMapDatum, QExifValue("WGS-84"_s));
    return photograph(header);
}

/// The photograph after the change, without faults.
QByteArray changed(const QByteArray& photo, const Change& change)
{
    const Sandbox folder;
    const QString path = folder("photo"_s);
    makeFile(path, photo);
    if (!change(path) || contentOf(path) == photo)
        qFatal("cannot change a photograph");
    return contentOf(path);
}

/// How a photograph is changed.
enum class Way {
    Beside, ///< a new file is completed and replaces it
    InPlace,
    InPlaceForTwoNames
};

Scenario changePhoto(const QString& function, const QByteArray& photo, const Change& change,
                     Way way = Way::Beside)
{
    const QByteArray whole = changed(photo, change);
    const bool hasTwoNames = way == Way::InPlaceForTwoNames;
    Scenario scenario;
    scenario.function = function;
    scenario.prepare = [photo, hasTwoNames](const Run& run) {
        makeFile(run.path("src/photo"_s), "another one");
        makeFile(run.path("dst/photo"_s), photo, 0640);
        const QByteArray path = QFile::encodeName(run.path("dst/photo"_s));
        // Not every file system has room for a note.
        static_cast<void>(setxattr(path.constData(), "user.note", "1", 1, 0));
        if (hasTwoNames && link(path.constData(), (path + " again").constData()) != 0)
            qFatal("cannot link a photograph");
    };
    scenario.act = [change](const Run& run, QString*) { return change(run.path("dst/photo"_s)); };
    scenario.complete = [whole, hasTwoNames](const Run& run) {
        Tree complete = run.before;
        complete["dst/photo"_s] = "640 " + whole;
        if (hasTwoNames)
            complete["dst/photo again"_s] = "640 " + whole;
        return complete;
    };
    const auto complete = scenario.complete;
    scenario.wrongInFailure = [complete](const Run& run) -> QString {
        if (run.succeeded || !run.records.isEmpty())
            return "not the described answer"_s;
        const QString path = "dst/photo"_s;
        // After closing it is too late to restore anything.
        if (run.plan.kind == FaultClose && run.after != run.before)
            return difference(run.after, complete(run));
        // Bytes after the old end cannot be removed again if the disk refuses every write.
        const bool isStuck = run.plan.kind == FaultWrite && run.plan.isLasting;
        if (isStuck && run.after.value(path).startsWith(run.before.value(path)))
            return QString();
        return difference(run.after, run.before);
    };
    scenario.isOnDiskEarly = way == Way::Beside;
    return scenario;
}

// ---- All scenarios -----------------------------------------------------------------------------

const QMap<QString, Scenario>& scenarios()
{
    const QSize whole = QSize(320, 240); // the size that picture() uses
    const QSize scaled = QSize(100, 75);
    static const QMap<QString, Scenario> all = {
        {"forceCopy over a file"_s, forceCopy("dst/photo"_s)},
        {"forceCopy into a new folder"_s, forceCopy("dst/new/deep/photo"_s)},
        {"copyDir afresh"_s, copyDir(false)},
        {"copyDir merging"_s, copyDir(true)},
        {"fullSync"_s, fullSync()},
        {"mirroring over a file"_s, mirrorFile("dst/photo"_s, false)},
        {"mirroring into a new folder"_s, mirrorFile("dst/new/photo"_s, false)},
        {"removing a mirror"_s, mirrorFile("dst/photo"_s, true)},
        {"openNewProjectFile"_s, lockProject()},
        {"listEntries"_s, listEntries()},
        {"replaceDir"_s, replaceDir()},
        {"moveOver, a folder"_s, moveOverFolder()},
        {"moveOver, a file"_s, moveOverFile()},
        {"removeContentDirectory"_s, removeContentDirectory(false)},
        {"removeContentDirectory recursively"_s, removeContentDirectory(true)},
        {"old::removeDirectory"_s, removeDirectory()},
        {"writeFileContent over a file"_s, writeFileContent("dst/file"_s)},
        {"writeFileContent into a new folder"_s, writeFileContent("dst/new/deep/file"_s)},
        {"replaceFileContent over a file"_s, replaceFileContent("dst/file"_s)},
        {"replaceFileContent into a new folder"_s, replaceFileContent("dst/new/deep/file"_s)},
        {"replaceInFile"_s, replaceInFile()},
        {"checkWritingRightInFolder"_s, checkWritingRightInFolder("dst"_s, "Photos"_s)},
        {"checkWritingRightInFolder, a new one"_s,
         checkWritingRightInFolder("dst/new/deep"_s, QString())},
        {"copyImageFile copying"_s,
         copyImageFile({"src/picture"_s, picture("jpeg"), "dst/picture"_s, QSize(999, 999),
                        ImageUtils::OptionsImageCopy(), true, "jpeg"_s, whole})},
        {"copyImageFile scaling"_s,
         copyImageFile({"src/picture"_s, picture("jpeg"), "dst/picture"_s, QSize(100, 100),
                        ImageUtils::OptionsImageCopy(), false, "jpeg"_s, scaled})},
        {"copyImageFile turning"_s,
         copyImageFile({"src/picture"_s, turnedJpeg(), "dst/picture"_s, QSize(999, 999),
                        ImageUtils::UseExifRotation, false, "jpeg"_s, whole.transposed()})},
        {"copyImageFile progressively, into a new folder"_s,
         copyImageFile({"src/picture"_s, picture("jpeg"), "dst/new/deep/picture"_s, QSize(999, 999),
                        ImageUtils::ProgressiveJpeg, false, "jpeg"_s, whole})},
        {"copyImageFile of a PNG"_s,
         copyImageFile({"src/picture"_s, picture("png"), "dst/picture"_s, QSize(100, 100),
                        ImageUtils::OptionsImageCopy(), false, "png"_s, scaled})},
        {"copyImageFile of a BMP"_s,
         copyImageFile({"src/picture"_s, picture("bmp"), "dst/picture"_s, QSize(100, 100),
                        ImageUtils::OptionsImageCopy(), false, "bmp"_s, scaled})},
        {"copyImageFile onto the photograph itself"_s,
         copyImageFile({"dst/picture"_s, turnedJpeg(), "dst/picture"_s, QSize(999, 999),
                        ImageUtils::UseExifRotation, false, "jpeg"_s, whole.transposed()})},
        {"writeProgressiveImage"_s, writeProgressiveImage()},
        {"saveToJpeg within a block"_s,
         changePhoto("saveToJpeg"_s, photograph(*headerOf("Ansel"_s)), saving("Diane"_s),
                     Way::InPlace)},
        {"saveToJpeg over several blocks"_s,
         changePhoto("saveToJpeg"_s, photograph(*headerOf(QString(9000, 'a'_L1))),
                     saving(QString(9000, 'b'_L1)))},
        {"saveToJpeg growing"_s, changePhoto("saveToJpeg"_s, picture("jpeg"), saving("Diane"_s))},
        {"saveToJpeg of a file with two names"_s,
         changePhoto("saveToJpeg"_s, picture("jpeg"), saving("Diane"_s), Way::InPlaceForTwoNames)},
        {"ExifEditor within a block"_s,
         changePhoto("ExifEditor"_s, photograph(*headerOf("Ansel"_s)), editing("Diane"_s),
                     Way::InPlace)},
        {"ExifEditor growing"_s,
         changePhoto("ExifEditor"_s, locatedPhotograph(), editing(QString(9000, 'a'_L1)))},
        {"ExifEditor without a block"_s,
         changePhoto("ExifEditor"_s, picture("jpeg"), editing("Diane"_s))},
        {"setOrientation"_s,
         changePhoto(
             "setOrientation"_s, locatedPhotograph(),
             [](const QString& path) { return ExifUtils::setOrientation(path, 3); }, Way::InPlace)},
        {"removeLocation"_s,
         changePhoto("removeLocation"_s, locatedPhotograph(),
                     [](const QString& path) { return ExifUtils::removeLocation(path); })},
        {"removeMetadata"_s,
         changePhoto("removeMetadata"_s, photograph(*headerOf("Ansel"_s)),
                     [](const QString& path) { return ExifUtils::removeMetadata(path); })},
        {"clearRotation"_s,
         changePhoto("clearRotation"_s, photographWithLargeHeader(), ExifUtils::clearRotation)},
    };
    return all;
}

} // namespace

class tst_Faults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void refusedCalls_data() { addScenarios(); }
    void refusedCalls();
    void shortTransfers_data() { addScenarios(); }
    void shortTransfers();
    void interruptedCalls_data() { addScenarios(); }
    void interruptedCalls();
    void killedCalls_data();
    void killedCalls();
    void refusedAttributes_data();
    void refusedAttributes();
    void refusedAttributesOfATree();
    void entriesWithoutKinds_data() { addScenarios(); }
    void entriesWithoutKinds();
    void cleanupTestCase();

private:
    static void addScenarios();
    /// Fails with the complaints of \a complaintsOf for this row's scenario on any of its file
    /// systems.
    template <typename Function>
    void onEachFileSystem(Function complaintsOf)
    {
        QFETCH(QString, name);
        const Scenario scenario = scenarios().value(name);
        QStringList complaints;
        for (const FaultPlan& fileSystem : fileSystems(scenario))
            complaints += complaintsOf(scenario, fileSystem);
        QVERIFY2(complaints.isEmpty(), qPrintable(complaints.join('\n'_L1)));
    }
};

void tst_Faults::addScenarios()
{
    const auto row = columns<QString>("name");
    for (const QString& name : scenarios().keys())
        row(qPrintable(name), name);
}

void tst_Faults::initTestCase()
{
    // Initialises everything that is initialised on first use, so that it costs no call on a file
    // later.
    const FaultPlan none = {};
    for (const Scenario& scenario : scenarios())
        QCOMPARE(mustSucceed(scenario, none), QStringList());
}

void tst_Faults::refusedCalls()
{
    onEachFileSystem([](const Scenario& scenario, const FaultPlan& fileSystem) {
        QStringList complaints;
        for (FaultPlan plan : refusals()) {
            plan.lacksExchange = fileSystem.lacksExchange;
            plan.lacksUnnamedFiles = fileSystem.lacksUnnamedFiles;
            plan.lacksHardLinks = fileSystem.lacksHardLinks;
            complaints += refuseEveryCall(scenario, plan);
        }
        return complaints;
    });
}

void tst_Faults::shortTransfers()
{
    onEachFileSystem([](const Scenario& scenario, FaultPlan plan) {
        QStringList complaints;
        for (const size_t bytes : {size_t(7), size_t(1000)}) {
            plan.mostBytes = bytes;
            complaints += mustSucceed(scenario, plan);
        }
        return complaints;
    });
}

void tst_Faults::interruptedCalls()
{
    onEachFileSystem([](const Scenario& scenario, FaultPlan plan) {
        QStringList complaints;
        plan.error = EINTR;
        for (const FaultKind kind : {FaultOpen, FaultRead, FaultWrite}) {
            plan.kind = kind;
            complaints += interruptEveryCall(scenario, plan);
        }
        plan.interrupts = true;
        complaints += mustSucceed(scenario, plan);
        plan.mostBytes = 1000;
        complaints += mustSucceed(scenario, plan);
        return complaints;
    });
}

void tst_Faults::killedCalls_data()
{
    const auto row = columns<QString>("name");
    for (auto it = scenarios().begin(); it != scenarios().end(); ++it) {
        if (it.value().wrongAfterKill)
            row(qPrintable(it.key()), it.key());
    }
}

void tst_Faults::killedCalls()
{
    onEachFileSystem(killAtEveryCall);
}

void tst_Faults::refusedAttributes_data()
{
    const auto row = columns<QString>("name");
    for (const QString& name : scenarios().keys()) {
        if (name.startsWith("saveToJpeg"_s) || name.startsWith("clearRotation"_s))
            row(qPrintable(name), name);
    }
}

// A new file that cannot get the attributes of the old one does not replace it: the old one is
// changed in place.
void tst_Faults::refusedAttributes()
{
    QFETCH(QString, name);
    const Scenario scenario = scenarios().value(name);
    QStringList complaints;
    for (const int error : {EPERM, ENOTSUP, EIO}) {
        for (const bool isLasting : {false, true}) {
            FaultPlan plan = ::plan(FaultAttribute, error, isLasting);
            int refused = 1;
            for (plan.nth = 1; refused > 0 && plan.nth <= mostCalls; ++plan.nth)
                complaints += mustSucceed(scenario, plan, &refused);
        }
    }
    QVERIFY2(complaints.isEmpty(), qPrintable(complaints.join('\n'_L1)));
}

// A tree whose copy is not exact does not replace another one.
void tst_Faults::refusedAttributesOfATree()
{
    // The first call checks whether a process still uses what an earlier one left. If that is
    // unknown, it is kept.
    const int first = 2;
    const FaultPlan plan = ::plan(FaultAttribute, EIO, false);
    const QStringList complaints = refuseEveryCall(scenarios().value("replaceDir"_s), plan, first);
    QVERIFY2(complaints.isEmpty(), qPrintable(complaints.join('\n'_L1)));
}

void tst_Faults::entriesWithoutKinds()
{
    QFETCH(QString, name);
    FaultPlan plan = {};
    plan.lacksEntryKinds = true;
    const QStringList complaints = mustSucceed(scenarios().value(name), plan);
    QVERIFY2(complaints.isEmpty(), qPrintable(complaints.join('\n'_L1)));
}

void tst_Faults::cleanupTestCase()
{
    int total = 0;
    QStringList functions;
    const FaultCounts& counts = faultCounts();
    for (auto it = counts.refusals.constBegin(); it != counts.refusals.constEnd(); ++it) {
        int sum = 0;
        QStringList kinds;
        for (size_t kind = 0; kind < FaultKindCount; ++kind) {
            sum += it.value()[kind];
            kinds.append("%1 %2"_s.arg(QString::fromLatin1(kindNames[kind])).arg(it.value()[kind]));
        }
        qInfo("%s: %s", qPrintable(it.key()), qPrintable(kinds.join(", "_s)));
        functions.append("%1 %2"_s.arg(it.key()).arg(sum));
        total += sum;
    }
    if (counts.interruptions > 0)
        qInfo("calls interrupted: %d", counts.interruptions);
    if (counts.kills > 0)
        qInfo("kills before a call: %d", counts.kills);
    if (total > 0)
        qInfo("faults injected: %d (%s)", total, qPrintable(functions.join(", "_s)));
}

namespace {

/// Appends to an environment variable whose parts are separated by colons.
void addToVariable(const char* name, const QByteArray& part)
{
    const QByteArray value = qgetenv(name);
    qputenv(name, value.isEmpty() ? part : value + ':' + part);
}

} // namespace

int main(int argc, char** argv)
{
    if (!shimArm()) {
        if (qgetenv("LD_PRELOAD").contains(FAULT_SHIM)) {
            std::fprintf(stderr, "%s cannot be loaded before other libraries\n", FAULT_SHIM);
            return 1;
        }
        // The address sanitizer requires to be first, although it is loaded before the C library
        // anyway.
        addToVariable("ASAN_OPTIONS", "verify_asan_link_order=0");
        addToVariable("LD_PRELOAD", FAULT_SHIM);
        execv("/proc/self/exe", argv);
        std::perror("execv");
        return 1;
    }
    QCoreApplication application(argc, argv);
    tst_Faults test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_Faults.moc"
