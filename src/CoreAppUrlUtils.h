// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// CoreAppUrlUtils: the web addresses of the maker and of the application, in the user's language.

#ifndef ORVAUTILS_COREAPPURLUTILS_H
#define ORVAUTILS_COREAPPURLUTILS_H

#include "orvautils_export.h"

#include <QString>
#include <QStringList>

/// Addresses of the maker's web site, the application's web site, its documentation and its contact
/// page.
///
/// The host registers each address once at start, as a pattern with "{{lang}}" where the language
/// goes, together with the languages in which the page exists:
///
/// \code
/// CoreAppUrlUtils::initContactUs(QStringLiteral("https://example.org/{{lang}}/contact"),
///                                {QStringLiteral("fr"), QStringLiteral("en")});
/// \endcode
///
/// An English user is then sent to "https://example.org/en/contact". A German user gets the page in
/// the first language of the list, shown through an automatic web translation service. The pages
/// are written in French, so a French user is never sent through the service.
///
/// The user's language is that of the application's default locale, `QLocale()`, at the time of the
/// call. Only the language counts, never the country: fr_CA is served by the codes "fr" and
/// "fr_FR".
///
/// Thread: the registered addresses are unprotected. Register them at start; read them from one
/// thread, or from several once registration is complete. The functions that take the address as an
/// argument may be called from any thread. Nothing here can fail, and nothing is logged.
class ORVAUTILS_EXPORT CoreAppUrlUtils
{
public:
    /// Registers \a url as the maker's web site, in place of what was registered before. \a langs
    /// are the codes ("fr", "pt_BR") of the languages in which the page exists; the first one
    /// serves every user whose language is not in the list.
    static void initOrvanelWebSite(const QString& url, const QStringList& langs);
    /// Registers \a url, in \a langs, as the application's web site, as initOrvanelWebSite() does.
    static void initApplicationWebSite(const QString& url, const QStringList& langs);
    /// Registers \a url, in \a langs, as the documentation, as initOrvanelWebSite() does.
    static void initDocumentation(const QString& url, const QStringList& langs);
    /// Registers \a url, in \a langs, as the contact page, as initOrvanelWebSite() does.
    static void initContactUs(const QString& url, const QStringList& langs);

    /// The maker's web site in the user's language; if it does not exist in that language, the page
    /// in its first language, passed through autoTranslatedUrl(). Before registration the address
    /// is empty, and is still passed through autoTranslatedUrl().
    static QString urlOrvanelCompanynWebsite();
    /// The application's web site, see urlOrvanelCompanynWebsite().
    static QString urlApplicationWebsite();
    /// The contact page, see urlOrvanelCompanynWebsite().
    static QString urlContactUs();

    /// The documentation in the user's language, opened at \a page.
    ///
    /// A \a page that is not empty is appended to the address, with a "/" between them unless the
    /// address ends with one; an empty \a page adds nothing. If the documentation does not exist in
    /// the user's language, the whole address, page included, is passed through
    /// autoTranslatedUrl().
    static QString urlDocumentation(const QString& page);

    /// \a url with every "{{lang}}" replaced by a code of \a langs.
    ///
    /// The code is the first whose language is the user's, exactly as it is written in the list,
    /// and `*found` is set to true. If there is none, it is the first code of the list (with an
    /// empty list \a url is returned as it is), and `*found` is set to false.
    ///
    /// \a found may be null, and a call without it never matches: it always uses the first code.
    /// This is deliberate: a caller that does not ask whether the page is in the user's language
    /// gets the page in the language in which it was written.
    static QString mapUrlApplication(const QString& url, bool* found, const QStringList& langs);

    /// \a url as it is when the user's language is French, the language in which the pages are
    /// written; else urlGoogleTranslated() for the name of the default locale, for example "de_DE".
    static QString autoTranslatedUrl(const QString& url);

    /// The address at which the web translation service shows the page \a url in \a language:
    /// "https://HOST/translate?hl=LANGUAGE&sl=auto&tl=LANGUAGE&u=URL". URL is percent-encoded
    /// except for letters, digits and "-._~"; LANGUAGE is put in as it is. HOST is the CMake option
    /// ORVAUTILS_TRANSLATION_HOST, by default translate.google.com.
    static QString urlGoogleTranslated(const QString& url, const QString& language);

    CoreAppUrlUtils() = delete;
};

#endif // ORVAUTILS_COREAPPURLUTILS_H
