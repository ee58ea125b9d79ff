// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// StopSignals: Ctrl-C and similar signals of the system, as a Qt signal.

#ifndef STOPSIGNALS_H
#define STOPSIGNALS_H

#include <QObject>

/// Catches SIGINT (Ctrl-C), SIGTERM and SIGHUP (the terminal was closed) from now on. One that is
/// ignored at start, as with nohup, stays ignored. The first asks the program to stop, the second
/// ends it at once with exit code 130. Only one object per program.
class StopSignals : public QObject
{
    Q_OBJECT

public:
    /// The application object must exist.
    StopSignals();

Q_SIGNALS:
    /// The user, or the system, asks the program to stop. Emitted from the event loop, also for a
    /// signal that was caught before the loop ran.
    void stopRequested();
};

#endif // STOPSIGNALS_H
