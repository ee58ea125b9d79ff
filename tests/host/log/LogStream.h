// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// A host's own logging library: the same contract as the stand-in, but it writes to the file named
// by the environment variable HOST_LOG.

#ifndef HOST_LOGSTREAM_H
#define HOST_LOGSTREAM_H

#include <QDebug>
#include <QString>

enum class LogType { Trace = 1, Problem = 2, Misuse = 4 };

class LogStream
{
public:
    LogStream(LogType type, const char* file, const char* function, int line);
    ~LogStream();

    template <typename Value>
    LogStream& operator<<(const Value& value)
    {
        if (mSpace)
            mText += QLatin1Char(' ');
        mSpace = false;
        QDebug(&mText).nospace().noquote() << value;
        return *this;
    }
    LogStream& checkSpacing();

private:
    QString mText;
    bool mSpace = false;
};

#endif // HOST_LOGSTREAM_H
