// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "CoreAppUrlUtils.h"

#include "processstate_p.h"

#include "folderpath_p.h"

#include <QLocale>
#include <QUrl>

using namespace OrvaUtilsPrivate;

namespace {

/// What the host registered: each address pattern beside the languages in which the page exists.
struct RegisteredAddresses
{
    QString mOrvanelUrl;
    QStringList mOrvanelLangs;
    QString mRootWebSite;
    QStringList mRootWebSiteLangs;
    QString mDocumentationUrl;
    QStringList mDocumentationUrlLangs;
    QString mContactUsUrl;
    QStringList mContactUsLangs;
};

RegisteredAddresses& registered()
{
    return processState<RegisteredAddresses>();
}

/// The address in the user's language, or the automatic translation of the fallback page.
QString urlInUserLanguage(const QString& pattern, const QStringList& langs)
{
    bool found = false;
    const QString url = CoreAppUrlUtils::mapUrlApplication(pattern, &found, langs);
    return found ? url : CoreAppUrlUtils::autoTranslatedUrl(url);
}

} // namespace

void CoreAppUrlUtils::initOrvanelWebSite(const QString& url, const QStringList& langs)
{
    registered().mOrvanelUrl = url;
    registered().mOrvanelLangs = langs;
}

void CoreAppUrlUtils::initApplicationWebSite(const QString& url, const QStringList& langs)
{
    registered().mRootWebSite = url;
    registered().mRootWebSiteLangs = langs;
}

void CoreAppUrlUtils::initDocumentation(const QString& url, const QStringList& langs)
{
    registered().mDocumentationUrl = url;
    registered().mDocumentationUrlLangs = langs;
}

void CoreAppUrlUtils::initContactUs(const QString& url, const QStringList& langs)
{
    registered().mContactUsUrl = url;
    registered().mContactUsLangs = langs;
}

QString CoreAppUrlUtils::urlOrvanelCompanynWebsite()
{
    return urlInUserLanguage(registered().mOrvanelUrl, registered().mOrvanelLangs);
}

QString CoreAppUrlUtils::urlApplicationWebsite()
{
    return urlInUserLanguage(registered().mRootWebSite, registered().mRootWebSiteLangs);
}

QString CoreAppUrlUtils::urlContactUs()
{
    return urlInUserLanguage(registered().mContactUsUrl, registered().mContactUsLangs);
}

QString CoreAppUrlUtils::urlDocumentation(const QString& page)
{
    bool found = false;
    QString url = mapUrlApplication(registered().mDocumentationUrl, &found,
                                    registered().mDocumentationUrlLangs);
    if (!page.isEmpty())
        url = withSlash(url) + page;
    return found ? url : autoTranslatedUrl(url);
}

QString CoreAppUrlUtils::mapUrlApplication(const QString& url, bool* found,
                                           const QStringList& langs)
{
    if (langs.isEmpty()) {
        if (found)
            *found = false;
        return url;
    }
    QString code = langs.first();
    if (found) {
        *found = false;
        const QLocale::Language userLanguage = QLocale().language();
        for (const QString& lang : langs) {
            if (QLocale(lang).language() == userLanguage) {
                *found = true;
                code = lang;
                break;
            }
        }
    }
    QString address = url;
    return address.replace(QLatin1String("{{lang}}"), code);
}

QString CoreAppUrlUtils::autoTranslatedUrl(const QString& url)
{
    const QLocale userLocale;
    if (userLocale.language() == QLocale::French)
        return url;
    return urlGoogleTranslated(url, userLocale.name());
}

QString CoreAppUrlUtils::urlGoogleTranslated(const QString& url, const QString& language)
{
    const QString page = QString::fromLatin1(QUrl::toPercentEncoding(url));
    // Both arguments in one call: a "%1" in one of them is never filled again.
    return QStringLiteral("https://" ORVAUTILS_TRANSLATION_HOST "/translate?")
        + QStringLiteral("hl=%1&sl=auto&tl=%1&u=%2").arg(language, page);
}
