// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "StopSignals.h"

#include <QCoreApplication>

#include <windows.h>

namespace {

const UINT exitCodeOfSecond = 130;

/// The object, and how often the user asked. Windows calls the handler in a thread of its own.
StopSignals* volatile listener = nullptr;
volatile LONG caught = 0;

BOOL WINAPI passOn(DWORD)
{
    // A second request means not to wait. The next run cleans up.
    if (InterlockedIncrement(&caught) > 1)
        TerminateProcess(GetCurrentProcess(), exitCodeOfSecond);
    if (StopSignals* const object = listener)
        QMetaObject::invokeMethod(object, "stopRequested", Qt::QueuedConnection);
    return TRUE;
}

} // namespace

StopSignals::StopSignals()
{
    caught = 0;
    listener = this;
    SetConsoleCtrlHandler(passOn, TRUE);
}
