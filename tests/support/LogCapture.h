// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// LogCapture: what is written to the log while it exists, as a list that a test compares.

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

/// Takes the place of Qt's message handler for as long as it lives and keeps every message, from
/// whatever thread. Captures may be nested; the innermost one gets the messages.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();

    /// All messages so far, in the order in which they came.
    QVector<CapturedRecord> records() const;

    /// The messages so far, which are forgotten by this call.
    QVector<CapturedRecord> take();

    /// The messages as one text a line, the form that is easiest to compare:
    /// "warning orvautils FileUtils copyDir: unable to mkdir /x". For messages outside the category
    /// "orvautils" file and function are left out: "warning default: Invalid Ifd Type 6".
    QStringList lines() const;

private:
    Q_DISABLE_COPY(LogCapture)

    QtMessageHandler mPrevious;
};

#endif // LOGCAPTURE_H
