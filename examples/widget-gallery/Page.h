// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Page: one topic of the gallery, its samples below each other.

#ifndef PAGE_H
#define PAGE_H

#include <QString>
#include <QVector>
#include <QWidget>

class QVBoxLayout;
class Sample;

class Page : public QWidget
{
    Q_OBJECT

public:
    /// \a source is the name of the file that the page is written in.
    Page(const QString& title, const QString& introduction,
         const QString& source);

    /// Adds \a sample beside the code that stands in the page's source under \a
    /// name. Takes ownership.
    void addSample(const QString& title, QWidget* sample, const char* name);

private:
    QString mSource;
    QVector<Sample*> mSamples;
    QVBoxLayout* mLayout;
};

#endif // PAGE_H
