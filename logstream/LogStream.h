// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// LogStream: one log record, filled value by value and emitted when the object is destroyed.
//
// This is a stand-in for the logging library that the applications share. It passes each record to
// Qt's message handler in the logging category "orvautils", so that a host can filter with
// QT_LOGGING_RULES (for example "orvautils.info=false") and format with QT_MESSAGE_PATTERN.

#ifndef LOGSTREAM_H
#define LOGSTREAM_H

#include <QByteArray>
#include <QSize>
#include <QString>

/// The severity of a record. The numbers are the contract; the names are for readability.
enum class LogType {
    Info = 1, ///< an informational trace
    Warning = 2, ///< a failed operation on a file, an image or a catalogue
    Critical = 4 ///< misuse, or the failure of an operation on a folder tree
};

/// A log record under construction.
///
/// \code
/// LogStream record(LogType::Warning, "FileUtils", "copyDir", __LINE__);
/// (record << QStringLiteral("unable to copy")).checkSpacing();
/// (record << path).checkSpacing();
/// \endcode
///
/// The message consists of the values in the order in which they were written. Calling
/// `checkSpacing()` after each value puts one space between it and the next one; none follows the
/// last. The record is emitted once, by the destructor, through Qt's message handler: LogType::Info
/// as info, LogType::Warning as warning, LogType::Critical as critical. The message context
/// contains the file's base name, the function and the line given here.
///
/// A record belongs to the thread that created it; records of different threads are independent.
class LogStream
{
public:
    /// Opens a record. \a file is the base name of the source file without a suffix ("FileUtils"),
    /// \a function the name of the function alone. Both are copied; either may be null.
    LogStream(LogType type, const char* file, const char* function, int line);
    ~LogStream();

    LogStream& operator<<(const QString& text);
    /// Text in UTF-8; null counts as empty.
    LogStream& operator<<(const char* text);
    LogStream& operator<<(int number);
    LogStream& operator<<(unsigned int number);
    LogStream& operator<<(qint64 number);
    LogStream& operator<<(quint64 number);
    /// At most six significant digits.
    LogStream& operator<<(double number);
    /// Written as "QSize(width, height)".
    LogStream& operator<<(const QSize& size);

    /// Requests one space before the next value, if there is one. Calling it twice gives one space.
    LogStream& checkSpacing();

private:
    Q_DISABLE_COPY(LogStream)

    void append(const QString& text);

    const LogType mType;
    const QByteArray mFile;
    const QByteArray mFunction;
    const int mLine;
    QString mMessage;
    bool mSpaceWanted = false;
};

#endif // LOGSTREAM_H
