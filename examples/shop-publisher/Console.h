// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Console: the output of the program, for people or for other programs.

#ifndef CONSOLE_H
#define CONSOLE_H

#include <ErrorableCode.h>

#include <QCoreApplication>
#include <QJsonObject>
#include <QString>
#include <QVector>

/// Progress and results go to standard output, failures and usage errors to standard error. Control
/// characters in names are escaped, so that a file name can neither control the terminal nor forge
/// a line.
///
/// Other programs get everything on standard output, each line a JSON object with a member "event"
/// and, if there is one, the "text" for people.
class Console
{
    Q_DECLARE_TR_FUNCTIONS(Console)

public:
    enum Style {
        ForPeople,
        Quiet, ///< failures only
        ForPrograms
    };

    /// With \a verbose failures are shown with their code, and with the places in the source where
    /// they occurred and through which they propagated up the error tree.
    Console(Style style, bool verbose);

    bool isVerbose() const { return mVerbose; }

    /// \a done of \a total are done; \a step is what is being done, or what has just been done when
    /// the first number has grown. On a terminal the bar shows it; otherwise each step gets a line
    /// when it is done.
    void progress(int done, int total, const QString& step);

    /// The progress has ended; removes the bar.
    void end() const;

    /// One line of result. \a event and \a facts say to programs what \a text says to people.
    void say(const char* event, const QJsonObject& facts, const QString& text) const;

    /// All failures with their reasons.
    void report(const QVector<ErrorableCode>& failures) const;

    /// A failure of the program itself: it cannot start, or cannot continue as it should. \a text
    /// may have several lines; \a hint, for people, follows it.
    void complain(const char* event, const QString& text, const QString& hint = QString()) const;

    /// Prints \a text unchanged, even when quiet.
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
