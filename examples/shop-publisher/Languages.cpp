// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Languages.h"

#include <LocalisationTools.h>
#include <StringUtils.h>

#include <QLocale>

namespace {

/// For "fr_CA" the French texts are used.
QString languageOf(QString code)
{
    code.replace(QLatin1Char('-'), QLatin1Char('_'));
    return code.section(QLatin1Char('_'), 0, 0).toLower();
}

} // namespace

QStringList Languages::available()
{
    QStringList codes(QStringLiteral("en"));
    const QList<QLocale> locales = LocalisationTools::applicationLanguages();
    for (const QLocale& locale : locales)
        codes.append(languageOf(locale.name()));
    codes.removeDuplicates();
    codes.sort();
    return codes;
}

bool Languages::choose(const QString& code)
{
    const QString language = languageOf(code);
    if (!language.isEmpty() && !available().contains(language))
        return false;
    // Without any file there is nothing to switch to; looking for one would only be logged.
    if (!LocalisationTools::applicationLanguages().isEmpty())
        LocalisationTools::changeApplicationLanguage(language);
    return true;
}

QString Languages::current()
{
    //: The code of the language of this translation.
    return tr("en");
}

QString Languages::nativeName(const QString& code)
{
    const QLocale locale(code);
    // Qt returns the name of one country's English.
    return locale.language() == QLocale::English
        ? QStringLiteral("English")
        : StringUtils::capitalize(locale.nativeLanguageName());
}
