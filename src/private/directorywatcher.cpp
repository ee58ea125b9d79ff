// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// How a DirectoryWatcher scans a tree.

#include "FileUtils.h"
#include "asconst_p.h"
#include "directorywatcher_p.h"
#include "folderpath_p.h"
#include "treewalk_p.h"

#include <QDir>
#include <QTimer>
#include <QVector>

#include <algorithm>

namespace OrvaUtilsPrivate {

namespace {

template <typename Known>
QStringList without(const QStringList& paths, const Known& known)
{
    if (known.isEmpty())
        return paths;
    QStringList unknown;
    for (const QString& path : paths) {
        if (!known.contains(path))
            unknown.append(path);
    }
    return unknown;
}

QSet<QString> setOf(const QStringList& paths)
{
    QSet<QString> set;
    set.reserve(paths.size());
    for (const QString& path : paths)
        set.insert(path);
    return set;
}

/// Appends the visible files of the tree under \a folder as paths that begin with it, and its
/// visible folders as paths that begin with \a path, which is the same folder.
void listTree(const QString& folder, const QString& path, const Walk* parent, QStringList* files,
              QStringList* folders)
{
    const Walk walk = {folder, parent};
    std::vector<QString> further;
    FolderReader reader(folder, EntryDetail::Kinds);
    while (reader.next()) {
        const FolderEntry& entry = reader.entry();
        if (entry.kind == EntryKind::File && !entry.isHidden && entry.isReachable)
            files->append(joined(folder, entry.name));
        if (!isVisibleFolder(entry))
            continue;
        folders->append(joined(path, entry.name));
        if (leadsOn(entry, walk))
            further.push_back(entry.name);
    }
    for (const QString& name : further)
        listTree(joined(folder, name), joined(path, name), &walk, files, folders);
}

} // namespace

// Looking

bool DirectoryWatcherPrivate::look(const QString& folder, Scope scope, Refusal refusal,
                                   QStringList* listed)
{
    if (!platform.isActive())
        return false;
    const WatcherTurn turn(this);
    watchTop(folder);
    QStringList foundFolders; // with Scope::Entries the new ones
    const QStringList found = filesIn(folder, scope, &foundFolders);
    if (listed)
        *listed = found;
    const int reportsBefore = mReports;
    bool complete = watchFiles(found, refusal);
    if (!turn.isOver() && (complete || refusal == Refusal::IsSkipped)) {
        // Folders are listed again after slots have returned, because new ones may have been
        // created in the meantime.
        const bool hasReported = mReports != reportsBefore && !isScanning;
        if (hasReported || (scope == Scope::Entries && !foundFolders.isEmpty()))
            foundFolders = foldersIn(folder, scope);
        complete = watchFolders(folder, foundFolders, refusal) && complete;
    }
    if (!turn.isOver())
        announceRefusals();
    return complete && !turn.isOver();
}

/// The visible files of \a folder, or of its tree, whose folders are appended to \a foundFolders.
/// With Scope::Entries, also the files in the trees of new sub-folders, and only these sub-folders
/// are appended; folders that are already watched send notifications of their own.
QStringList DirectoryWatcherPrivate::filesIn(const QString& folder, Scope scope,
                                             QStringList* foundFolders) const
{
    QStringList found;
    const QString path = absolute(folder);
    if (scope == Scope::Tree && folder.isEmpty()) {
        // The current folder, whose files are named as if they were in the root.
        FileUtils::old::listFilesInFileSystem(folder, found, true, nullptr, folder);
        FileUtils::listDirectoriesInFileSystem(folder, *foundFolders, true);
        return found;
    }
    if (scope == Scope::Tree) {
        listTree(folder, path, nullptr, &found, foundFolders);
        return found;
    }
    std::vector<FolderEntry> entries;
    readFolder(path, entries);
    for (const FolderEntry& entry : entries) {
        if (entry.isHidden || !entry.isReachable)
            continue;
        if (entry.kind == EntryKind::File)
            found.append(joined(folder, entry.name));
        else if (entry.kind == EntryKind::Folder && !folders.contains(joined(path, entry.name)))
            foundFolders->append(joined(path, entry.name));
    }
    for (const QString& newFolder : asConst(*foundFolders)) {
        const QString given = asGiven(newFolder);
        FileUtils::old::listFilesInFileSystem(given, found, true, nullptr, given);
    }
    return found;
}

QStringList DirectoryWatcherPrivate::foldersIn(const QString& folder, Scope scope) const
{
    QStringList found;
    FileUtils::listDirectoriesInFileSystem(folder, found, scope == Scope::Tree);
    if (scope == Scope::Tree)
        return found;
    const QStringList unknown = without(found, folders);
    for (const QString& path : unknown)
        FileUtils::listDirectoriesInFileSystem(path, found, true);
    return found;
}

void DirectoryWatcherPrivate::watchTop(const QString& folder)
{
    const FileState state = stateOf(folder);
    if (!state.isFolder() || folders.contains(absolute(folder)))
        return;
    if (folders.contains(folder)) {
        if (state.isSameFile(folders.value(folder)))
            return;
        platform.removeFolders({folder});
    }
    if (platform.addFolders({folder}).isEmpty())
        folders.insert(folder, state);
    else
        rememberRefused({folder});
}

bool DirectoryWatcherPrivate::watchFiles(const QStringList& found, Refusal refusal)
{
    QStringList wanted = without(found, files);
    if (!forgetFoldersReplacedBy(wanted))
        return false;
    for (auto path = unwatched.cbegin(); path != unwatched.cend(); ++path) {
        if (files.contains(path.key()) && found.contains(path.key()))
            wanted.append(path.key());
    }
    wanted = withoutRefused(wanted, refusal);
    if (wanted.isEmpty())
        return true;

    // The state is taken before the watch is added, so that a change in between is noticed.
    QVector<FileState> states;
    states.reserve(wanted.size());
    for (const QString& file : asConst(wanted))
        states.append(stateOf(file));
    // Files that are watched already were accepted by an earlier pass, which ended because of
    // others.
    const QStringList lost = platform.addFiles(wanted);
    if (!lost.isEmpty()) {
        logRefused(lost);
        rememberRefused(lost);
        if (refusal == Refusal::EndsLook && !isScanning)
            return false;
    }
    const QSet<QString> notWatched = setOf(lost);
    QStringList added;
    for (int i = 0; i < wanted.size(); ++i) {
        const QString& file = wanted.at(i);
        if (notWatched.contains(file))
            continue;
        unwatched.remove(file);
        if (files.contains(file))
            continue;
        files.insert(file, states.at(i));
        added.append(file);
    }

    const WatcherTurn turn(this);
    for (const QString& file : asConst(added)) {
        mIsSettled = mIsSettled && isScanning;
        ++mReports;
        Q_EMIT q->addedFiles(file);
        if (turn.isOver())
            return false; // a receiver has ended the turn
        if (!isScanning)
            checkReported(file);
    }
    return lost.isEmpty();
}

bool DirectoryWatcherPrivate::watchFolders(const QString& folder, const QStringList& found,
                                           Refusal refusal)
{
    if (!reportFilesReplacedBy(found))
        return false;
    const QStringList wanted = withoutRefused(without(found, folders), refusal);
    if (wanted.isEmpty())
        return true;
    QHash<QString, FileState> states;
    for (const QString& path : wanted)
        states.insert(path, stateOf(path));
    const QStringList lost = platform.addFolders(wanted);
    for (const QString& path : asConst(lost))
        states.remove(path);
    for (auto state = states.cbegin(); state != states.cend(); ++state) {
        folders.insert(state.key(), state.value());
        unwatched.remove(state.key());
    }
    // For files that were created in them before they were watched.
    if (!states.isEmpty())
        lookAgainSoon(folder);
    if (lost.isEmpty())
        return true;
    logRefused(lost);
    rememberRefused(lost);
    return false;
}

/// Leaves out, in a second pass, the paths that were refused before and have not changed.
QStringList DirectoryWatcherPrivate::withoutRefused(const QStringList& paths, Refusal refusal) const
{
    if (refusal == Refusal::EndsLook || unwatched.isEmpty())
        return paths;
    QStringList worthTrying;
    for (const QString& path : paths) {
        const auto former = unwatched.constFind(path);
        if (former == unwatched.cend() || former.value() != stateOf(path))
            worthTrying.append(path);
    }
    return worthTrying;
}

// Looking again

void DirectoryWatcherPrivate::lookAgainSoon(const QString& folder)
{
    // All notifications until then share one second pass.
    if (mSecondLooks.isEmpty())
        QTimer::singleShot(0, q, [this] { lookAgain(); });
    mSecondLooks.insert(folder);
}

void DirectoryWatcherPrivate::lookAgain()
{
    const WatcherTurn turn(this);
    QSet<QString> waiting;
    waiting.swap(mSecondLooks);
    for (const QString& folder : asConst(waiting)) {
        const QStringList changed = forgetFolders(folder, true);
        for (const QString& path : changed) {
            ++mReplacedFolders[path];
            // This must precede the report of a file that has replaced a folder.
            if (!reportVanishedFiles(asGiven(path), QSet<QString>()))
                return;
        }
        QStringList listed;
        look(folder, Scope::Tree, Refusal::IsSkipped, &listed);
        if (turn.isOver())
            return;
        if (!areAllFiles(folder, listed) && !reportVanishedFiles(folder, setOf(listed)))
            return;
        // A folder that has replaced another one contains files that have replaced others.
        for (const QString& path : changed) {
            if (!reportChangedFiles(filesBelow(asGiven(path))))
                return;
        }
    }
    if (!waiting.isEmpty())
        noteActivity(*waiting.cbegin(), turn.elapsed());
}

/// Stops watching the folders at and below \a folder, or if \a onlyChanged, only those that are now
/// different folders: after a folder was renamed, the platform continues to watch its content under
/// the old paths. Returns them.
QStringList DirectoryWatcherPrivate::forgetFolders(const QString& folder, bool onlyChanged)
{
    QStringList forgotten;
    const QString path = absolute(folder);
    const QString prefix = withSlash(path);
    for (auto known = folders.cbegin(); known != folders.cend(); ++known) {
        if (known.key() != folder && known.key() != path && !known.key().startsWith(prefix))
            continue;
        const FileState state = stateOf(known.key());
        if (!onlyChanged
            || (state.kind != FileState::Kind::Unknown && !state.isSameFile(known.value())))
            forgotten.append(known.key());
    }
    if (!forgotten.isEmpty())
        platform.removeFolders(forgotten);
    for (const QString& gone : asConst(forgotten))
        folders.remove(gone);
    return forgotten;
}

/// To be called before new files are reported: forgets the folders that have become files, and
/// reports the files that were in them as deleted; reports the files that have become folders.
/// False if a slot ended the turn.
bool DirectoryWatcherPrivate::forgetFoldersReplacedBy(const QStringList& newFiles)
{
    QSet<QString> above;
    for (const QString& file : newFiles) {
        const QString path = absolute(file);
        if (folders.contains(path)) {
            forgetFolders(path, false);
            if (!reportVanishedFiles(file, QSet<QString>()))
                return false;
        }
        for (QString folder = folderOf(file); !folder.isEmpty() && !above.contains(folder);
             folder = folderOf(folder))
            above.insert(folder);
    }
    const WatcherTurn turn(this);
    for (const QString& folder : asConst(above)) {
        if (files.contains(folder))
            handleFile(folder);
        if (turn.isOver())
            return false;
    }
    return true;
}

/// Reports the files that have become folders. False if a slot ended the turn.
bool DirectoryWatcherPrivate::reportFilesReplacedBy(const QStringList& found)
{
    QStringList former;
    for (const QString& folder : found) {
        const QString file = asGiven(folder);
        if (files.contains(file))
            former.append(file);
    }
    return reportChangedFiles(former);
}

/// False when a receiver ended the turn.
bool DirectoryWatcherPrivate::reportVanishedFiles(const QString& folder,
                                                  const QSet<QString>& present)
{
    const WatcherTurn turn(this);
    QSet<QString> closed; // folders that may not be entered: the state of their files is unknown
    const QStringList known = filesBelow(folder);
    for (const QString& file : known) {
        // A slot may already have caused the report of this file.
        if (present.contains(file) || closed.contains(folderOf(file)) || !files.contains(file))
            continue;
        const FileState state = stateOf(file);
        if (state.kind == FileState::Kind::Unknown)
            closed.insert(folderOf(file));
        if (state.isMissing() || state.isFolder())
            handleFile(file);
        if (turn.isOver())
            return false;
    }
    return true;
}

/// False when a receiver ended the turn.
bool DirectoryWatcherPrivate::reportChangedFiles(const QStringList& candidates)
{
    const WatcherTurn turn(this);
    for (const QString& file : candidates) {
        const FileState state = stateOf(file);
        if (files.contains(file) && (state.isMissing() || state != files.value(file)))
            handleFile(file);
        if (turn.isOver())
            return false;
    }
    return true;
}

/// Whether \a listed, the files found in \a folder, are exactly the known files. A quick check,
/// which may return false even if they are.
bool DirectoryWatcherPrivate::areAllFiles(const QString& folder, const QStringList& listed) const
{
    return folder == rootPath && listed.size() == files.size()
        && std::all_of(listed.begin(), listed.end(),
                       [this](const QString& file) { return files.contains(file); });
}

QStringList DirectoryWatcherPrivate::filesBelow(const QString& folder) const
{
    QStringList below;
    const QString prefix = withSlash(folder);
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        if (file.key().startsWith(prefix))
            below.append(file.key());
    }
    return below;
}

// Paths

QString DirectoryWatcherPrivate::asGiven(const QString& path) const
{
    return path.startsWith(withSlash(mRootAbsolute))
        ? withSlash(rootPath) + path.mid(withSlash(mRootAbsolute).size())
        : path;
}

QString DirectoryWatcherPrivate::absolute(const QString& path) const
{
    const QString prefix = withSlash(rootPath);
    return path.startsWith(prefix) ? withSlash(mRootAbsolute) + path.mid(prefix.size())
                                   : QDir(path).absolutePath();
}

} // namespace OrvaUtilsPrivate
