// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// SystemCalls: functions of a POSIX system that tests call directly. On Windows they are declared
// so that the tests compile, but always fail; tests that need them are skipped there.

#ifndef SYSTEMCALLS_H
#define SYSTEMCALLS_H

#include <QtGlobal>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>

#ifndef Q_OS_WIN

#include <poll.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <unistd.h>
#include <utime.h>

/// Skips a test of a feature that Windows lacks, for \a reason.
#define SKIP_ON_WINDOWS(reason)
/// Skips a test of a feature that Windows has and wine lacks.
#define SKIP_UNDER_WINE(reason)

#else

#include <QDateTime>
#include <QFile>
#include <QLibrary>
#include <QString>

#include <io.h>
#include <process.h>
#include <sys/time.h>
#include <sys/types.h>
#include <sys/utime.h>
#include <unistd.h>

// Declared here, because the macros of windows.h clash with names in the tests.
extern "C" __declspec(dllimport) int __stdcall MoveFileExW(const wchar_t*, const wchar_t*,
                                                           unsigned long);

#define SKIP_ON_WINDOWS(reason) QSKIP(reason)

/// Whether the program runs under wine.
inline bool isWine()
{
    return QLibrary::resolve(QStringLiteral("ntdll"), "wine_get_version") != nullptr;
}

/// Skips a test of behaviour that differs between Windows and wine.
#define SKIP_UNDER_WINE(reason)                                                                    \
    do {                                                                                           \
        if (isWine())                                                                              \
            QSKIP(reason);                                                                         \
    } while (false)

#define RLIMIT_NOFILE 0
#define RLIMIT_FSIZE 1
#define RLIMIT_CORE 2
#define SIGXFSZ 25
#define SIGHUP 1
#define SIGKILL 9
#define LOCK_EX 2
#define LOCK_NB 4
#define AT_FDCWD -1
#define AT_SYMLINK_NOFOLLOW 1
#define S_ISLNK(mode) (false)

using rlim_t = unsigned long long;
using uid_t = int;

struct rlimit
{
    rlim_t rlim_cur;
    rlim_t rlim_max;
};

inline int refuseSystemCall()
{
    errno = ENOSYS;
    return -1;
}

inline int symlink(const char*, const char*)
{
    return refuseSystemCall();
}
inline int link(const char*, const char*)
{
    return refuseSystemCall();
}
inline int mkfifo(const char*, int)
{
    return refuseSystemCall();
}
inline ssize_t readlink(const char*, char*, size_t)
{
    return refuseSystemCall();
}
inline int lstat(const char* path, struct stat* status)
{
    return stat(path, status);
}
inline int chown(const char*, uid_t, int)
{
    return refuseSystemCall();
}
inline int setuid(uid_t)
{
    return refuseSystemCall();
}
inline int seteuid(uid_t)
{
    return refuseSystemCall();
}
inline int kill(pid_t, int)
{
    return refuseSystemCall();
}
inline int flock(int, int)
{
    return refuseSystemCall();
}
inline int getrlimit(int, struct rlimit*)
{
    return refuseSystemCall();
}
inline int setrlimit(int, const struct rlimit*)
{
    return refuseSystemCall();
}
inline int mkdir(const char* path, int)
{
    return mkdir(path);
}
/// Sets the times with a precision of milliseconds.
inline int utimensat(int, const char* path, const struct timespec* times, int)
{
    QFile file(QFile::decodeName(path));
    const auto time =
        QDateTime::fromMSecsSinceEpoch(times[1].tv_sec * 1000 + times[1].tv_nsec / 1000000);
    return file.open(QIODevice::ReadWrite)
            && file.setFileTime(time, QFileDevice::FileModificationTime)
        ? 0
        : refuseSystemCall();
}
/// Likewise.
inline int utimes(const char* path, const struct timeval* times)
{
    const timespec same[2] = {{times[0].tv_sec, 0}, {times[1].tv_sec, 0}};
    return utimensat(AT_FDCWD, path, same, 0);
}
/// Sleeps; there is nothing to poll.
inline int poll(void*, int, int milliseconds)
{
    return usleep(unsigned(milliseconds) * 1000);
}
/// Means that the user is not root: there is no root on Windows.
inline uid_t geteuid()
{
    return 1;
}
inline uid_t getuid()
{
    return 1;
}
inline pid_t getppid()
{
    return 1;
}

#endif

#endif // SYSTEMCALLS_H
