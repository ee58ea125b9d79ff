// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// LogStream: one log record, filled value by value and emitted when the object goes away.
//
// This is a stand-in for the logging library that the applications share. It hands each record to
// Qt's message handler in the logging category "orvautils", so that a host filters with
// QT_LOGGING_RULES (for example "orvautils.info=false") and formats with QT_MESSAGE_PATTERN.

#ifndef LOGSTREAM_H
#define LOGSTREAM_H

#include <QByteArray>
#include <QSize>
#include <QString>

/// How grave a record is. The numbers are the contract; the names are for reading.
enum class LogType {
    Info = 1, ///< an informational trace
    Warning = 2, ///< an operation on a file, an image or a catalogue that failed
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
/// The message is the values in the order in which they were written. `checkSpacing()` after each
/// value makes one blank stand between it and the next one; there is none behind the last. The
/// record is emitted once, by the destructor, through Qt's message handler: LogType::Info as info,
/// LogType::Warning as warning, LogType::Critical as critical. The message context carries the
/// file's base name, the function and the line given here.
///
/// A record belongs to the thread that made it; records of different threads do not meet.
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

    /// Asks for one blank before the next value, if there is one. Asking twice gives one blank.
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
