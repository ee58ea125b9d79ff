// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// LogKeeper: the host's message handler while the library works. The library tells every
// failure through the log; what it says is kept here so that it can be reported as the reason,
// and does not run through the progress bar.

#ifndef LOGKEEPER_H
#define LOGKEEPER_H

#include <QStringList>

/// Takes the place of Qt's message handler for as long as it lives. All that live at a time share
/// what they keep; the one that was made last goes first.
class LogKeeper
{
public:
    LogKeeper();
    ~LogKeeper();

    /// The warnings and errors since the last call, each on one line.
    QStringList take();

private:
    Q_DISABLE_COPY(LogKeeper)

    QtMessageHandler mPrevious;
};

#endif // LOGKEEPER_H
