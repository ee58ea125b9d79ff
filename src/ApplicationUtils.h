// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ApplicationUtils: where the application's folders are, whether it runs from a build tree or on a
// developer's machine, and a few helpers for screens, windows and the clipboard.

#ifndef ORVAUTILS_APPLICATIONUTILS_H
#define ORVAUTILS_APPLICATIONUTILS_H

#include "orvautils_export.h"

#include <QStandardPaths>
#include <QString>

class QMimeData;
class QPoint;
class QScreen;
class QWidget;

/// Folders, modes and desktop helpers of the host application.
///
/// Every folder is a string that ends with "/". It is concatenated from other strings and not
/// normalised, and no folder is created or checked for existence. The application's name in it is
/// CoreApplicationUtils::applicationName().
///
/// \code
/// const QString draft = ApplicationUtils::tempPath() + QStringLiteral("draft.jpg");
/// const QIcon icon(ApplicationUtils::pathDatas() + QStringLiteral("icons/shop.png"));
/// \endcode
///
/// Two modes change the folders, so that a program under development leaves the user's own data
/// alone: the qualification mode of a program that runs from its build tree, and the developer mode
/// of such a program on a developer's machine. The name of the developer's account is chosen when
/// the library is built, with the CMake option ORVAUTILS_DEVELOPER_ACCOUNT (default "orvadev").
///
/// Folders and modes can be queried at any time. Without an application object the program's folder
/// is not known: Qt prints a warning, no mode is active, and pathDatas() is the relative
/// "Resources/data/".
///
/// Thread: folders and modes may be queried from any thread once the identity is set; the functions
/// for screens, windows and the clipboard belong to the GUI thread.
class ORVAUTILS_EXPORT ApplicationUtils
{
public:
    // Folders

    /// The first of Qt's standard locations of the kind \a location that is not blank, followed
    /// by "/". Empty when there is none; a folder built on it is then a relative path such as
    /// "Orvanel/". Nothing is logged.
    static QString noEmptyStandardLocations(QStandardPaths::StandardLocation location);

    /// The user's documents, for example "/home/ann/Documents/".
    static QString pathDocuments();

    /// The user's pictures, for example "/home/ann/Pictures/".
    static QString pathImages();

    /// The folder for temporary files: the system's, for example "/tmp/"; in qualification mode
    /// "Orvanel Temp developper/" followed by the application's name, in the documents folder.
    static QString tempPath();

    /// The folder for the settings of the whole family: "Orvanel/" in the generic data location,
    /// for example "/home/ann/.local/share/Orvanel/"; in qualification mode "Orvanel Settings
    /// developper/" in the documents folder.
    static QString pathSettingsOrvanel();

    /// The application's own folder in pathSettingsOrvanel().
    static QString pathApplicationSettings();

    /// The folder of the data shipped with the application.
    ///
    /// In an installed bundle every "MacOS" is removed from the program's folder and
    /// "Resources/data/" appended: "/Applications/X.app/Contents/MacOS" gives
    /// "/Applications/X.app/Contents/Resources/data/". For a folder without "MacOS" there is no "/"
    /// in between: "/opt/shop" gives "/opt/shopResources/data/". This is deliberate.
    ///
    /// In a build tree everything from "bin/debug" or "bin/release" to the last
    /// ".app/Contents/MacOS" is removed and "data/" appended: the program in
    /// "/work/proj/bin/debug/X.app/Contents/MacOS" has its data in "/work/proj/data/", and a
    /// program elsewhere in "data/" within its own folder.
    static QString pathDatas();

    /// The folder of the helper programs: like pathDatas(), but with "Frameworks/" in place of
    /// "Resources/" and "extraBinaries/" in place of "data/".
    static QString pathExtraBinaries();

    /// "version/" in pathDatas().
    static QString pathVersion();

    /// "languages/" in pathDatas(): the translation files.
    static QString pathLanguages();

    // Modes

    /// Whether the program runs from its build tree, which is recognised by the letters "bin"
    /// anywhere in its folder's path, in this case. This is deliberately simple: a program
    /// installed in "/usr/bin" or "/opt/cabin" is in qualification mode as well.
    static bool detectQualificationMode();

    /// Whether the program runs from its build tree on a developer's machine: qualification mode is
    /// active and the home folder's path contains the developer's account name, in this case.
    static bool detectDeveloperMode();

    /// Whether developer mode or qualification mode is active.
    static bool detectDeveloperModeOrQualifMode();

    /// Whether the owner of the developer's account runs the program: developer mode is active and
    /// the home folder's path contains the account name.
    static bool detectIsQuillo();

    /// The active modes as text for window titles: "#dev mode# #qualif mode#" in developer mode,
    /// "#qualif mode#" in qualification mode alone, otherwise empty.
    static QString labelDeveloperMode_QualifMode();

    // Screens, windows and clipboard

    /// Turns on scaling and sharp pixmaps on high-DPI screens. Must be called before the
    /// application object exists; later it only logs "enableHightDPIMode() has to be called BEFORE
    /// QApplication" (LogType 4).
    static void enableHightDPIMode();

    /// Always 1.0: Qt does the scaling, so callers do not have to. \a widget is ignored and may be
    /// null.
    static double devicePixelRatio(const QWidget* widget);

    /// The screen whose geometry contains \a point (global coordinates; the edge is inside), or
    /// null. It is the first one found when going through the screens in Qt's order, and for each
    /// screen through its virtual siblings. Qt keeps ownership of the screen.
    static QScreen* screenAt(const QPoint& point);

    /// Whether a dialog may be opened from an asynchronous event: false while any window of the
    /// application is modal, shown or not; true without windows.
    static bool isDailogAsyncOpeningSafe();

    /// A copy of \a source that outlives it: each of its formats with its data. The caller owns the
    /// copy.
    ///
    /// A format that begins with "application/x-qt" carries the name of a native format between
    /// double quotes, as in application/x-qt-windows-mime;value="Rich Text"; its data is stored
    /// under the text between the first two quotes (up to the end if there is only one), or under
    /// the whole format if there is none.
    ///
    /// Only bytes are copied: Qt has none for a picture that was set as a QImage (setImageData()),
    /// so the copy has its format but not the picture.
    ///
    /// \a source must not be null; this is not checked.
    static QMimeData* mimeDataCopy(const QMimeData* source);
};

#endif // ORVAUTILS_APPLICATIONUTILS_H
