// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Sample: something that the library does, next to the code that does it.
//
// The code is not written twice: it is extracted from the source of the page,
// which is a resource of the program, where it is between two lines that read
// "//! [name]".

#ifndef SAMPLE_H
#define SAMPLE_H

#include <QLabel>
#include <QString>

/// Shows code like a dark editor, and lets it be copied with the mouse.
class CodePanel : public QLabel
{
public:
    explicit CodePanel(const QString& code);

    QString code() const { return mCode; }

    // All of the code is always visible, in panels that are at least as wide as
    // those of other samples.
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

    /// The width that the sample needs next to its code.
    int neededWidth() const;

    /// Sets the width of all samples of a page, so that their code is aligned
    /// in one column.
    void setSampleWidth(int width);

    /// The code called \a name in the page's source \a file, without the
    /// indentation that all of its lines share; empty if there is none.
    static QString codeFromSource(const QString& file, const QString& name);

private:
    QWidget* mLeft;
};

#endif // SAMPLE_H
