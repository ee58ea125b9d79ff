// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "PageTexts.h"

#include <LocalisationTools.h>

#include <QLocale>

PageTexts::PageTexts(const QString& code)
{
    // The same files as those of the program itself.
    const QString key = QStringLiteral("app_");
    mTranslator.load(QLocale(code), key, QString(), LocalisationTools::pathFile_QM(key),
                     QStringLiteral(".qm"));
}

QString PageTexts::text(const char* text) const
{
    const QString translation = mTranslator.translate("PageTexts", text);
    return translation.isEmpty() ? QString::fromUtf8(text) : translation;
}
