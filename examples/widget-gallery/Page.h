// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Page: one topic of the gallery, its samples one below the other.

#ifndef PAGE_H
#define PAGE_H

#include <QString>
#include <QVector>
#include <QWidget>

/// Something that a page shows.
struct Exhibit
{
    QString title;
    QWidget* widget;
    const char* code; ///< the name of its code in the source
};

class Page : public QWidget
{
    Q_OBJECT

public:
    /// Shows the exhibits next to their code, which is taken from \a source,
    /// the name of the file that they are written in. Takes ownership of their
    /// widgets.
    Page(const QString& title, const QString& introduction,
         const QString& source, const QVector<Exhibit>& exhibits);
};

#endif // PAGE_H
