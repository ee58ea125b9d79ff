// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Html.h"

#include <QUrl>

QString Html::address(const QString& place)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(place, QByteArrayLiteral("/")));
}
