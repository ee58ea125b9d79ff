// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Pages.h"

#include <QCoreApplication>

QVector<Topic> allTopics()
{
    const auto tr = [](const char* text) {
        return QCoreApplication::translate("Pages", text);
    };
    return {
        {QStringLiteral("colours"), tr("Colours and badges"), makeColoursPage},
        {QStringLiteral("pictures"), tr("Pictures"), makePicturesPage},
        {QStringLiteral("shapes"), tr("Shapes and messages"), makeShapesPage},
        {QStringLiteral("windows"), tr("Windows and folders"), makeWindowsPage},
        {QStringLiteral("keys"), tr("Keys"), makeKeysPage},
        {QStringLiteral("fonts"), tr("Web fonts"), makeFontsPage},
        {QStringLiteral("currencies"), tr("Currencies and rates"),
         makeCommercePage},
    };
}
