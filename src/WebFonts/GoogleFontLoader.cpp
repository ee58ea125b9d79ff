// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "GoogleFontLoader.h"

#include "ApplicationUtils.h"
#include "GoogleFontFile.h"
#include "processstate_p.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>

using namespace OrvaUtilsPrivate;

class OrvaUtilsPrivate::GoogleFontLoaderPrivate
{
public:
    bool loaded = false;
};

/// Registers the compiled-in list, which does not happen automatically in a static library. Outside
/// the unnamed namespace, because Q_INIT_RESOURCE declares a function in the global one.
static void registerBuiltInList()
{
    Q_INIT_RESOURCE(webfonts);
}

namespace {

QString definitionFileName()
{
    return QStringLiteral("google.json");
}

/// A custom list, and the state of its file when it was parsed.
struct CustomList
{
    QString path;
    qint64 size = -1;
    QDateTime modified;
    GoogleFontFile file;
};

/// The data that all loaders share.
struct Catalogues
{
    GoogleFontFile chosen; ///< the one that queries use
    GoogleFontFile builtIn;
    CustomList custom;
};

Catalogues& catalogues()
{
    return processState<Catalogues>();
}

const GoogleFontFile& builtInList()
{
    GoogleFontFile& list = catalogues().builtIn;
    if (!list.isValid()) {
        registerBuiltInList();
        list.loadJsonGFontFromFilePath(GoogleFontLoader::builinGoogleJsonFilePath());
    }
    return list;
}

/// Whether a later change of \a file is certain to change its modification time: file systems store
/// times in steps of up to two seconds.
bool isSettled(const QFileInfo& file)
{
    return file.lastModified().msecsTo(QDateTime::currentDateTime()) > 2000;
}

const GoogleFontFile& customList()
{
    CustomList& list = catalogues().custom;
    const QFileInfo file(GoogleFontLoader::customFilepath_JsonGoogleFont());
    const bool unchanged = file.exists() && file.filePath() == list.path && file.size() == list.size
        && file.lastModified() == list.modified;
    if (!unchanged) {
        const bool settled = isSettled(file);
        list.file.loadJsonGFontFromFilePath(file.filePath());
        // A file that cannot be opened was not parsed, and is tried again.
        const bool opens = QFile(file.filePath()).open(QIODevice::ReadOnly);
        list.path = opens && settled ? file.filePath() : QString();
        list.size = file.size();
        list.modified = file.lastModified();
    }
    return list.file;
}

} // namespace

const QString GoogleFontLoader::GOOGLE_DEFINITION_FILENAME = definitionFileName();

GoogleFontLoader::GoogleFontLoader(QObject* parent)
    : QObject(parent)
    , d(new GoogleFontLoaderPrivate)
{ }

GoogleFontLoader::~GoogleFontLoader() = default;

bool GoogleFontLoader::load()
{
    if (d->loaded)
        return true;
    const GoogleFontFile& builtIn = builtInList();
    const GoogleFontFile& custom = customList();
    const bool newer = custom.isValid() && custom.lastModification() > builtIn.lastModification();
    const GoogleFontFile& chosen = newer ? custom : builtIn;
    if (chosen.isValid()) {
        catalogues().chosen = chosen;
        d->loaded = true;
    }
    return d->loaded;
}

bool GoogleFontLoader::isLoaded() const
{
    return d->loaded;
}

QString GoogleFontLoader::builinGoogleJsonFilePath()
{
    return QStringLiteral(":/orvautils/") + definitionFileName();
}

QString GoogleFontLoader::customFilepath_JsonGoogleFont()
{
    return ApplicationUtils::pathApplicationSettings() + definitionFileName();
}

QStringList GoogleFontLoader::fontNames()
{
    QStringList names;
    if (!load())
        return names;
    const QList<GoogleFontItem> items = catalogues().chosen.items();
    names.reserve(items.size());
    for (const GoogleFontItem& item : items)
        names += item.family();
    return names;
}

bool GoogleFontLoader::findItemByName(const QString& name, GoogleFontItem& item)
{
    if (!load())
        return false;
    const int position = catalogues().chosen.indexOf(name);
    if (position < 0)
        return false;
    item = catalogues().chosen.items().at(position);
    return true;
}

QString GoogleFontLoader::validName(const QString& name)
{
    GoogleFontItem item;
    return findItemByName(name.trimmed(), item) ? item.family() : QString();
}

QString GoogleFontLoader::stringInformations()
{
    if (!load())
        return QCoreApplication::translate("GoogleFontLoader", "No google font available !");
    const GoogleFontFile& chosen = catalogues().chosen;
    const QString available =
        QCoreApplication::translate("GoogleFontLoader", "%1 google font available")
            .arg(chosen.count());
    const QString lastUpdate =
        QCoreApplication::translate("GoogleFontLoader", "(Last update : %1)")
            .arg(chosen.lastModification().toString(QStringLiteral("yyyy-MM-dd")));
    return available + QLatin1Char('\n') + lastUpdate;
}
