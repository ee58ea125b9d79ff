// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Sample: something that the library does, beside the code that does it.
//
// The code is not written twice: it is cut out of the source of the page, which
// the program carries as a resource, where it stands between two lines that
// read "//! [name]".

#ifndef SAMPLE_H
#define SAMPLE_H

#include <QLabel>
#include <QString>

/// Shows code as a person's editor would, dark, and lets it be copied with the
/// mouse.
class CodePanel : public QLabel
{
public:
    explicit CodePanel(const QString& code);

    QString code() const { return mCode; }

    // All of the code can always be seen, in panels that are no narrower than
    // those of others.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

private:
    QString mCode;
};

/// A title above \a sample and its code. Takes ownership of \a sample.
class Sample : public QWidget
{
public:
    Sample(const QString& title, QWidget* sample, const QString& code);

    /// The width that the sample needs beside its code.
    int neededWidth() const;

    /// The width of all samples of a page, so that their code stands in one
    /// column.
    void setSampleWidth(int width);

    /// The code called \a name in the page's source \a file, without the
    /// indentation that all of its lines share; empty when there is none.
    static QString codeFromSource(const QString& file, const QString& name);

private:
    QWidget* mLeft;
};

#endif // SAMPLE_H
