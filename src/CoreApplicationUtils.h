// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// CoreApplicationUtils: the identity of the host application. Folders, translations and texts of
// the whole library take the application's name from here.

#ifndef ORVAUTILS_COREAPPLICATIONUTILS_H
#define ORVAUTILS_COREAPPLICATIONUTILS_H

#include "orvautils_export.h"

#include <QObject>
#include <QString>

/// The identity of the host application: name, version, revision, company name and code.
///
/// The host fills the store first thing in main() and hands it to Qt once its application object
/// exists:
///
/// \code
/// int main(int argc, char* argv[])
/// {
///     CoreApplicationUtils::setApplicationName(QStringLiteral("Shop Publisher"));
///     CoreApplicationUtils::setApplicationVersion(QStringLiteral("4.1.12"));
///     CoreApplicationUtils::setApplicationCompanyName(QStringLiteral("Acme"));
///     CoreApplicationUtils::setApplicationCode(CoreApplicationUtils::Lexaro);
///     QApplication application(argc, argv);
///     CoreApplicationUtils::initStartupVars();
///     ...
/// }
/// \endcode
///
/// Everything is static; an object of the class is never needed. The store can be used at any
/// moment of the process: from initialisers of other static objects, before and after the
/// application object exists, and while static objects are destroyed.
///
/// Thread: the store has no lock. It is written on the main thread before other threads exist, and
/// may be read from any thread afterwards.
class ORVAUTILS_EXPORT CoreApplicationUtils : public QObject
{
    Q_OBJECT

public:
    /// The members of the application family. The enumerators are in the scope of the class, as in
    /// CoreApplicationUtils::Lexaro. Any 32-bit value may be stored; one without an enumerator
    /// counts as Undefined.
    enum CodeApplication : qint32 {
        Undefined = 0, ///< not set; shown by the stored name, without a short name or a key
        Lorn = 1, ///< shown as "Palnor Grid"; short name "Lorn", key "lorn"
        Dunvale = 2, ///< shown by the stored name; short name "Dunvale", key "dunvend"
        Sorrel = 3, ///< shown as "Palnor Fx"; short name "Sorrel", key "sorrel"
        Tamsel = 4, ///< shown as "Tamsel"; short name "Tamsel 2", key "tamsel2"
        Lexaro = 5, ///< shown and short as "Lexaro"; key "lexaro"
        Portwin = 6 ///< shown and short as "Portwin"; key "portwin"
    };
    Q_ENUM(CodeApplication)

    /// Constructs an object, owned by \a parent. It is never needed: all functions are static.
    explicit CoreApplicationUtils(QObject* parent = nullptr);
    /// Does not affect the stored identity.
    ~CoreApplicationUtils() override;

    /// Hands the stored identity to Qt: organisation name (the company name), organisation domain
    /// (the company name in lower case followed by ".com", spaces kept), application name and
    /// version, and iconApplication() as the icon of all windows. Revision and code are not handed
    /// over.
    ///
    /// Returns false without doing anything when the application code was not set, which is
    /// reported by a debug message in Qt's default category. Returns true in every other case,
    /// deliberately also when there is no application object yet and nothing can be handed over. An
    /// application object without windows (a plain QCoreApplication) gets everything but the icon.
    ///
    /// Thread: the GUI thread.
    static bool initStartupVars();

    /// The name that the user sees: a fixed one for most codes, the stored application name for
    /// Undefined and, deliberately, for Dunvale, even if it is empty. Nothing is logged.
    static QString applicationGuiName();

    /// The short name of the stored code, for example "Tamsel 2".
    ///
    /// For Undefined and unknown codes "undefined key"; then "CoreApplicationUtils " and the code
    /// are logged (LogType 1).
    static QString applicationShortName();

    /// The key of \a code for files and addresses, lower-case, for example "tamsel2";
    /// "undefined key" for Undefined and unknown codes. Nothing is logged.
    static QString applicationKeyToString(CodeApplication code);

    /// applicationKeyToString() of the stored code.
    static QString applicationKey();

    /// The version \a major, \a minor, \a patch as one number that can be compared:
    /// `(major << 16) | (minor << 8) | patch`. 1, 2, 3 gives 66051 (0x10203).
    ///
    /// The parts are combined with OR and neither masked nor checked. A minor or patch above 255
    /// overflows into the next field, so that 1, 300, 0 gives the same as 0, 300, 0: deliberate,
    /// because such numbers are stored.
    static int versionToNumber(int major, int minor, int patch);

    /// The same for a text of the form "4.1.12", which gives 262412. A part that is not a decimal
    /// number counts as 0 ("4.x.2" gives 262146); a text that does not have exactly three parts
    /// gives 0.
    static int versionToNumber(const QString& version);

    /// versionToNumber() of the stored version.
    static int applicationVersionNumber();

    /// The resource path of the application's icon, ":/app-icons/icon.png". The host provides the
    /// icon in its resources; the library has none.
    static QString iconApplication();

    /// Keeps a modal dialog above the window that it blocks, even where focus would bring that
    /// window to the front.
    ///
    /// If a modal widget is active at the moment of the call, an event filter is installed on the
    /// application object that raises the then active modal widget at every QEvent::FocusIn; it
    /// consumes no event. Each such call installs one more filter, deliberately, and none is
    /// removed before the application object is destroyed. Without an active modal widget, or
    /// without a QApplication, nothing happens.
    ///
    /// Thread: the GUI thread.
    static void fixOSXDialogFocusBug();

    // The store: setters overwrite and check nothing, getters return copies.

    /// Stores the name of the company that makes the application.
    static void setApplicationCompanyName(const QString& companyName);
    /// The stored company name; empty if none was set.
    static QString applicationCompanyName();

    /// Stores the application's \a name, which ApplicationUtils uses in its folders.
    static void setApplicationName(const QString& name);
    /// The stored application name; empty if none was set.
    static QString applicationName();

    /// Stores the \a version, a text of the form major.minor.patch, for example "4.1.12".
    static void setApplicationVersion(const QString& version);
    /// The stored version; empty if none was set.
    static QString applicationVersion();

    /// Stores the \a revision, a text of any form, which the library does not use.
    static void setApplicationRevision(const QString& revision);
    /// The stored revision; empty if none was set.
    static QString applicationRevision();

    /// Stores the code of the application, that is, which member of the family it is.
    static void setApplicationCode(const CodeApplication& code);
    /// The stored code; Undefined if none was set.
    static CodeApplication applicationCode();
};

#endif // ORVAUTILS_COREAPPLICATIONUTILS_H
