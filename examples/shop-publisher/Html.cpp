// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Html.h"

#include <QUrl>

QString Html::escaped(const QString& text)
{
    QString clean = text;
    for (QChar& character : clean) {
        if (character.category() == QChar::Other_Control)
            character = QChar(QChar::ReplacementCharacter);
    }
    return clean.toHtmlEscaped();
}

QString Html::address(const QString& place)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(place, QByteArrayLiteral("/")));
}
