// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// StopSignals: Ctrl-C and its like, as a signal of Qt.

#ifndef STOPSIGNALS_H
#define STOPSIGNALS_H

#include <QObject>

class QSocketNotifier;

/// Catches SIGINT (Ctrl-C), SIGTERM and SIGHUP (the terminal was closed) for as long as it lives.
/// One that the program was started to ignore, as by nohup, stays ignored. The first asks the
/// program to stop, the second ends it at once with the exit code 130. One object at a time.
class StopSignals : public QObject
{
    Q_OBJECT

public:
    /// The application object exists.
    StopSignals();
    ~StopSignals() override;

Q_SIGNALS:
    /// The user, or the system, asks the program to stop. Comes from the event loop, also for a
    /// signal that was caught before it ran.
    void stopRequested();

private:
    Q_DISABLE_COPY(StopSignals)

    void onCaught();

    QSocketNotifier* mNotifier = nullptr;
};

#endif // STOPSIGNALS_H
