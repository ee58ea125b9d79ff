// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Pages: all topics of the gallery in order.

#ifndef PAGES_H
#define PAGES_H

#include <QString>
#include <QVector>

struct Exhibit;
class Page;

struct Topic
{
    QString id; ///< the name of its picture, without a suffix
    QString title;
    QString introduction;
    QString source; ///< the name of the file that its exhibits are written in
    QVector<Exhibit> (*makeExhibits)();

    /// The page of this topic, which belongs to the caller.
    Page* makePage() const;
};

QVector<Topic> allTopics();

// The exhibits of each page, whose widgets belong to the caller.
QVector<Exhibit> coloursExhibits();
QVector<Exhibit> picturesExhibits();
QVector<Exhibit> shapesExhibits();
QVector<Exhibit> windowsExhibits();
QVector<Exhibit> keysExhibits();
QVector<Exhibit> fontsExhibits();
QVector<Exhibit> commerceExhibits();
QVector<Exhibit> foldersExhibits();

#endif // PAGES_H
