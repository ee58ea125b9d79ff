// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// FileLimit: limits the size of files, or the number of open files, of this process.

#ifndef FILELIMIT_H
#define FILELIMIT_H

#include "SystemCalls.h"

#include <QtGlobal>

/// Sets the soft limit of \a resource, RLIMIT_FSIZE or RLIMIT_NOFILE, as long as the object lives.
/// A write beyond the limit fails and raises no signal.
class FileLimit
{
public:
    FileLimit(int resource, rlim_t limit)
        : mResource(resource)
        , mSignal(signal(SIGXFSZ, SIG_IGN))
    {
        get(&mPrevious);
        struct rlimit lowered = mPrevious;
        lowered.rlim_cur = limit;
        set(lowered);
    }

    ~FileLimit()
    {
        set(mPrevious);
        signal(SIGXFSZ, mSignal);
    }

private:
    Q_DISABLE_COPY(FileLimit)

    // The type of the first argument differs between platforms.
    void get(struct rlimit* limit) const
    {
        if (mResource == RLIMIT_FSIZE)
            getrlimit(RLIMIT_FSIZE, limit);
        else
            getrlimit(RLIMIT_NOFILE, limit);
    }
    void set(const struct rlimit& limit) const
    {
        const int result = mResource == RLIMIT_FSIZE ? setrlimit(RLIMIT_FSIZE, &limit)
                                                     : setrlimit(RLIMIT_NOFILE, &limit);
        if (result != 0)
            qFatal("cannot set a limit");
    }

    const int mResource;
    struct rlimit mPrevious;
    void (*const mSignal)(int);
};

#endif // FILELIMIT_H
