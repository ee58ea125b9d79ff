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
        {QStringLiteral("colours"), tr("Notification colours"),
         makeColoursPage},
        {QStringLiteral("badges"), tr("Badges"), makeBadgesPage},
        {QStringLiteral("messages"), tr("Informative messages"),
         makeMessagesPage},
        {QStringLiteral("pixmaps"), tr("Tiled and smooth pixmaps"),
         makePixmapsPage},
        {QStringLiteral("undefined"), tr("Undefined marks"), makeUndefinedPage},
        {QStringLiteral("paths"), tr("Rounded paths"), makePathsPage},
        {QStringLiteral("pictures"), tr("Colourised and grey pictures"),
         makePicturesPage},
        {QStringLiteral("transparency"), tr("Transparency"),
         makeTransparencyPage},
        {QStringLiteral("folders"), tr("Elided folders"), makeFoldersPage},
        {QStringLiteral("fades"), tr("Fade animations"), makeFadePage},
        {QStringLiteral("key-sequence"), tr("Key sequences"),
         makeKeySequencePage},
        {QStringLiteral("decimal-key"), tr("Decimal key"), makeDecimalKeyPage},
        {QStringLiteral("fonts"), tr("Web fonts"), makeFontsPage},
        {QStringLiteral("currencies"), tr("Currencies and rates"),
         makeCommercePage},
        {QStringLiteral("machine"), tr("This machine"), makeMachinePage},
    };
}
