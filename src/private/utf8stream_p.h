// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// writeUtf8: the encoding of a text stream, which Qt 5 and Qt 6 set in different ways.

#ifndef ORVAUTILS_UTF8STREAM_P_H
#define ORVAUTILS_UTF8STREAM_P_H

#include <QTextStream>

namespace OrvaUtilsPrivate {

/// Makes \a stream read and write UTF-8.
inline void writeUtf8(QTextStream& stream)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    stream.setEncoding(QStringConverter::Utf8);
#else
    stream.setCodec("UTF-8");
#endif
}

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_UTF8STREAM_P_H
