// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// FileUtils: the family's rules for paths, file names, sizes, folder trees and file content.

#ifndef ORVAUTILS_FILEUTILS_H
#define ORVAUTILS_FILEUTILS_H

#include "orvautils_export.h"

#include <QByteArray>
#include <QIcon>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

QT_BEGIN_NAMESPACE
class QDateTime;
class QDebug;
class QFontMetrics;
class QIODevice;
class QRegExp;
QT_END_NAMESPACE

/// Static functions on paths, file names, sizes, folder trees and file content.
///
/// \code
/// QString error;
/// if (!FileUtils::checkWritingRightInFolder(folder, tr("Projects"), &error))
///     QMessageBox::warning(window, title, error);
/// else if (!FileUtils::copyDir(project, folder + QStringLiteral("/backup"), false))
///     ... // the reason is in the log
/// \endcode
///
/// Paths are separated by "/" on every platform. A folder path may end with "/" or not; the
/// documentation of a function says so if that makes a difference. Everything runs on the calling
/// thread and keeps no state, so different threads may work on different trees at the same time.
///
/// Failures are reported by the result and, if a function takes a `QString*`, by a message in
/// \a error. The pointer may be null, and the text is written on failure only, never cleared.
/// Records are logged with LogStream, with the file "FileUtils" and the name of the function. No
/// function except replaceDir() undoes what it did before a failure. Output lists and counters are
/// added to, never cleared, and keep what was added before a failure. Listings are in the order in
/// which the system returns them.
///
/// Three sets of entries are distinguished below. Broken links and special files (pipes, sockets,
/// devices) are in none of them; a link to a file counts as a file and a link to a folder as a
/// folder, except while deleting.
/// - *all entries*: files and folders, hidden ones included
/// - *visible entries*: files and folders without the hidden ones
/// - *visible folders*: folders without the hidden ones
///
/// A link that leads back to a folder that is currently being walked is not entered again: every
/// function that walks a tree walks a loop of links once.
class ORVAUTILS_EXPORT FileUtils
{
public:
    /// How far an operation on a folder tree has come.
    struct TreeProgress
    {
        int files = 0; ///< files done so far
        /// The number of all files, or -1 until it is known; each function documents when that is.
        int totalFiles = -1;
        qint64 bytes = 0; ///< bytes of the files done so far
        /// The bytes of all files, or -1 until the end, because querying every size before the
        /// first file is done would cost too much. 0 from the beginning if files are removed.
        qint64 totalBytes = -1;
        QString path; ///< the file done last
    };

    /// A function that is called with the progress of an operation on a folder tree, in the thread
    /// that started it: for the first file, after that at most every 50 milliseconds, and at the
    /// end. Returning false cancels the operation.
    using TreeObserver = std::function<bool(const TreeProgress& progress)>;

    /// An entry of a folder, as reported by listEntries(). An entry that is neither a file nor a
    /// folder is a broken link, a pipe, a socket or a device.
    struct Entry
    {
        QString name; ///< the name in the folder, without a path
        bool isFile = false; ///< or a link to one
        bool isFolder = false; ///< or a link to one
        bool isLink = false; ///< a symbolic one, broken or not
        bool isHidden = false; ///< its name begins with a ".", or on Windows its attributes say so
        /// Whether a path leads to it. If not, its name on disk is not valid in the system's
        /// encoding, for example because it comes from an old archive, and \a name is an
        /// approximation for display.
        bool isReachable = true;
    };

    FileUtils() = delete;

    // Paths and names as text

    /// The last component of \a path, with its trailing "/" if the path has one.
    ///
    /// "/a/b/" gives "b/", "/a/b" and "b" give "b", "/" gives "/", an empty path an empty string.
    static QString lastPartOfFolder(const QString& path);

    /// lastPartOfFolder() without the trailing "/": "/a/b/" gives "b", "/" an empty string.
    static QString nameOfLastPartFolder(const QString& path);

    /// The folder that contains \a path, ending with "/".
    ///
    /// A path that ends with "/" is treated as text: "/a/b/" gives "/a/", and one without an
    /// earlier "/" is returned unchanged ("a/", "/"). Any other path is made absolute against the
    /// current folder first: "/a/b" gives "/a/". The "/" is always added, so "/a" deliberately
    /// gives "//", and an empty path "/".
    static QString parentFolder(const QString& path);

    /// \a path shortened on the left until it fits \a width pixels in the font of \a metrics, for
    /// display.
    ///
    /// The remaining text begins with "..." (three full stops) at a "/": ".../photos/a.jpg". A path
    /// that fits is returned unchanged. If only a final "/" or no "/" at all remains, the result is
    /// that of QFontMetrics::elidedText(). \a path is never changed.
    static QString elidedFolder(const QFontMetrics& metrics, QString& path, int width);

    /// \a name reduced to ASCII letters and digits, parentheses, spaces, "-", "_" and ".".
    ///
    /// Letters lose their accents; letters without a plain base letter ("ß", "ø") are removed. Runs
    /// of white space become one space and both ends are trimmed *before* other characters are
    /// removed, so " Été 2016 / n°3 " gives "Ete 2016  n3" with two spaces. May be empty.
    static QString normalizeFilename(const QString& name);

    /// The text "[\w()\s\-\_]+", a pattern for words that look like file names.
    static QString regExpFilename();

    /// \a size, in bytes, in human-readable form: "512 B", "1.50 kB", "3.25 MB", "2.00 GB".
    ///
    /// The units are "octets", "Ko", "Mo" and "Go" when the name of the default QLocale begins with
    /// "fr". Bounds are inclusive, so 1024 is still "1024 B". Negative sizes are shown in bytes,
    /// and zero deliberately as "0 kB". The decimal separator is always ".". Kilobytes and
    /// megabytes are computed in single precision and round accordingly; gigabytes in double.
    static QString fileSizeToString(qint64 size);

    /// Whether \a path is an existing folder; false for an empty path or one of white space only.
    static bool folderExists(const QString& path);

    /// Whether the folder \a path contains no visible entry.
    ///
    /// A folder that contains only hidden files (".DS_Store") deliberately counts as empty, and so
    /// does one that does not exist or cannot be read. An empty path means the current folder.
    static bool directoryIsEmpty(const QString& path);

    /// Whether \a name contains none of the characters / \ | ? < > " : * that some systems forbid
    /// in file names.
    static bool checkNameFileValidity(const QString& name);

    /// \a name with every character that checkNameFileValidity() forbids replaced by "_".
    static QString fixNameFileValidity(const QString& name);

    /// Sets the hidden attribute of the file \a path on Windows; does nothing elsewhere.
    static void setFileHiddenOnWindows(const QString& path);

    // Folder trees

    /// The size in bytes of all files in the folder \a path and its sub-folders, hidden ones
    /// included.
    ///
    /// Files named ".DS_Store", in any case, are ignored. \a fileCount, when given, is increased by
    /// the number of files. \a lastModified, when given, becomes the latest modification time of a
    /// file if it is null or earlier. Folders have no size and are not counted. Returns 0 for an
    /// empty path and for a folder that does not exist.
    static qint64 folderSize(const QString& path, int* fileCount = nullptr,
                             QDateTime* lastModified = nullptr);

    /// The same, with progress reported to \a observer, which may be empty. The totals are not
    /// known before the end.
    ///
    /// When it cancels, the result is the sum so far. \a error, when given, is set to the reason
    /// why the result is not the whole size: a folder does not exist or cannot be read, or the
    /// operation was cancelled.
    ///
    /// \code
    /// const auto show = [&](const FileUtils::TreeProgress& progress) {
    ///     label.setText(FileUtils::fileSizeToString(progress.bytes) + " …");
    ///     QCoreApplication::processEvents();
    ///     return label.isVisible();
    /// };
    /// const qint64 size = FileUtils::folderSize(folder, nullptr, nullptr, show, &error);
    /// \endcode
    static qint64 folderSize(const QString& path, int* fileCount, QDateTime* lastModified,
                             const TreeObserver& observer, QString* error = nullptr);

    /// Copies the file \a source to \a destination, whose folder is created if need be and which is
    /// replaced if it exists. The copy has the permissions that QFile::copy() gives it: those of
    /// the source, with the owner's completed by what the acting user may do with the source (a
    /// file of mode 0444 becomes 0644 when root copies it), and without set-user-ID and the like.
    ///
    /// When both are the same file, also through links, nothing is done and true is returned.
    /// Otherwise an existing destination is removed first, unless the source is not a file or
    /// cannot be opened, and stays removed if the copy fails then. A destination that is a link is
    /// replaced, and its target is not touched. The copy appears under its name only when it is
    /// complete; if it replaces a file, it is synced to the disk first. A destination that is a
    /// broken link makes the copy fail. On failure returns false and logs with LogType 2: a missing
    /// source, a destination that cannot be removed, or the copy with its numeric
    /// QFileDevice::FileError.
    static bool forceCopy(const QString& source, const QString& destination);

    /// Creates the folder that is to contain the file \a filePath, with all missing parents.
    ///
    /// Returns true if the folder exists afterwards. Otherwise false, with the message
    /// "(fileMkPath) Cant create folder '<absolute path>' !" in \a error. Nothing is logged.
    static bool fileMkPath(const QString& filePath, QString* error = nullptr);

    /// Empties the folder \a path and keeps the folder itself.
    ///
    /// Sub-folders are removed only when \a recursive is true and are silently left otherwise.
    /// Links, broken ones too, are removed as links; what they point to is not touched. Special
    /// files stay.
    ///
    /// As a guard against wiping the current folder, returns false without a log for an empty path,
    /// for one without a "/" and for "."; also for a folder that does not exist. Stops at the first
    /// entry that cannot be removed, logs it with LogType 4 and returns false, as it does for a
    /// folder that cannot be read.
    static bool removeContentDirectory(const QString& path, bool recursive);

    /// The same, with progress reported to \a observer, which may be empty. The total number of
    /// files is known from the beginning; bytes are not counted. When it cancels, the rest stays
    /// and nothing is logged. On failure \a error, when given, gets the reason, translated.
    ///
    /// \code
    /// const auto show = [&bar](const FileUtils::TreeProgress& progress) {
    ///     bar.setRange(0, progress.totalFiles);
    ///     bar.setValue(progress.files);
    ///     return true;
    /// };
    /// if (!FileUtils::removeContentDirectory(cache, true, show, &error))
    ///     QMessageBox::warning(window, title, error);
    /// \endcode
    static bool removeContentDirectory(const QString& path, bool recursive,
                                       const TreeObserver& observer, QString* error = nullptr);

    /// Copies the folder \a source with everything in it (all entries) to \a destination, which is
    /// created if need be.
    ///
    /// With \a merge false an existing destination is deleted first, so that it becomes an exact
    /// copy; a destination that is a link is replaced by a folder. With \a merge true entries
    /// without a counterpart in the source stay, and files of the same name are replaced. Links are
    /// copied as what they point to.
    ///
    /// A destination that is the source, lies inside it or contains it (also through links) is
    /// refused before anything is touched, and so is a source whose top folder cannot be read.
    /// Stops at the first failure and returns false; what was copied stays. A folder that cannot be
    /// read, or a name on disk that is not valid in the system's encoding, is a failure too; broken
    /// links, pipes, sockets, devices and links that lead back to a folder on the way are silently
    /// left out. The copy is synced to the disk once, at its end; if that fails, the copy has
    /// failed. Logs with LogType 4 a missing source, with LogType 2 every other failure. An empty
    /// source counts as missing, an empty destination as one that cannot be created.
    static bool copyDir(const QString& source, const QString& destination, bool merge);

    /// The same, with progress reported to \a observer, which may be empty. The total number of
    /// files is known from the beginning, and the bytes at the end. When it cancels, what was
    /// copied stays and nothing is logged. On failure \a error, when given, gets the reason,
    /// translated.
    ///
    /// \code
    /// QString error;
    /// const auto show = [&bar](const FileUtils::TreeProgress& progress) {
    ///     bar.setMaximum(progress.totalFiles);
    ///     bar.setValue(progress.files);
    ///     return !bar.wasCanceled();
    /// };
    /// if (!FileUtils::copyDir(project, backup, false, show, &error))
    ///     QMessageBox::warning(window, title, error);
    /// \endcode
    static bool copyDir(const QString& source, const QString& destination, bool merge,
                        const TreeObserver& observer, QString* error = nullptr);

    /// Makes \a destination an exact copy of the folder \a source, all or nothing: the copy is
    /// completed beside the destination, in its parent folder, synced to the disk, and takes its
    /// place in one step. Until then the old tree is untouched, whatever fails, and also if the
    /// copy is cancelled, the process is killed or the disk is full.
    ///
    /// The copy keeps modification times, permissions of files and folders, extended attributes and
    /// access lists, the holes of sparse files, and links as links, broken ones too; owners as well
    /// if root copies. Files with several names (hard links) become several files. Nothing is left
    /// out: if a tree contains something that cannot be copied (a pipe, a socket, a device, a
    /// folder that cannot be read, a name that is not valid in the system's encoding), nothing is
    /// replaced and \a error names them all.
    ///
    /// A \a destination that does not exist is created, with its parents; one that is a link to a
    /// folder stays a link, and that folder is replaced. A destination that is the source, lies
    /// inside it or contains it is refused. \a observer, which may be empty, receives the progress;
    /// the total number of files is known from the beginning. On failure returns false with the
    /// reason, translated, in \a error, and logs with LogType 2 "unable to replace", the path and
    /// the system's reason; a cancelled copy is not logged.
    ///
    /// \code
    /// QString error;
    /// if (!FileUtils::replaceDir(draft, site, nullptr, &error))
    ///     QMessageBox::warning(window, title, error); // the site has not changed
    /// \endcode
    ///
    /// Several processes may replace the same folder at the same time: the result is the complete
    /// copy of one of them. A process that is killed leaves its incomplete copy in a hidden folder
    /// ".orvautils-" and 32 digits; the next replacement of the same folder on that machine removes
    /// it. If the system cannot exchange two folders in one step (outside of Linux, and on some
    /// network file systems), the old tree is renamed first: a process that is killed at that very
    /// moment leaves it under such a name, followed by "-aside", and the next replacement moves it
    /// back before it begins. On file systems without locks (flock()) both stay. What cannot be
    /// removed of the old tree, such as another user's folder, stays in a hidden folder, too; the
    /// result is true nevertheless.
    static bool replaceDir(const QString& source, const QString& destination,
                           const TreeObserver& observer = TreeObserver(), QString* error = nullptr);

    /// Moves the file or folder \a path to \a newPath, on the same file system, in one step: other
    /// programs find either what was there before or what is there now. A folder replaces a whole
    /// tree, which is removed; outside of Linux there is a moment at which neither exists, see
    /// replaceDir().
    ///
    /// \code
    /// if (writePage(path + ".new") && FileUtils::moveOver(path + ".new", path, &error))
    ///     ... // no visitor ever sees half a page
    /// \endcode
    ///
    /// A file never replaces a folder, nor a folder a file; a link can be replaced by a file, but
    /// never by a folder. On failure returns false with the system's reason in \a error, and
    /// nothing has changed. Nothing is logged.
    static bool moveOver(const QString& path, const QString& newPath, QString* error = nullptr);

    /// Removes folders that contain no visible entry and returns how many were removed.
    ///
    /// With \a recursive true first the visible sub-folders, from the inside out; then, whatever
    /// \a recursive is, \a path itself. Removing a folder that contains only hidden entries is
    /// attempted but fails; it is not counted and nothing is logged. Links to folders are not
    /// followed. An empty path gives 0.
    static int removeEmptyDirs(const QString& path, bool recursive);

    /// Copies what \a source has available to \a destination in pieces of at most \a segmentSize
    /// bytes, until the source has nothing available.
    ///
    /// Both devices must be open and stay open. Returns the number of bytes *requested* from the
    /// source, which is deliberately not the number read or written (INT_MAX if it is larger);
    /// write errors are not noticed. Stops, without counting that request, when a read returns
    /// nothing, and returns 0 for a segment size below 1.
    static int segmentedCopy(QIODevice& source, QIODevice& destination, int segmentSize);

    /// Appends the visible files of the folder \a path to \a list as paths relative to it, each
    /// preceded by \a prefix, and returns how many.
    ///
    /// A "/" is appended to a prefix that is not empty and does not end with one. With \a recursive
    /// true sub-folders are listed too ("sub/file"): all visible ones, or those whose *name* is
    /// matched exactly by \a folderFilter, if it is given. The filter never applies to files.
    /// Returns 0 for an empty path and for a folder that does not exist.
    static int listFilesInFileSystem(const QString& path, QStringList& list, bool recursive,
                                     QRegExp* folderFilter = nullptr,
                                     const QString& prefix = QString());

    /// Appends the absolute path of each visible folder in \a path to \a list, with \a recursive
    /// true each followed by its own sub-folders.
    ///
    /// An empty path means the current folder. Returns false if the folder does not exist.
    static bool listDirectoriesInFileSystem(const QString& path, QStringList& list, bool recursive);

    /// Appends the name of each visible folder in \a path to \a list.
    ///
    /// An empty path means the current folder. Returns false if the folder does not exist.
    static bool listFolderName(const QString& path, QStringList& list);

    /// Appends everything in the folder \a path to \a list: all entries, and also what the other
    /// functions skip: broken links, special files, and names on disk that are not valid in the
    /// system's encoding. Sub-folders are not entered.
    ///
    /// Distinguishes a folder that cannot be read from an empty one: returns false, with the
    /// system's reason in \a error, for one that does not exist, is a file, may not be read, or
    /// fails while it is read; what was read until then is in \a list. An empty path, or one that
    /// contains a NUL, is not a folder. Nothing is logged.
    ///
    /// \code
    /// QVector<FileUtils::Entry> entries;
    /// if (!FileUtils::listEntries(folder, entries, &error))
    ///     QMessageBox::warning(window, title, error); // "Permission denied"
    /// for (const FileUtils::Entry& entry : entries)
    ///     model.append(entry.name, entry.isFolder);
    /// \endcode
    static bool listEntries(const QString& path, QVector<Entry>& list, QString* error = nullptr);

    // File content

    /// The whole content of the file \a path.
    ///
    /// Empty for a file that cannot be opened, cannot be read to its end, or is larger than a
    /// QByteArray can be (just below 2 GiB), which with \a logOnFailure is logged with LogType 1 as
    /// "FileUtils::readFileContent error : ", the path and " ne peut etre ouvert !". Empty without
    /// a record for an empty path. An empty file cannot be told from a missing one.
    static QByteArray readFileContent(const QString& path, bool logOnFailure = true);

    /// Makes \a data the whole content of the file \a path, which is created, with its folder, if
    /// it is missing. Empty data leaves an empty file.
    ///
    /// The file is emptied first: if writing fails, only what was written so far is left. An empty
    /// path gives false without a message. Otherwise false with \a error saying why: the message of
    /// fileMkPath(), or, translated, "Cannot open (WriteOnly) <path>" or "Cannot write datas
    /// (WriteOnly) in <path>" for a write that fails or ends early (a full disk). The last two are
    /// logged with LogType 2, both as "cannot open file " and the path.
    static bool writeFileContent(const QString& path, const QByteArray& data,
                                 QString* error = nullptr);

    /// As writeFileContent(), but the file at \a path is not lost whatever fails: \a data is
    /// written to a new file beside it, which is synced to the disk and then replaces it in one
    /// step, with its permissions. A link is followed. It must be possible to create a file in the
    /// folder. Nothing is logged; on failure \a error gets the message of fileMkPath() or the
    /// system's reason.
    ///
    /// \code
    /// if (!FileUtils::replaceFileContent(path, project.toJson(), &error))
    ///     QMessageBox::warning(window, title, error); // the old project still exists
    /// \endcode
    static bool replaceFileContent(const QString& path, const QByteArray& data,
                                   QString* error = nullptr);

    /// Replaces every occurrence of \a before in the UTF-8 file \a path by \a after; upper and
    /// lower case are different. An empty \a before replaces nothing.
    ///
    /// False, with nothing written, when the file cannot be read, is empty or begins with a zero
    /// byte. Otherwise true, even if writing failed (which writeFileContent() logs). The first zero
    /// byte and everything after it are dropped, bytes that are not UTF-8 become U+FFFD and a
    /// byte-order mark is removed, even if nothing is replaced: this is for text files.
    static bool replaceInFile(const QString& path, const QString& before, const QString& after);

    /// The MD5 digest of \a data, 32 lower-case hexadecimal digits.
    static QString md5FromDatas(const QByteArray& data);

    /// The MD5 digest of the content of the file \a path, which is read as a stream: memory does
    /// not grow with the file. For a file that cannot be opened it is the digest of no bytes,
    /// "d41d8cd98f00b204e9800998ecf8427e": this is deliberate, so check first whether the file
    /// exists.
    static QString md5(const QString& path);

    /// As md5(), with SHA-1: 40 digits, "da39a3ee5e6b4b0d3255bfef95601890afd80709" for no bytes.
    static QString sha1(const QString& path);

    /// A text that shows whether the file or folder \a path is unchanged: two equal stamps mean
    /// that nobody replaced it, wrote to it or changed its attributes in between, as far as the
    /// clock of the file system can tell (on Windows, without its attributes). Links are followed.
    /// Empty if nothing exists there or the system gives no information. The content is not read,
    /// and a copy has a different stamp: compare sha1() then.
    ///
    /// \code
    /// if (cache.stamp != FileUtils::fileStamp(photo)) {
    ///     cache.stamp = FileUtils::fileStamp(photo); // before it is read: a later change counts
    ///     cache.thumbnail = thumbnailOf(photo);
    /// }
    /// \endcode
    static QString fileStamp(const QString& path);

    /// Whether \a folder can be written to, which is tested by writing a file "check_write" into it
    /// and removing it again; an existing file of that name is lost. The folder is created, with
    /// its parents, if it is missing.
    ///
    /// Otherwise false, with \a error: translated "Folder is not valid ! (empty)" for an empty
    /// path, else the message of writeFileContent(), which with a \a label, the folder's display
    /// name, becomes the translated "Cant write in <label> error=<message>".
    static bool checkWritingRightInFolder(const QString& folder, const QString& label,
                                          QString* error = nullptr);

    /// The rich text, translated, that tells the user that the working folder \a folder cannot be
    /// written to and links to \a documentationAddress. It contains "<br>" in place of line feeds.
    /// Neither argument is escaped for HTML.
    static QString labelWorkingFolderBlocked(const QString& folder,
                                             const QString& documentationAddress);

    // Files on the desktop

    /// The icon for a file named \a name, which need not exist: the file "suffix_icons/file."
    /// followed by the suffix in lower case, in ApplicationUtils::pathDatas(), if the application
    /// ships it, otherwise the desktop's icon for \a name. For the GUI thread.
    static QIcon iconFromFilename(const QString& name);

    /// Shows the file \a path in the Finder and brings that to the front, by two calls of
    /// /usr/bin/osascript that are waited for. Nothing happens if that is missing; failures are not
    /// detected.
    ///
    /// The path is placed between double quotes in a script and is not escaped: never pass a path
    /// with a double quote or a backslash from an untrusted source.
    static void showFileInFolder(const QString& path);

    // Older variants that callers still depend on

    /// Functions that differ from those of the same purpose above, for callers that rely on the
    /// difference.
    struct ORVAUTILS_EXPORT old
    {
        old() = delete;

        /// Creates the folder that is to contain the file \a filePath, level by level.
        ///
        /// The folder is the text up to the last "/"; in a text without "/" there is no level to
        /// create, so it gives true. A level that cannot be created is logged with LogType 2, and
        /// the later ones are still tried. If any failed, returns false, with a last message "The
        /// folder '<folder>' cannot be created!" in \a error and, with LogType 2, in the log.
        static bool forceDirectoryCreationForAFile(const QString& filePath,
                                                   QString* error = nullptr);

        /// Removes the folder \a path and, when \a recursive is true, everything in it, in the
        /// order of the names ignoring case.
        ///
        /// Stops at the first sub-folder when \a recursive is false, at the first entry that cannot
        /// be removed and at folders deeper than \a depth levels, \a path being the first one.
        /// Links to files and folders are removed as links, \a path itself included; what they
        /// point to is not touched. Anything that is neither a file nor a folder, such as a broken
        /// link or a pipe, is left, and so is the folder that contains it. Returns false with a
        /// message in \a error (none for an empty path). Nothing is logged.
        static bool removeDirectory(const QString& path, bool recursive, QString* error = nullptr,
                                    int depth = 64);

        /// Appends the visible files of the folder \a path to \a list, as
        /// FileUtils::listFilesInFileSystem() does with \a recursive, \a folderFilter and
        /// \a prefix, with two differences: an empty path means the current folder, and a "/" is
        /// appended to an empty prefix too, so that by default every entry begins with "/"
        /// ("/file", "/sub/file").
        static int listFilesInFileSystem(const QString& path, QStringList& list, bool recursive,
                                         QRegExp* folderFilter = nullptr,
                                         const QString& prefix = QString());
    };
};

/// Writes the progress of an operation:
///
/// \code
/// qDebug() << progress; // TreeProgress(3 of 40 files, 1200 of ? bytes, "/srv/shop/beach.jpg")
/// \endcode
///
/// An unknown number is written as "?".
///
/// \relates FileUtils
ORVAUTILS_EXPORT QDebug operator<<(QDebug debug, const FileUtils::TreeProgress& progress);

#endif // ORVAUTILS_FILEUTILS_H
