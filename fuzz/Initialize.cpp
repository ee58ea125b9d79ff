// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Called by libFuzzer before the first input of every target.

#include <QByteArray>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    // A time zone without daylight saving time, so that every local time exists.
    qputenv("TZ", QByteArrayLiteral("UTC"));
    // Warnings about damaged input are promised, but nobody reads millions of them.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    return 0;
}
