// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Site.h"

#include <FileUtils.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace {

#ifdef Q_OS_DARWIN
const Qt::CaseSensitivity pathCase = Qt::CaseInsensitive;
#else
const Qt::CaseSensitivity pathCase = Qt::CaseSensitive;
#endif

/// The path with all links resolved; its last parts need not exist.
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

/// True if \a path is \a folder or is below it. Both are absolute and clean.
bool liesIn(const QString& path, const QString& folder)
{
    if (path.compare(folder, pathCase) == 0 || folder == QLatin1String("/"))
        return true;
    return path.startsWith(folder + QLatin1Char('/'), pathCase);
}

/// The names of the program's own files in the site start with this.
const QLatin1String ownPrefix(".shop-publisher");

QString draftsPattern(QLatin1String six)
{
    return ownPrefix + QLatin1Char('-') + six;
}

QString textOfError(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

/// Whether the site was made by an earlier version of the program, which kept no record.
bool isFormerSite(const QString& folder)
{
    QFile page(folder + QLatin1String("/index.html"));
    return page.open(QIODevice::ReadOnly)
        && page.read(2048).contains("<meta name=\"generator\" content=\"shop-publisher\"");
}

/// The folders above \a place: "a" and "a/b" for "a/b/c.jpg", "a" for "a/".
QStringList foldersAbove(const QString& place)
{
    QStringList folders;
    for (int slash = int(place.indexOf(QLatin1Char('/'))); slash >= 0;
         slash = int(place.indexOf(QLatin1Char('/'), slash + 1)))
        folders.append(place.left(slash));
    return folders;
}

/// Whether the file \a path has that content.
bool holds(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return !QFileInfo(path).isSymLink() && file.open(QIODevice::ReadOnly)
        && file.size() == content.size() && file.readAll() == content;
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
        {QFileInfo(project.staticFolder()).canonicalFilePath(),
         QT_TRANSLATE_NOOP("Site", "SITE lies in the folder of the static files (%1)."),
         QT_TRANSLATE_NOOP("Site", "SITE contains the folder of the static files (%1).")},
    };
    for (const auto& rule : rules) {
        if (!rule.folder.isEmpty() && liesIn(mFolder, rule.folder))
            return tr(rule.siteInside).arg(rule.folder);
        if (!rule.folder.isEmpty() && liesIn(rule.folder, mFolder))
            return tr(rule.siteAround).arg(rule.folder);
    }
    if (QFileInfo::exists(mFolder) && !QFileInfo(mFolder).isDir())
        return tr("SITE is not a folder (%1).").arg(mFolder);
    return QString();
}

QString Site::ownersRefusal() const
{
    const QDir there(mFolder);
    const QDir::Filters all = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    const QStringList entries = there.entryList(all);
    const bool isOurs = std::all_of(entries.begin(), entries.end(), [](const QString& entry) {
        return entry.startsWith(ownPrefix);
    });
    if (isOurs || QFileInfo(recordPath()).isFile() || isFormerSite(mFolder))
        return QString();
    const QString replaced =
        there
            .entryList(QStringLiteral("images thumbs sizes static data config index.html "
                                      "shop-*.html photographs*.html sitemap.xml")
                           .split(QLatin1Char(' ')),
                       all, QDir::Name)
            .join(QLatin1String(", "));
    const QString reason =
        tr("SITE was not made by this program, and there is something in it (%1).").arg(mFolder);
    const QString lost = replaced.isEmpty()
        ? QString()
        : tr("This would be replaced: %1.").arg(replaced) + QLatin1Char(' ');
    return reason + QLatin1Char(' ') + lost + tr("--force publishes there all the same.");
}

Site::Opened Site::open(QString* reason)
{
    if (!FileUtils::fileMkPath(recordPath())) {
        *reason = tr("The folder %1 cannot be made.").arg(mFolder);
        return NotWritable;
    }
    const QString locked = mFolder + QLatin1Char('/') + ownPrefix;
    if (!mLock.openNewProjectFile(locked)
        && QFileInfo::exists(locked + ProjectFileLocker::suffixLockedFile())) {
        *reason = tr("Another instance publishes into SITE (%1).").arg(mFolder);
        return InUse;
    }
    errno = 0;
    if (mLock.isLocked()) {
        removeLeftBehind();
        mDrafts = std::make_unique<QTemporaryDir>(mFolder + QLatin1Char('/')
                                                  + draftsPattern(QLatin1String("XXXXXX")));
    }
    if (mDrafts && mDrafts->isValid())
        return Ready;
    const bool isDenied = !QFileInfo(mFolder).isWritable();
    *reason = tr("The folder %1 cannot be written to (%2).")
                  .arg(mFolder, textOfError(isDenied ? EACCES : errno));
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

/// Removes the working folders of killed programs: a running one would have locked the site.
void Site::removeLeftBehind() const
{
    const QStringList names = QDir(mFolder).entryList({draftsPattern(QLatin1String("??????"))},
                                                      QDir::Dirs | QDir::Hidden | QDir::NoSymLinks);
    for (const QString& name : names)
        QDir(mFolder + QLatin1Char('/') + name).removeRecursively();
}

bool Site::overlaps(const QString& folder) const
{
    return liesIn(folder, mFolder) || liesIn(mFolder, folder);
}

bool Site::contains(const QString& absolutePath) const
{
    return liesIn(absolutePath, mFolder);
}

QString Site::path(const QString& place) const
{
    return mFolder + QLatin1Char('/') + place;
}

QString Site::draft(const QString& place)
{
    // The suffix stays: it is part of how readers recognise a file.
    const QString suffix = QFileInfo(place).suffix();
    return mDrafts->path() + QLatin1Char('/') + QString::number(++mLastDraft)
        + (suffix.isEmpty() ? suffix : QLatin1Char('.') + suffix);
}

/// Why no file can be at \a place after the next commit(); empty if one can.
QString Site::obstacle(const QString& place) const
{
    const QStringList folders = foldersAbove(place);
    for (const QString& folder : folders) {
        const QFileInfo info(path(folder));
        if (info.isSymLink())
            return tr("cannot be written: %1 is a link that leads out of the site").arg(folder);
        if (info.exists() && !info.isDir() && !mRemovals.contains(folder))
            return tr("cannot be written: the folder %1 cannot be made").arg(folder);
    }
    const auto isBelow = [&place](const QString& file) {
        return file.startsWith(place + QLatin1Char('/'));
    };
    const QFileInfo info(path(place));
    if (!place.endsWith(QLatin1Char('/')) && info.isDir() && !info.isSymLink()
        && std::none_of(mRemovals.begin(), mRemovals.end(), isBelow))
        return tr("cannot be written to %1 (%2)").arg(place, textOfError(EISDIR));
    return QString();
}

/// Whether nothing exists at \a place, nor in its way, so that nothing is lost when a file is put
/// there.
bool Site::isFree(const QString& place) const
{
    const QStringList folders = foldersAbove(place);
    const QFileInfo there(path(place));
    return !there.exists() && !there.isSymLink()
        && std::none_of(folders.begin(), folders.end(),
                        [this](const QString& folder) { return mRemovals.contains(folder); });
}

QString Site::put(const QVector<Draft>& drafts)
{
    QString reason;
    for (const Draft& draft : drafts) {
        reason = obstacle(draft.place);
        if (!reason.isEmpty())
            return reason;
    }
    const bool isNew = std::all_of(drafts.begin(), drafts.end(),
                                   [this](const Draft& draft) { return isFree(draft.place); });
    for (const Draft& draft : drafts) {
        if (!isNew)
            mMoves.insert(draft.place, draft.path);
        else if (reason.isEmpty())
            reason = move(draft);
    }
    return reason;
}

QString Site::write(const SiteFile& file)
{
    if (holds(path(file.place), file.content))
        return QString();
    const QString made = draft(file.place);
    QString why;
    if (!FileUtils::replaceFileContent(made, file.content, &why))
        return tr("cannot be written (%1)").arg(why);
    mMoves.insert(file.place, made);
    return QString();
}

QString Site::writeRecord(const Published& record)
{
    const QString made = draft(Published::fileName());
    QString why;
    if (FileUtils::replaceFileContent(made, record.toJson(), &why))
        why = move({made, Published::fileName()});
    return why.isEmpty() ? why : tr("cannot be written (%1)").arg(why);
}

void Site::remove(const QString& place)
{
    // Somebody who can write to the site may have changed the record, which names it.
    if (liesIn(QDir::cleanPath(path(place)), mFolder))
        mRemovals.insert(place);
}

QMap<QString, QString> Site::commit()
{
    QMap<QString, QString> failures;
    // Removals first: a folder may get the name of a file, and on some systems "a.jpg" is "A.JPG".
    const QSet<QString> removals = mRemovals;
    const auto note = [&failures](const QString& place, const QString& reason) {
        if (!reason.isEmpty())
            failures.insert(place, reason);
    };
    for (const QString& place : removals)
        note(place, removeNow(place));
    for (auto it = mMoves.cbegin(); it != mMoves.cend(); ++it)
        note(it.key(), move({it.value(), it.key()}));
    forget();
    return failures;
}

void Site::forget()
{
    mRemovals.clear();
    mMoves.clear();
}

/// Does what put() does, at once.
QString Site::move(const Draft& draft) const
{
    QString why;
    if (FileUtils::fileMkPath(path(draft.place))
        && FileUtils::moveOver(draft.path, path(draft.place), &why))
        return QString();
    return tr("cannot be written to %1 (%2)")
        .arg(draft.place, why.isEmpty() ? textOfError(errno) : why);
}

/// Removes a file, and the folders that are empty then, except the topmost one. Returns why it
/// cannot be removed; empty if it is gone.
QString Site::removeNow(const QString& place) const
{
    const QStringList folders = foldersAbove(place);
    for (const QString& folder : folders) {
        if (QFileInfo(path(folder)).isSymLink())
            return tr("cannot be removed: %1 is a link that leads out of the site").arg(folder);
    }
    QFile file(path(place));
    if ((file.exists() || QFileInfo(file).isSymLink()) && !file.remove())
        return tr("cannot be removed from %1 (%2)").arg(place, file.errorString());
    for (int i = int(folders.size()) - 1; i > 0; --i) {
        if (!QDir().rmdir(path(folders.at(i))))
            break;
    }
    return QString();
}
