// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Site.h"

#include "LockFile.h"
#include "MoveOver.h"

#include <FileUtils.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>

#ifndef Q_OS_WIN
#include <fcntl.h>
#endif

namespace {

#ifdef Q_OS_DARWIN
const Qt::CaseSensitivity pathCase = Qt::CaseInsensitive;
#else
const Qt::CaseSensitivity pathCase = Qt::CaseSensitive;
#endif

/// The path with all links resolved, although its last parts may not exist.
QString resolvedPath(const QString& path)
{
    QString existing = QFileInfo(path).absoluteFilePath();
    QString missing;
    while (!QFileInfo::exists(existing)) {
        const int slash = int(existing.lastIndexOf(QLatin1Char('/')));
        if (slash < 0)
            return QDir::cleanPath(path);
        missing.prepend(existing.mid(slash));
        existing.truncate(slash);
        if (existing.isEmpty())
            existing = QStringLiteral("/");
    }
    const QString resolved = QFileInfo(existing).canonicalFilePath() + missing;
    const QString clean = QDir::cleanPath(resolved);
    // A ".." among the missing parts leads back to folders that may exist.
    return missing.contains(QLatin1String("/..")) && clean != path ? resolvedPath(clean) : clean;
}

/// True when \a path is \a folder or lies below it. Both are absolute and clean.
bool liesIn(const QString& path, const QString& folder)
{
    if (path.compare(folder, pathCase) == 0 || folder == QLatin1String("/"))
        return true;
    return path.startsWith(folder + QLatin1Char('/'), pathCase);
}

/// The names in the site of what visitors need not know begin with this.
const QLatin1String ownPrefix(".shop-publisher");

QString draftsPattern(QLatin1String six)
{
    return ownPrefix + QLatin1Char('-') + six;
}

/// Whether an earlier version of the program, which kept no record, has made the site.
bool isFormerSite(const QString& folder)
{
    QFile page(folder + QLatin1String("/index.html"));
    return page.open(QIODevice::ReadOnly)
        && page.read(2048).contains("<meta name=\"generator\" content=\"shop-publisher\"");
}

/// Whether the file \a path has that content.
bool holds(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return !QFileInfo(path).isSymLink() && file.open(QIODevice::ReadOnly)
        && file.size() == content.size() && file.readAll() == content;
}

QString lockPath(const QString& draftsFolder)
{
    return draftsFolder + QLatin1String("/lock");
}

/// The lock of a working folder, which goes with its process, however old it gets.
std::unique_ptr<QLockFile> lockOf(const QString& draftsFolder)
{
    auto lock = std::make_unique<QLockFile>(lockPath(draftsFolder));
    lock->setStaleLockTime(0);
    return lock;
}

/// Lets two folders change places in one step. False where the system cannot.
bool exchange(const QString& one, const QString& other)
{
    const QByteArray oneName = QFile::encodeName(one);
    const QByteArray otherName = QFile::encodeName(other);
#if defined(Q_OS_LINUX) && defined(RENAME_EXCHANGE)
    return ::renameat2(AT_FDCWD, oneName.constData(), AT_FDCWD, otherName.constData(),
                       RENAME_EXCHANGE)
        == 0;
#elif defined(Q_OS_MACOS) && defined(RENAME_SWAP)
    return ::renamex_np(oneName.constData(), otherName.constData(), RENAME_SWAP) == 0;
#else
    Q_UNUSED(oneName)
    Q_UNUSED(otherName)
    return false;
#endif
}

} // namespace

Site::Site(const QString& path)
    : mFolder(resolvedPath(path))
{ }

QString Site::refusal(const Project& project) const
{
    const struct
    {
        QString folder;
        const char* siteInside;
        const char* siteAround;
    } rules[] = {
        {project.photosFolder(),
         QT_TRANSLATE_NOOP("Site", "SITE lies in the folder of the photographs (%1)."),
         QT_TRANSLATE_NOOP("Site", "SITE contains the folder of the photographs (%1).")},
        {project.folder(), QT_TRANSLATE_NOOP("Site", "SITE lies in the project (%1)."),
         QT_TRANSLATE_NOOP("Site", "SITE contains the project (%1).")},
    };
    const QString staticFiles = QFileInfo(project.staticFolder()).canonicalFilePath();
    if (!staticFiles.isEmpty() && liesIn(mFolder, staticFiles)
        && !liesIn(mFolder, project.folder()))
        return tr("SITE lies in the folder of the static files (%1).").arg(staticFiles);
    if (!staticFiles.isEmpty() && liesIn(staticFiles, mFolder)
        && !liesIn(project.folder(), mFolder))
        return tr("SITE contains the folder of the static files (%1).").arg(staticFiles);
    for (const auto& rule : rules) {
        if (liesIn(mFolder, rule.folder))
            return tr(rule.siteInside).arg(rule.folder);
        if (liesIn(rule.folder, mFolder))
            return tr(rule.siteAround).arg(rule.folder);
    }
    if (QFileInfo::exists(mFolder) && !QFileInfo(mFolder).isDir())
        return tr("SITE is not a folder (%1).").arg(mFolder);
    return QString();
}

QString Site::ownersRefusal() const
{
    const QStringList entries = QDir(mFolder).entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    QStringList foreign;
    QStringList replaced;
    for (const QString& entry : entries) {
        if (entry.startsWith(ownPrefix))
            continue;
        foreign.append(entry);
        if (QDir::match(QStringLiteral("images;thumbs;sizes;static;data;config;index.html;"
                                       "shop-*.html;photographs*.html;sitemap.xml"),
                        entry))
            replaced.append(entry);
    }
    if (foreign.isEmpty() || QFileInfo(recordPath()).isFile() || isFormerSite(mFolder))
        return QString();
    const QString reason =
        tr("SITE was not made by this program, and there is something in it (%1).").arg(mFolder);
    const QString lost = replaced.isEmpty() ? QString()
                                            : QLatin1Char(' ')
            + tr("This would be replaced: %1.").arg(replaced.join(QLatin1String(", ")));
    return reason + lost + QLatin1Char(' ') + tr("--force publishes there all the same.");
}

Site::Opened Site::open(QString* reason)
{
    if (!FileUtils::fileMkPath(mFolder + QLatin1String("/index.html"), nullptr)) {
        *reason = tr("The folder %1 cannot be made.").arg(mFolder);
        return NotWritable;
    }
    const QString lock = mFolder + QLatin1Char('/') + ownPrefix + QLatin1String(".lock");
    mLock = std::make_unique<QLockFile>(lock);
    mLock->setStaleLockTime(0);
    if (!mLock->tryLock(0) && !(LockFile::removeNobodys(lock) && mLock->tryLock(0))
        && mLock->error() == QLockFile::LockFailedError) {
        *reason = tr("Another instance publishes into SITE (%1).").arg(mFolder);
        return InUse;
    }
    errno = 0;
    if (mLock->isLocked()) {
        removeLeftBehind();
        mDrafts = std::make_unique<QTemporaryDir>(mFolder + QLatin1Char('/')
                                                  + draftsPattern(QLatin1String("XXXXXX")));
    }
    if (mDrafts && mDrafts->isValid()) {
        mDraftsLock = lockOf(mDrafts->path());
        if (mDraftsLock->tryLock(0))
            return Ready;
    }
    const bool isDenied = !QFileInfo(mFolder).isWritable();
    *reason = tr("The folder %1 cannot be written to (%2).")
                  .arg(mFolder, QString::fromLocal8Bit(std::strerror(isDenied ? EACCES : errno)));
    return NotWritable;
}

Published Site::record() const
{
    QFile file(recordPath());
    return file.open(QIODevice::ReadOnly) ? Published::fromJson(file.readAll()) : Published();
}

QString Site::recordPath() const
{
    return mFolder + QLatin1Char('/') + Published::fileName();
}

/// Removes the working folders of programs that were killed. One of a program that runs, for
/// another project or without a lock, is locked.
void Site::removeLeftBehind() const
{
    const QStringList names = QDir(mFolder).entryList({draftsPattern(QLatin1String("??????"))},
                                                      QDir::Dirs | QDir::Hidden | QDir::NoSymLinks);
    for (const QString& name : names) {
        const QString folder = mFolder + QLatin1Char('/') + name;
        const std::unique_ptr<QLockFile> lock = lockOf(folder);
        if (lock->tryLock(0) || LockFile::removeNobodys(lockPath(folder))) {
            lock->unlock();
            QDir(folder).removeRecursively();
        }
    }
}

bool Site::overlaps(const QString& folder) const
{
    return liesIn(folder, mFolder) || liesIn(mFolder, folder);
}

bool Site::contains(const QString& absolutePath) const
{
    return liesIn(absolutePath, mFolder);
}

QString Site::draft(const QString& name) const
{
    return mDrafts->path() + QLatin1Char('/') + name;
}

bool Site::publish(const QString& draftPath, const QString& place, QString* reason)
{
    if (!makeFolderFor(place, reason))
        return false;
    const QString target = mFolder + QLatin1Char('/') + place;
    QString why;
    if (!moveOver(draftPath, target, &why)) {
        *reason = tr("cannot be written to %1 (%2)").arg(place, why);
        return false;
    }
    return true;
}

bool Site::publishFolder(const QString& draftPath, const QString& folder, QString* reason)
{
    const QString target = mFolder + QLatin1Char('/') + folder;
    const QFileInfo there(target);
    if (there.isSymLink()) {
        *reason = tr("cannot be written: %1 is a link that leads out of the site").arg(folder);
        return false;
    }
    if (there.exists() && !there.isDir()) {
        *reason = tr("cannot be written (a file of that name is in the way)");
        return false;
    }
    if (there.exists() && exchange(draftPath, target)) {
        QDir(draftPath).removeRecursively();
        return true;
    }
    // In two steps, between which there is none.
    const QString old = draft(QStringLiteral("old-") + folder);
    if (there.exists() && !QDir().rename(target, old)) {
        *reason = tr("cannot be written: the old folder cannot be moved away");
        return false;
    }
    if (!QDir().rename(draftPath, target)) {
        *reason = tr("cannot be written: the folder %1 cannot be made").arg(folder);
        QDir().rename(old, target);
        return false;
    }
    QDir(old).removeRecursively();
    return true;
}

bool Site::remove(const QString& place, QString* reason) const
{
    QStringList parts = place.split(QLatin1Char('/'));
    QString folder = mFolder;
    for (int i = 0; i + 1 < parts.size(); ++i) {
        folder += QLatin1Char('/') + parts.at(i);
        if (QFileInfo(folder).isSymLink()) {
            *reason = tr("cannot be removed: %1 is a link that leads out of the site")
                          .arg(QStringList(parts.mid(0, i + 1)).join(QLatin1Char('/')));
            return false;
        }
    }
    const QString target = mFolder + QLatin1Char('/') + place;
    const QFileInfo info(target);
    if (info.exists() || info.isSymLink()) {
        QFile file(target);
        if (!file.remove()) {
            *reason = tr("cannot be removed from %1 (%2)").arg(place, file.errorString());
            return false;
        }
    }
    // Down to, and without, the folder of all pictures. One that holds something stays.
    for (parts.removeLast(); parts.size() > 1; parts.removeLast()) {
        if (!QDir().rmdir(mFolder + QLatin1Char('/') + parts.join(QLatin1Char('/'))))
            break;
    }
    return true;
}

bool Site::write(const QVector<SiteFile>& wanted, SiteFile* failed, QString* reason)
{
    QVector<SiteFile> files;
    for (const SiteFile& file : wanted) {
        if (!holds(mFolder + QLatin1Char('/') + file.place, file.content))
            files.append(file);
    }
    for (int i = 0; i < files.size(); ++i) {
        *failed = files.at(i);
        if (!makeFolderFor(failed->place, reason))
            return false;
        const QFileInfo target(mFolder + QLatin1Char('/') + failed->place);
        if (target.isDir() && !target.isSymLink()) {
            *reason = tr("cannot be written (a folder of that name is in the way)");
            return false;
        }
        QFile file(draft(QString::number(i)));
        if (!file.open(QIODevice::WriteOnly)
            || file.write(failed->content) != failed->content.size() || !file.flush()) {
            *reason = tr("cannot be written (%1)").arg(file.errorString());
            return false;
        }
    }
    for (int i = 0; i < files.size(); ++i) {
        *failed = files.at(i);
        if (!publish(draft(QString::number(i)), failed->place, reason))
            return false;
    }
    return true;
}

bool Site::makeFolderFor(const QString& place, QString* reason) const
{
    const QStringList parts = place.split(QLatin1Char('/'));
    QString folder = mFolder;
    for (int i = 0; i + 1 < parts.size(); ++i) {
        folder += QLatin1Char('/') + parts.at(i);
        const QString shown = QStringList(parts.mid(0, i + 1)).join(QLatin1Char('/'));
        const QFileInfo info(folder);
        if (info.isSymLink()) {
            *reason = tr("cannot be written: %1 is a link that leads out of the site").arg(shown);
            return false;
        }
        if (!info.isDir() && !QDir().mkdir(folder)) {
            *reason = tr("cannot be written: the folder %1 cannot be made").arg(shown);
            return false;
        }
    }
    return true;
}
