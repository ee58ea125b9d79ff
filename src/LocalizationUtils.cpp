// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "LocalizationUtils.h"

#include <QLocale>

QString LocalizationUtils::isoLangCodeToString(const QString& code)
{
    const QLocale locale(code);
    return code.contains(QLatin1Char('_')) ? locale.nativeLanguageName()
                                           : QLocale::languageToString(locale.language());
}

QString LocalizationUtils::currentSystemLangCode()
{
    const QString name = QLocale::system().name().toLower();
    return name.isEmpty() ? QStringLiteral("en") : name;
}
