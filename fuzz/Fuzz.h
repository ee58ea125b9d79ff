// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Shared by the fuzz targets: promises that stop the run if they are broken, and texts made from
// bytes.

#ifndef FUZZ_H
#define FUZZ_H

#include <QString>

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdio>
#include <cstdlib>

/// Stops the run, and so reports the input, unless \a promise holds.
#define FUZZ_PROMISE(promise)                                                                      \
    do {                                                                                           \
        if (!(promise)) {                                                                          \
            std::fprintf(stderr, "%s:%d: broken promise: %s\n", __FILE__, __LINE__, #promise);     \
            std::abort();                                                                          \
        }                                                                                          \
    } while (false)

/// A text of UTF-16 units from \a bytes: a single byte if the first one is even, so that ASCII is
/// found easily, otherwise two bytes each, so that every unit is possible, including lone
/// surrogates.
inline QString textOf(const std::string& bytes)
{
    if (bytes.empty())
        return QString();
    QString text;
    if (bytes[0] % 2 == 0) {
        text = QString::fromLatin1(bytes.data() + 1, int(bytes.size()) - 1);
    } else {
        for (std::size_t i = 1; i + 1 < bytes.size(); i += 2)
            text += QChar(uchar(bytes[i]), uchar(bytes[i + 1]));
    }
    return text;
}

inline QString remainingText(FuzzedDataProvider& input)
{
    return textOf(input.ConsumeRemainingBytesAsString());
}

#endif // FUZZ_H
