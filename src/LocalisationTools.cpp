// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "LocalisationTools.h"

#include "ApplicationUtils.h"
#include "CoreApplicationUtils.h"
#include "asconst_p.h"
#include "logrecord_p.h"
#include "processstate_p.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QPointer>
#include <QTranslator>

using namespace OrvaUtilsPrivate;

namespace {

struct Translators
{
    /// Those that this class installed, in the order of installation. The application object owns
    /// them and may be destroyed first.
    QList<QPointer<QTranslator>> mAppTranslators;
    quint64 changes = 0; ///< how often all of them were removed
};

Translators& translators()
{
    return processState<Translators>();
}

/// Installs a translator of this class. It is in the list before the host is notified, because the
/// host's handler of QEvent::LanguageChange may change the language again.
bool addTranslator(QTranslator* translator)
{
    translators().mAppTranslators += translator;
    return QCoreApplication::installTranslator(translator);
}

/// A change of language, which begins by removing every translator of the previous language. It is
/// abandoned if the host, when notified, begins another one.
class Change
{
public:
    Change()
        : mNumber(++translators().changes)
    {
        QList<QPointer<QTranslator>> before;
        before.swap(translators().mAppTranslators);
        for (const QPointer<QTranslator>& translator : asConst(before))
            delete translator.data();
    }

    bool isOver() const { return mNumber != translators().changes; }

private:
    const quint64 mNumber;
};

QString qtKey()
{
    return QStringLiteral("qtbase_");
}

QString suffix()
{
    return QStringLiteral(".qm");
}

QString folderOf(const QString& key)
{
    return QDir::cleanPath(LocalisationTools::pathFile_QM(key));
}

QString filePath(const QString& key, const QString& code)
{
    return folderOf(key) + QLatin1Char('/') + key + code + suffix();
}

QTranslator* createTranslator()
{
    return new QTranslator(QCoreApplication::instance());
}

/// Loads the best file for the locale: for fr_CA the file of fr_CA, or else the file of fr.
bool loadFile(QTranslator* translator, const QString& key, const QLocale& locale)
{
    return translator->load(locale, key, QString(), folderOf(key), suffix());
}

/// A translator with the file for the locale; null if it cannot be loaded.
QTranslator* loadTranslator(const QString& key, const QLocale& locale)
{
    QTranslator* translator = createTranslator();
    if (!loadFile(translator, key, locale)) {
        delete translator;
        return nullptr;
    }
    return translator;
}

enum ChangeResult { Loaded, NothingLoaded, ChangedAgain };

/// Switches the application to the language of the locale, on top of English. A translator that the
/// application does not accept is kept, and its key is passed to \a refused.
template <typename Refused>
ChangeResult putInto(const QLocale& locale, Refused refused)
{
    const Change change;
    ChangeResult result = NothingLoaded;
    const QStringList keys = LocalisationTools::applicationTranslationKeys();
    for (const QString& key : keys) {
        if (!change.isOver())
            LocalisationTools::loadDefaultLanguage(key);
        if (change.isOver())
            return ChangedAgain;
        if (QTranslator* translator = loadTranslator(key, locale)) {
            result = Loaded;
            if (!addTranslator(translator))
                refused(key);
        }
    }
    return change.isOver() ? ChangedAgain : result;
}

/// The key in a file's name; empty if it has none.
QString keyOf(const QString& fileName)
{
    const QLatin1Char separator('_');
    const auto separatorBefore = [&](int position) {
        return position > 0 ? fileName.lastIndexOf(separator, position - 1) : -1;
    };

    int end = int(fileName.lastIndexOf(separator));
    if (end < 0)
        return QString();
    // A short remainder is a language with its region: "_pt_BR.qm".
    const int region = int(separatorBefore(end));
    if (region >= 0 && fileName.size() - region < 10)
        end = region;
    // So is a longer one, if QLocale knows it: "_fil_PH.qm".
    const int language = int(separatorBefore(end));
    if (language >= 0) {
        const QString code = fileName.mid(language + 1).section(QLatin1Char('.'), 0, 0);
        if (QLocale(code).name() == code)
            end = language;
    }
    return fileName.left(end + 1);
}

struct Message
{
    const char* context;
    const char* text;
};

/// Indexed by QtMessages. The contexts and texts are those of Qt's translation files, except for
/// the last two.
const Message messages[] = {
    {"MAC_APPLICATION_MENU", "Preferences..."},
    {"MAC_APPLICATION_MENU", "About %1"},
    {"QPlatformTheme", "Ok"},
    {"QPlatformTheme", "Cancel"},
    {"QPlatformTheme", "Close"},
    {"MAC_APPLICATION_MENU", "Quit %1"},
    {"QWizard", "Done"},
    {"QWizard", "&Next >"},
    {"QWizard", "< &Back"},
    {"QShortcut", "Delete"},
    {"QCocoaMenuItem", "Cut"},
    {"QCocoaMenuItem", "Copy"},
    {"QCocoaMenuItem", "Paste"},
    {"QCocoaMenuItem", "Select All"},
    {"QShortcut", "Search"},
    {"QPlatformTheme", "Save"},
    {"QPlatformTheme", "Apply"},
    {"QPlatformTheme", "Reset"},
    {"QFileDialog", "All Files (*)"},
    {"QStandardPaths", "Pictures"},
    {"QFileDialog", "List View"},
    {"QFileDialog", "Detail View"},
    {"QFileDialog", "&Rename"},
    {"QFileDialog", "Delete"},
    {"QFileDialog", "Create New Folder"},
    {"QFileDialog", "Are you sure you want to delete '%1'?"},
    {"LocalisationTools", QT_TRANSLATE_NOOP("LocalisationTools", "Duplicate")},
    {"LocalisationTools", QT_TRANSLATE_NOOP("LocalisationTools", "Unselect All")},
};
const int messageCount = sizeof messages / sizeof *messages;
static_assert(messageCount == LocalisationTools::UnselectAll + 1, "one row for each message");

} // namespace

// Available languages

QStringList LocalisationTools::findLanguagesFromTranslationMask(const QString& folder,
                                                                const QString& prefix)
{
    const QStringList files = QDir(folder).entryList(QStringList(prefix + QStringLiteral("*.qm")),
                                                     QDir::NoFilter, QDir::Unsorted);
    QStringList codes;
    for (const QString& file : files)
        codes += file.mid(prefix.size()).section(QLatin1Char('.'), 0, 0);
    return codes;
}

QList<QLocale> LocalisationTools::applicationLanguages()
{
    const QStringList codes =
        findLanguagesFromTranslationMask(ApplicationUtils::pathLanguages(), QStringLiteral("app_"));
    QList<QLocale> languages;
    for (const QString& code : codes)
        languages += QLocale(code);
    return languages;
}

QStringList LocalisationTools::applicationTranslationKeys()
{
    const QStringList files =
        QDir(ApplicationUtils::pathLanguages())
            .entryList(QStringList(QStringLiteral("*.qm")), QDir::NoFilter, QDir::Unsorted);
    QStringList keys(qtKey());
    for (const QString& file : files) {
        const QString key = keyOf(file);
        if (!key.isEmpty() && !keys.contains(key))
            keys += key;
    }
    return keys;
}

QString LocalisationTools::pathFile_QM(const QString& key)
{
    QString folder = ApplicationUtils::pathLanguages();
    if (key == QLatin1String("qt_"))
        return folder + QStringLiteral("qt/");
    if (key == qtKey())
        return folder + QStringLiteral("qtbase/");
    return folder;
}

// Translators

void LocalisationTools::installTranslator(QTranslator* translator)
{
    QCoreApplication::installTranslator(translator);
}

void LocalisationTools::clearAppTranslators()
{
    static_cast<void>(Change());
}

void LocalisationTools::loadDefaultLanguage(const QString& key)
{
    const QString english = QStringLiteral("en");
    QTranslator* translator = createTranslator();
    if (!loadFile(translator, key, QLocale(english))) {
        const QString path = filePath(key, english);
        if (!QFile::exists(path) && !path.endsWith(QLatin1String("qtbase_en.qm")))
            ORVAUTILS_LOG_INFO() << "ERROR reading : " << path;
    }
    addTranslator(translator);
}

// The language

bool LocalisationTools::changeApplicationLanguage(const QString& languageCode)
{
    if (languageCode.isEmpty()) {
        changeApplicationLanguageByLocale(QLocale::system());
        return true;
    }
    const QLocale locale(languageCode);
    const auto logRefused = [&](const QString& key) {
        ORVAUTILS_LOG_WARNING_IN("changeApplicationLanguage")
            << "installTranslator error " << filePath(key, languageCode);
    };
    switch (putInto(locale, logRefused)) {
    case Loaded:
        QLocale::setDefault(locale);
        return true;
    case NothingLoaded:
        changeApplicationLanguageByLocale(QLocale::system());
        return false;
    case ChangedAgain:
        break;
    }
    return false;
}

void LocalisationTools::changeApplicationLanguageByLocale(const QLocale& locale)
{
    putInto(locale, [](const QString&) {});
}

bool LocalisationTools::currentLanguageMatch(const QString& languageCode)
{
    const QString current = QLocale().name();
    return current == languageCode || current.startsWith(languageCode + QLatin1Char('_'));
}

// Texts

QString LocalisationTools::translateQt(const char* context, const char* text)
{
    return QCoreApplication::translate(context, text);
}

QString LocalisationTools::trQtMessages(QtMessages message)
{
    if (message < 0 || message >= messageCount)
        return QString();
    QString text = translateQt(messages[message].context, messages[message].text);
    if (message == MacAbout || message == MacQuit)
        text.replace(QLatin1String("%1"), CoreApplicationUtils::applicationGuiName());
    return text;
}
