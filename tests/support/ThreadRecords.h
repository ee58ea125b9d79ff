// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The log records of threads that are still running, in the form of LogCapture and child programs.

#ifndef THREADRECORDS_H
#define THREADRECORDS_H

#include <QString>

/// The guard has asked a thread of class \a className to stop.
inline QString guardRecord(const char* className)
{
    return QStringLiteral("info orvautils Thread lastChanceBeforeDestroyed: %1 Thread is still "
                          "running on lastChanceBeforeDestroyed call! \n => stopAndWait(3000)")
        .arg(QLatin1String(className));
}

/// A destructor has found the thread still running.
inline QString stillRunningRecord()
{
    return QStringLiteral("critical orvautils Thread ~Thread: Thread Thread is still running on "
                          "Destructor call! \n => terminate()");
}

/// The destructor has terminated the thread.
inline QString terminatedRecord()
{
    return QStringLiteral("critical orvautils Thread ~Thread: Thread Terminated! #BRUTAL");
}

#endif // THREADRECORDS_H
