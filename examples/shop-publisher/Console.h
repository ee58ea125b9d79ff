// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Console: what a person, or the next program of a pipe, sees of the work.

#ifndef CONSOLE_H
#define CONSOLE_H

#include "Failure.h"

#include <QString>

/// Progress and results go to the standard output, failures and wrong usage to the standard error.
/// Names are shown with their control characters written out, so that a file name cannot steer the
/// terminal or forge a line.
class Console
{
public:
    explicit Console(bool quiet);

    /// There will be \a total calls of started().
    void begin(int total);

    /// Work on \a name has begun: on a terminal the bar shows it.
    void started(const QString& name);

    /// It is done: one line where the output is not a terminal. \a reason is empty on success.
    void finished(const QString& name, const QString& reason);

    /// The progress has ended; the bar goes.
    void end();

    /// One line of result.
    void say(const QString& text);

    /// All failures with their reasons.
    void report(const Failures& failures);

    /// \a text with what is not to be printed written out: a line feed as "\u000a".
    static QString printable(const QString& text);

    /// As it is, even when quiet.
    static void print(const QString& text);
    static void printError(const QString& text);

private:
    void drawBar(const QString& name);

    bool mQuiet;
    bool mTerminal;
    int mTotal = 0;
    int mDone = 0;
};

#endif // CONSOLE_H
