// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// What libFuzzer calls before the first input, for every target.

#include <QByteArray>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    // One time zone without a change of clocks, so that every wall-clock time exists.
    qputenv("TZ", QByteArrayLiteral("UTC"));
    // Warnings about broken input are promised, but nobody reads millions of them.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    return 0;
}
