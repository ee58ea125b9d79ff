// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// LogRecord: the one way in which the library's sources write to the log.
//
//     ORVAUTILS_LOG_WARNING() << "unable to mkdir" << path;
//
// The record carries the base name of the source file and the name of the enclosing function. A
// helper that logs on behalf of a public function names that function instead:
//
//     ORVAUTILS_LOG_WARNING_IN("copyDir") << "unable to mkdir" << path;

#ifndef ORVAUTILS_LOGRECORD_P_H
#define ORVAUTILS_LOGRECORD_P_H

#include <LogStream.h>

namespace OrvaUtilsPrivate {

/// A LogStream that automatically puts one blank between its values.
class LogRecord
{
public:
    /// \a sourceFile is the whole __FILE__; its folder and suffix are left out of the record.
    LogRecord(int logType, const char* sourceFile, const char* function, int line)
        : mStream(static_cast<LogType>(logType), baseName(sourceFile).constData(), function, line)
    { }

    template <typename T>
    LogRecord& operator<<(const T& value)
    {
        mStream << value;
        mStream.checkSpacing();
        return *this;
    }

private:
    static QByteArray baseName(const char* sourceFile)
    {
        const QByteArray path(sourceFile);
        const int start = int(path.lastIndexOf('/') + 1);
        const int dot = int(path.indexOf('.', start));
        return path.mid(start, dot < 0 ? -1 : dot - start);
    }

    LogStream mStream;
};

} // namespace OrvaUtilsPrivate

#define ORVAUTILS_LOG_INFO_IN(function) OrvaUtilsPrivate::LogRecord(1, __FILE__, function, __LINE__)
#define ORVAUTILS_LOG_WARNING_IN(function)                                                         \
    OrvaUtilsPrivate::LogRecord(2, __FILE__, function, __LINE__)
#define ORVAUTILS_LOG_CRITICAL_IN(function)                                                        \
    OrvaUtilsPrivate::LogRecord(4, __FILE__, function, __LINE__)

#define ORVAUTILS_LOG_INFO() ORVAUTILS_LOG_INFO_IN(__func__)
#define ORVAUTILS_LOG_WARNING() ORVAUTILS_LOG_WARNING_IN(__func__)
#define ORVAUTILS_LOG_CRITICAL() ORVAUTILS_LOG_CRITICAL_IN(__func__)

/// For a private source that does the work of the class \a source.
#define ORVAUTILS_LOG_WARNING_OF(source, function)                                                 \
    OrvaUtilsPrivate::LogRecord(2, source, function, __LINE__)
#define ORVAUTILS_LOG_CRITICAL_OF(source, function)                                                \
    OrvaUtilsPrivate::LogRecord(4, source, function, __LINE__)

#endif // ORVAUTILS_LOGRECORD_P_H
