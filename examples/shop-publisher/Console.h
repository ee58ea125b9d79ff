// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Console: what a person, or the next program of a pipe, sees of the work.

#ifndef CONSOLE_H
#define CONSOLE_H

#include <ErrorableCode.h>

#include <QCoreApplication>
#include <QString>
#include <QVector>

/// Progress and results go to the standard output, failures and wrong usage to the standard error.
/// Names are shown with their control characters written out, so that a file name cannot steer the
/// terminal or forge a line.
class Console
{
    Q_DECLARE_TR_FUNCTIONS(Console)

public:
    explicit Console(bool quiet);

    /// How far the work has come: \a whole is "3/12", \a step what is being done, or what has just
    /// been done when the first number has grown. On a terminal the bar shows it; elsewhere each
    /// step has its line when it is done.
    void progress(const QString& whole, const QString& step);

    /// The progress has ended; the bar goes.
    void end() const;

    /// One line of result.
    void say(const QString& text) const;

    /// All failures with their reasons. Where \a verbose is set each with its code, and the places
    /// in the code where it happened and through which it came up the tree of errors.
    void report(const QVector<ErrorableCode>& failures, bool verbose);

    /// \a text with what is not to be printed written out: a line feed as "\u000a".
    static QString printable(const QString& text);

    /// As it is, even when quiet.
    static void print(const QString& text);
    static void printError(const QString& text);

private:
    QString counter() const;
    void drawBar(const QString& step);

    bool mQuiet;
    bool mTerminal;
    int mTotal = 0;
    int mDone = 0;
};

#endif // CONSOLE_H
