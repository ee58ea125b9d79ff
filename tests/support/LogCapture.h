// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// LogCapture: collects the messages that are logged during its lifetime, for a test to compare.

#ifndef LOGCAPTURE_H
#define LOGCAPTURE_H

#include <QByteArray>
#include <QString>
#include <QVector>

/// One message as Qt's message handler received it.
struct CapturedRecord
{
    QtMsgType type;
    QByteArray category; ///< "orvautils" for the library's records, "default" for plain Qt warnings
    QByteArray file; ///< for the library's records the base name of the source file
    QByteArray function;
    int line;
    QString text;
};

/// Replaces Qt's message handler as long as it lives and keeps every message from any thread.
/// Captures may be nested; the innermost one gets the messages.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();

    /// All messages so far, in order.
    QVector<CapturedRecord> records() const;

    /// Returns the messages so far and forgets them.
    QVector<CapturedRecord> take();

    /// The messages as one line each, the form that is easiest to compare: "warning orvautils
    /// FileUtils copyDir: unable to mkdir /x". Messages outside the category "orvautils" appear
    /// without file and function: "warning default: Invalid Ifd Type 6".
    QStringList lines() const;

private:
    Q_DISABLE_COPY(LogCapture)

    QtMessageHandler mPrevious;
};

#endif // LOGCAPTURE_H
