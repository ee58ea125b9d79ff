// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "CoreAppUrlUtils.h"

#include "processstate_p.h"

#include "folderpath_p.h"

#include <QLocale>
#include <QUrl>

using namespace OrvaUtilsPrivate;

namespace {

/// A web page as the host registered it.
struct Address
{
    QString pattern;
    QStringList langs; // in which the page exists
};

struct RegisteredAddresses
{
    Address company;
    Address application;
    Address documentation;
    Address contact;
};

RegisteredAddresses& registered()
{
    return processState<RegisteredAddresses>();
}

/// The address in the user's language, or the automatic translation of the fallback page.
QString urlInUserLanguage(const Address& address)
{
    bool found = false;
    const QString url = CoreAppUrlUtils::mapUrlApplication(address.pattern, &found, address.langs);
    return found ? url : CoreAppUrlUtils::autoTranslatedUrl(url);
}

} // namespace

void CoreAppUrlUtils::initOrvanelWebSite(const QString& url, const QStringList& langs)
{
    registered().company = {url, langs};
}

void CoreAppUrlUtils::initApplicationWebSite(const QString& url, const QStringList& langs)
{
    registered().application = {url, langs};
}

void CoreAppUrlUtils::initDocumentation(const QString& url, const QStringList& langs)
{
    registered().documentation = {url, langs};
}

void CoreAppUrlUtils::initContactUs(const QString& url, const QStringList& langs)
{
    registered().contact = {url, langs};
}

QString CoreAppUrlUtils::urlOrvanelCompanynWebsite()
{
    return urlInUserLanguage(registered().company);
}

QString CoreAppUrlUtils::urlApplicationWebsite()
{
    return urlInUserLanguage(registered().application);
}

QString CoreAppUrlUtils::urlContactUs()
{
    return urlInUserLanguage(registered().contact);
}

QString CoreAppUrlUtils::urlDocumentation(const QString& page)
{
    bool found = false;
    const Address& address = registered().documentation;
    QString url = mapUrlApplication(address.pattern, &found, address.langs);
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
    // Both arguments in one call, so that a "%1" in one of them is not replaced.
    return QStringLiteral("https://" ORVAUTILS_TRANSLATION_HOST "/translate?")
        + QStringLiteral("hl=%1&sl=auto&tl=%1&u=%2").arg(language, page);
}
