// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Console: what a person, or another program, sees of the work.

#ifndef CONSOLE_H
#define CONSOLE_H

#include <ErrorableCode.h>

#include <QCoreApplication>
#include <QJsonObject>
#include <QString>
#include <QVector>

/// Progress and results go to the standard output, failures and wrong usage to the standard error.
/// Names are shown with their control characters written out, so that a file name cannot steer the
/// terminal or forge a line.
///
/// Other programs get everything on the standard output, each line an object of JSON with a member
/// "event" and, where there is one, the "text" for people.
class Console
{
    Q_DECLARE_TR_FUNCTIONS(Console)

public:
    enum Style {
        ForPeople,
        Quiet, ///< failures alone
        ForPrograms
    };

    /// With \a verbose failures are told with their code, and the places in the code where they
    /// happened and through which they came up the tree of errors.
    Console(Style style, bool verbose);

    bool isVerbose() const { return mVerbose; }

    /// \a done of \a total are done; \a step is what is being done, or what has just been done when
    /// the first number has grown. On a terminal the bar shows it; elsewhere each step has its line
    /// when it is done.
    void progress(int done, int total, const QString& step);

    /// The progress has ended; the bar goes.
    void end() const;

    /// One line of result. \a event and \a facts tell programs what \a text tells people.
    void say(const char* event, const QJsonObject& facts, const QString& text) const;

    /// All failures with their reasons.
    void report(const QVector<ErrorableCode>& failures) const;

    /// A failure that belongs to no work: the program cannot begin, or not go on as it should.
    /// \a text may have several lines; \a hint, for people, comes behind it.
    void complain(const char* event, const QString& text, const QString& hint = QString()) const;

    /// As it is, even when quiet.
    static void print(const QString& text);
    static void printError(const QString& text);

private:
    QString counter() const;
    void drawBar(const QString& step) const;

    Style mStyle;
    bool mVerbose;
    bool mTerminal;
    int mTotal = 0;
    int mDone = 0;
};

#endif // CONSOLE_H
