// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Pages.h"

#include "Page.h"

#include <QCoreApplication>

Page* Topic::makePage() const
{
    return new Page(title, introduction, source, makeExhibits());
}

QVector<Topic> allTopics()
{
    const auto tr = [](const char* text) {
        return QCoreApplication::translate("Pages", text);
    };
    return {
        {QStringLiteral("colours"), tr("Colours and badges"),
         tr("Messages of one kind have one colour in all programs of the "
            "family."),
         QStringLiteral("ColoursPage.cpp"), coloursExhibits},
        {QStringLiteral("pictures"), tr("Pictures"),
         tr("Symbols in any colour, greys, opacity, and thumbnails that keep "
            "their lines."),
         QStringLiteral("PicturesPage.cpp"), picturesExhibits},
        {QStringLiteral("shapes"), tr("Shapes and messages"),
         tr("Rounded corners, the message of an empty list, and values that "
            "are not known."),
         QStringLiteral("ShapesPage.cpp"), shapesExhibits},
        {QStringLiteral("windows"), tr("Windows and folders"),
         tr("Notices that come and go softly, and paths that are too long for "
            "their place."),
         QStringLiteral("WindowsPage.cpp"), windowsExhibits},
        {QStringLiteral("keys"), tr("Keys"),
         tr("Event filters written where they are needed, and a word that a "
            "window knows."),
         QStringLiteral("KeysPage.cpp"), keysExhibits},
        {QStringLiteral("fonts"), tr("Web fonts"),
         tr("The catalogue that the library carries, and the weights of each "
            "family."),
         QStringLiteral("FontsPage.cpp"), fontsExhibits},
        {QStringLiteral("currencies"), tr("Currencies and rates"),
         tr("Prices as a shop writes them, in every currency that Qt knows."),
         QStringLiteral("CommercePage.cpp"), commerceExhibits},
        {QStringLiteral("work"), tr("Work and reasons"),
         tr("Work that takes its time, is seen to go on, can be stopped, and "
            "tells why it failed."),
         QStringLiteral("FoldersPage.cpp"), foldersExhibits},
    };
}
