// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// StopSignals: Ctrl-C and its like, as a signal of Qt.

#ifndef STOPSIGNALS_H
#define STOPSIGNALS_H

#include <QObject>

/// Catches SIGINT (Ctrl-C), SIGTERM and SIGHUP (the terminal was closed) from now on. One that the
/// program was started to ignore, as by nohup, stays ignored. The first asks the program to stop,
/// the second ends it at once with the exit code 130. One object in a program.
class StopSignals : public QObject
{
    Q_OBJECT

public:
    /// The application object exists.
    StopSignals();

Q_SIGNALS:
    /// The user, or the system, asks the program to stop. Comes from the event loop, also for a
    /// signal that was caught before it ran.
    void stopRequested();
};

#endif // STOPSIGNALS_H
