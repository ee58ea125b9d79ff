// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// LocalisationTools: the application's languages, and the switch from one to another.

#ifndef ORVAUTILS_LOCALISATIONTOOLS_H
#define ORVAUTILS_LOCALISATIONTOOLS_H

#include "orvautils_export.h"

#include <QList>
#include <QLocale>
#include <QString>
#include <QStringList>

class QTranslator;

/// Finds the languages of the application, installs their translators and translates Qt's texts.
///
/// Translations are compiled Qt translation files in ApplicationUtils::pathLanguages(). A file name
/// consists of a key, a language code and ".qm": "app_fr.qm" and "app_pt_BR.qm" contain the
/// application's own texts (key "app_"), "qtbase/qtbase_fr.qm" those of Qt (key "qtbase_", in a
/// folder of its own).
///
/// \code
/// if (!LocalisationTools::changeApplicationLanguage(QStringLiteral("fr")))
///     ... // nothing is translated into French: the system's language is in place
/// \endcode
///
/// For every key the English file is installed underneath that of the chosen language, so that a
/// text which is not translated yet appears in English.
///
/// \par Notifications
/// The application receives a QEvent::LanguageChange, synchronously, for every translator that is
/// removed and for every one with texts that is installed: several for each change of language.
/// At that time the default locale is still the previous one; update what is formatted by QLocale()
/// after the change has returned. A handler of the event may itself change the language. The last
/// change wins, and the interrupted one leaves its result untouched.
///
/// Thread: the main thread; translators belong to the application object. Create that object first:
/// before that, no translator can be installed.
class ORVAUTILS_EXPORT LocalisationTools
{
public:
    /// Texts of Qt that hosts show outside of Qt's own widgets, and two of this library.
    enum QtMessages : int {
        MacPreferences = 0, ///< "Preferences..."
        MacAbout = 1, ///< "About %1" with the application's name
        ButtonOk = 2, ///< "Ok"
        ButtonCancel = 3, ///< "Cancel"
        ButtonClose = 4, ///< "Close"
        MacQuit = 5, ///< "Quit %1" with the application's name
        WizardDone = 6, ///< "Done"
        WizardNext = 7, ///< "&Next >"
        WizardBack = 8, ///< "< &Back"
        ShortcutDelete = 9, ///< "Delete"
        MenuCut = 10, ///< "Cut"
        MenuCopy = 11, ///< "Copy"
        MenuPaste = 12, ///< "Paste"
        MenuSelectAll = 13, ///< "Select All"
        ShortcutSearch = 14, ///< "Search"
        ButtonSave = 15, ///< "Save"
        ButtonApply = 16, ///< "Apply"
        ButtonReset = 17, ///< "Reset"
        FileDialogAllFiles = 18, ///< "All Files (*)"
        StandardPathsPictures = 19, ///< "Pictures"
        FileDialogListView = 20, ///< "List View"
        FileDialogDetailView = 21, ///< "Detail View"
        FileDialogRename = 22, ///< "&Rename"
        FileDialogDelete = 23, ///< "Delete"
        FileDialogNewFolder = 24, ///< "Create New Folder"
        FileDialogConfirmDelete = 25, ///< "Are you sure you want to delete '%1'?", %1 left to fill
        Duplicate = 26, ///< "Duplicate", a text of this class
        UnselectAll = 27 ///< "Unselect All", a text of this class
    };

    // Available languages

    /// The language codes of the files in \a folder whose names match \a prefix followed by "*.qm",
    /// in the order in which the folder lists them: the part between the prefix and the first
    /// following ".". With the prefix "app_", app_fr.qm and app_pt_BR.qm give "fr" and "pt_BR".
    ///
    /// Names are matched by QDir: letter case is ignored, and wildcards in \a prefix act as
    /// wildcards. Empty for a folder that does not exist.
    static QStringList findLanguagesFromTranslationMask(const QString& folder,
                                                        const QString& prefix);

    /// The languages of the application: one locale for each "app_" file, in the order of
    /// findLanguagesFromTranslationMask().
    static QList<QLocale> applicationLanguages();

    /// The keys of all files in the languages folder: "qtbase_" first, which is always included,
    /// followed by every other key once, in no particular order.
    ///
    /// A key extends from the beginning of a name to the "_" before the language. For a language
    /// with a region ("pt_BR", "fil_PH") that is the last "_" but one; such a language is
    /// recognised by its length (less than 10 characters from that "_" to the end of the name), or
    /// as a locale that has the same name in QLocale. Deliberate: "x_y_fr.qm" is short enough to
    /// have the key "x_" and not "x_y_". A name without "_" has no key.
    static QStringList applicationTranslationKeys();

    /// The folder that contains the files of \a key: "qt/" in the languages folder for the key
    /// "qt_", "qtbase/" in it for "qtbase_", otherwise the languages folder itself.
    static QString pathFile_QM(const QString& key);

    // Translators

    /// Installs \a translator in the application. The caller keeps ownership: clearAppTranslators()
    /// and changes of the language do not affect it.
    static void installTranslator(QTranslator* translator);

    /// Deletes every translator that this class installed, which removes it from the application.
    /// Translators that have already been destroyed, with the application object for example, are
    /// ignored.
    static void clearAppTranslators();

    /// Installs the English file of \a key, on top of what is already installed.
    ///
    /// Deliberate: a translator is installed and kept until clearAppTranslators() even when the
    /// file cannot be loaded. When it does not exist, "ERROR reading : " and its path are logged
    /// with LogType 1, except for "qtbase_en.qm", which Qt does not ship; a file that exists but is
    /// broken is not logged.
    static void loadDefaultLanguage(const QString& key);

    // The language

    /// Switches the application to the language \a languageCode ("fr", "pt_BR").
    ///
    /// The translators that this class installed are removed. Then, for each of
    /// applicationTranslationKeys(), the English file (by loadDefaultLanguage(), which logs one
    /// that is missing) and on top of it the file of the language are installed. When at least one
    /// file of the language was loaded, the language becomes the default locale and true is
    /// returned.
    ///
    /// Otherwise the application gets the system's language by changeApplicationLanguageByLocale(),
    /// the default locale stays what it was, and false is returned. An empty code requests the
    /// system's language, which is set in the same way, and true is returned. False is also
    /// returned when a handler of QEvent::LanguageChange changed the language meanwhile.
    ///
    /// A file of the language that cannot be loaded is silently skipped. A translator that was
    /// loaded and that the application refuses, which happens when there is no application object
    /// and when its file contains no texts, is logged with LogType 2 as "installTranslator error "
    /// and the path of its file, but counts as loaded.
    static bool changeApplicationLanguage(const QString& languageCode);

    /// Switches the application to the language of \a locale, as changeApplicationLanguage() does,
    /// but without a fallback and without touching the default locale. Translators that the
    /// application refuses are not logged.
    static void changeApplicationLanguageByLocale(const QLocale& locale);

    /// Whether the language of the default locale is \a languageCode: its name is the code, or
    /// begins with the code and "_". Both "fr" and "fr_FR" match the default locale fr_FR.
    static bool currentLanguageMatch(const QString& languageCode);

    // Texts

    /// The translation of \a text in \a context, both in UTF-8, by the installed translators;
    /// \a text itself if there is none.
    static QString translateQt(const char* context, const char* text);

    /// The translation of one of the texts listed by QtMessages. In MacAbout and MacQuit the name
    /// CoreApplicationUtils::applicationGuiName() replaces %1. Empty for any other number.
    ///
    /// All but the last two are translated by Qt's own files, as far as these contain the text: Qt
    /// 5.15 has "OK" instead of the "Ok" of ButtonOk, which therefore stays as it is.
    static QString trQtMessages(QtMessages message);

    LocalisationTools() = delete;
};

#endif // ORVAUTILS_LOCALISATIONTOOLS_H
