// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Pages: all topics of the gallery in their order.

#ifndef PAGES_H
#define PAGES_H

#include <QString>
#include <QVector>

class Page;

/// A page and how it is made.
struct Topic
{
    QString id; ///< the name of its picture, without a suffix
    QString title;
    Page* (*makePage)(const QString& title); ///< the caller owns the page
};

QVector<Topic> allTopics();

Page* makeColoursPage(const QString& title);
Page* makePicturesPage(const QString& title);
Page* makeShapesPage(const QString& title);
Page* makeWindowsPage(const QString& title);
Page* makeKeysPage(const QString& title);
Page* makeFontsPage(const QString& title);
Page* makeCommercePage(const QString& title);

#endif // PAGES_H
