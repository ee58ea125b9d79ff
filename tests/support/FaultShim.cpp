// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "FaultShim.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

struct State
{
    bool isArmed;
    FaultPlan plan;
    int calls[FaultKindCount];
    bool wasInterrupted;
    FaultReport report;
};

thread_local State state;

// ---- Decisions ---------------------------------------------------------------------------------

/// Counts a call of that kind. Returns whether it fails; errno is then set.
bool isRefused(FaultKind kind, const char* function, const char* path = nullptr)
{
    if (!state.isArmed)
        return false;
    const FaultPlan& plan = state.plan;
    const int number = ++state.calls[kind];
    const bool isReached = plan.isLasting ? number >= plan.nth : number == plan.nth;
    if (kind != plan.kind || plan.nth == 0 || !isReached)
        return false;
    if (plan.kills)
        std::raise(SIGKILL);
    if (++state.report.refused == 1) {
        std::snprintf(state.report.function, sizeof state.report.function, "%s", function);
        std::snprintf(state.report.path, sizeof state.report.path, "%s", path ? path : "");
    }
    errno = plan.error;
    return true;
}

/// Whether a signal arrives before the call has done anything. Never twice in a row, so that a
/// repeated call succeeds.
bool isInterrupted()
{
    if (!state.isArmed || !state.plan.interrupts)
        return false;
    state.wasInterrupted = !state.wasInterrupted;
    if (!state.wasInterrupted)
        return false;
    ++state.report.interrupted;
    errno = EINTR;
    return true;
}

/// The number of bytes that a single call may move.
size_t allowed(size_t bytes)
{
    if (!state.isArmed || state.plan.mostBytes == 0 || bytes <= state.plan.mostBytes)
        return bytes;
    ++state.report.shortened;
    return state.plan.mostBytes;
}

/// Listing a folder does not block, so no signal interrupts it.
bool isRefusedToList(const char* function)
{
    return !(state.isArmed && state.plan.error == EINTR) && isRefused(FaultRead, function);
}

/// A folder entry as a file system without entry kinds returns it.
template <typename Entry>
Entry* withoutKind(Entry* entry)
{
    if (entry && state.isArmed && state.plan.lacksEntryKinds)
        entry->d_type = DT_UNKNOWN;
    return entry;
}

bool isRefusedToOpen(const char* function, const char* path, int flags)
{
    if (state.isArmed && state.plan.lacksUnnamedFiles && (flags & O_TMPFILE) == O_TMPFILE) {
        ++state.report.lacking;
        errno = EOPNOTSUPP;
        return true;
    }
    return isInterrupted() || isRefused(FaultOpen, function, path);
}

bool isRefusedToRename(const char* function, const char* path, unsigned flags)
{
    if (state.isArmed && state.plan.lacksExchange && (flags & RENAME_EXCHANGE)) {
        ++state.report.lacking;
        errno = EINVAL;
        return true;
    }
    return isRefused(FaultRename, function, path);
}

bool isRefusedToLink(const char* function, const char* path)
{
    if (state.isArmed && state.plan.lacksHardLinks) {
        ++state.report.lacking;
        errno = EPERM;
        return true;
    }
    return isRefused(FaultRename, function, path);
}

} // namespace

void faultShimArm(const FaultPlan* plan)
{
    state = State();
    state.plan = *plan;
    state.isArmed = true;
}

FaultReport faultShimDisarm()
{
    state.isArmed = false;
    return state.report;
}

// ---- The calls ---------------------------------------------------------------------------------

/// The function of the C library that the shim replaces.
#define NEXT(name, Result, ...)                                                                    \
    static const auto next = reinterpret_cast<Result (*)(__VA_ARGS__)>(dlsym(RTLD_NEXT, #name))

/// Defines name(parameters), which returns failed if refusal holds.
#define INTERPOSE(Result, failed, name, parameters, arguments, refusal)                            \
    Result name parameters                                                                         \
    {                                                                                              \
        static const auto next = reinterpret_cast<Result(*) parameters>(dlsym(RTLD_NEXT, #name));  \
        return refusal ? failed : next arguments;                                                  \
    }

/// The mode argument of a call that may create a file; it is passed only in that case.
#define MODE_OF(flags)                                                                             \
    mode_t mode = 0;                                                                               \
    if (((flags)&O_CREAT) || ((flags)&O_TMPFILE) == O_TMPFILE) {                                   \
        va_list list;                                                                              \
        va_start(list, flags);                                                                     \
        mode = va_arg(list, mode_t);                                                               \
        va_end(list);                                                                              \
    }

extern "C" {

// Opening

int open(const char* path, int flags, ...)
{
    NEXT(open, int, const char*, int, ...);
    MODE_OF(flags)
    return isRefusedToOpen("open", path, flags) ? -1 : next(path, flags, mode);
}

int open64(const char* path, int flags, ...)
{
    NEXT(open64, int, const char*, int, ...);
    MODE_OF(flags)
    return isRefusedToOpen("open64", path, flags) ? -1 : next(path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...)
{
    NEXT(openat, int, int, const char*, int, ...);
    MODE_OF(flags)
    return isRefusedToOpen("openat", path, flags) ? -1 : next(folder, path, flags, mode);
}

int openat64(int folder, const char* path, int flags, ...)
{
    NEXT(openat64, int, int, const char*, int, ...);
    MODE_OF(flags)
    return isRefusedToOpen("openat64", path, flags) ? -1 : next(folder, path, flags, mode);
}

INTERPOSE(int, -1, creat, (const char* path, mode_t mode), (path, mode),
          isRefusedToOpen("creat", path, 0))
INTERPOSE(int, -1, creat64, (const char* path, mode_t mode), (path, mode),
          isRefusedToOpen("creat64", path, 0))
INTERPOSE(FILE*, nullptr, fopen, (const char* path, const char* mode), (path, mode),
          isRefusedToOpen("fopen", path, 0))
INTERPOSE(FILE*, nullptr, fopen64, (const char* path, const char* mode), (path, mode),
          isRefusedToOpen("fopen64", path, 0))
INTERPOSE(int, -1, mkstemp, (char* path), (path), isRefusedToOpen("mkstemp", path, 0))
INTERPOSE(int, -1, mkstemp64, (char* path), (path), isRefusedToOpen("mkstemp64", path, 0))
INTERPOSE(int, -1, mkostemp, (char* path, int flags), (path, flags),
          isRefusedToOpen("mkostemp", path, 0))
INTERPOSE(int, -1, mkostemp64, (char* path, int flags), (path, flags),
          isRefusedToOpen("mkostemp64", path, 0))
INTERPOSE(DIR*, nullptr, opendir, (const char* path), (path), isRefusedToOpen("opendir", path, 0))

// Reading

INTERPOSE(ssize_t, -1, read, (int file, void* data, size_t size), (file, data, allowed(size)),
          isInterrupted() || isRefused(FaultRead, "read"))
INTERPOSE(ssize_t, -1, pread, (int file, void* data, size_t size, off_t offset),
          (file, data, allowed(size), offset), isInterrupted() || isRefused(FaultRead, "pread"))
INTERPOSE(ssize_t, -1, pread64, (int file, void* data, size_t size, off64_t offset),
          (file, data, allowed(size), offset), isInterrupted() || isRefused(FaultRead, "pread64"))

struct dirent* readdir(DIR* folder)
{
    NEXT(readdir, struct dirent*, DIR*);
    return isRefusedToList("readdir") ? nullptr : withoutKind(next(folder));
}

struct dirent64* readdir64(DIR* folder)
{
    NEXT(readdir64, struct dirent64*, DIR*);
    return isRefusedToList("readdir64") ? nullptr : withoutKind(next(folder));
}

// Reading and writing

INTERPOSE(ssize_t, -1, sendfile, (int to, int from, off_t* offset, size_t size) noexcept,
          (to, from, offset, allowed(size)),
          isInterrupted() || isRefused(FaultRead, "sendfile") || isRefused(FaultWrite, "sendfile"))
INTERPOSE(ssize_t, -1, sendfile64, (int to, int from, off64_t* offset, size_t size) noexcept,
          (to, from, offset, allowed(size)),
          isInterrupted() || isRefused(FaultRead, "sendfile64")
              || isRefused(FaultWrite, "sendfile64"))
INTERPOSE(ssize_t, -1, copy_file_range,
          (int from, off64_t* fromOffset, int to, off64_t* toOffset, size_t size, unsigned flags),
          (from, fromOffset, to, toOffset, allowed(size), flags),
          isInterrupted() || isRefused(FaultRead, "copy_file_range")
              || isRefused(FaultWrite, "copy_file_range"))

// Writing

INTERPOSE(ssize_t, -1, write, (int file, const void* data, size_t size),
          (file, data, allowed(size)), isInterrupted() || isRefused(FaultWrite, "write"))
INTERPOSE(ssize_t, -1, pwrite, (int file, const void* data, size_t size, off_t offset),
          (file, data, allowed(size), offset), isInterrupted() || isRefused(FaultWrite, "pwrite"))
INTERPOSE(ssize_t, -1, pwrite64, (int file, const void* data, size_t size, off64_t offset),
          (file, data, allowed(size), offset), isInterrupted() || isRefused(FaultWrite, "pwrite64"))
INTERPOSE(int, -1, ftruncate, (int file, off_t size) noexcept, (file, size),
          isInterrupted() || isRefused(FaultWrite, "ftruncate"))
INTERPOSE(int, -1, ftruncate64, (int file, off64_t size) noexcept, (file, size),
          isInterrupted() || isRefused(FaultWrite, "ftruncate64"))
INTERPOSE(int, -1, truncate, (const char* path, off_t size) noexcept, (path, size),
          isInterrupted() || isRefused(FaultWrite, "truncate", path))
INTERPOSE(int, -1, truncate64, (const char* path, off64_t size) noexcept, (path, size),
          isInterrupted() || isRefused(FaultWrite, "truncate64", path))

// Test files need not survive a power failure: do not spend time on that.

int fsync(int file)
{
    NEXT(fsync, int, int);
    if (isInterrupted() || isRefused(FaultWrite, "fsync"))
        return -1;
    return state.isArmed ? 0 : next(file);
}

int fdatasync(int file)
{
    NEXT(fdatasync, int, int);
    if (isInterrupted() || isRefused(FaultWrite, "fdatasync"))
        return -1;
    return state.isArmed ? 0 : next(file);
}

int syncfs(int file) noexcept
{
    NEXT(syncfs, int, int);
    if (isInterrupted() || isRefused(FaultWrite, "syncfs"))
        return -1;
    return state.isArmed ? 0 : next(file);
}

// Renaming

INTERPOSE(int, -1, rename, (const char* path, const char* newPath) noexcept, (path, newPath),
          isRefused(FaultRename, "rename", path))
INTERPOSE(int, -1, renameat,
          (int folder, const char* path, int newFolder, const char* newPath) noexcept,
          (folder, path, newFolder, newPath), isRefused(FaultRename, "renameat", path))
INTERPOSE(int, -1, renameat2,
          (int folder, const char* path, int newFolder, const char* newPath,
           unsigned flags) noexcept,
          (folder, path, newFolder, newPath, flags), isRefusedToRename("renameat2", path, flags))
INTERPOSE(int, -1, link, (const char* path, const char* newPath) noexcept, (path, newPath),
          isRefusedToLink("link", path))

int linkat(int folder, const char* path, int newFolder, const char* newPath, int flags) noexcept
{
    NEXT(linkat, int, int, const char*, int, const char*, int);
    if (isRefusedToLink("linkat", path))
        return -1;
    return next(folder, path, newFolder, newPath, flags);
}

// Removing

INTERPOSE(int, -1, unlink, (const char* path) noexcept, (path),
          isRefused(FaultUnlink, "unlink", path))
INTERPOSE(int, -1, unlinkat, (int folder, const char* path, int flags) noexcept,
          (folder, path, flags), isRefused(FaultUnlink, "unlinkat", path))
INTERPOSE(int, -1, rmdir, (const char* path) noexcept, (path),
          isRefused(FaultUnlink, "rmdir", path))
INTERPOSE(int, -1, remove, (const char* path) noexcept, (path),
          isRefused(FaultUnlink, "remove", path))

// Making folders and links

INTERPOSE(int, -1, mkdir, (const char* path, mode_t mode) noexcept, (path, mode),
          isRefused(FaultMakeFolder, "mkdir", path))
INTERPOSE(int, -1, mkdirat, (int folder, const char* path, mode_t mode) noexcept,
          (folder, path, mode), isRefused(FaultMakeFolder, "mkdirat", path))
INTERPOSE(int, -1, symlink, (const char* target, const char* path) noexcept, (target, path),
          isRefused(FaultMakeFolder, "symlink", path))

// Attributes of open files

INTERPOSE(int, -1, fstat, (int file, struct stat* status) noexcept, (file, status),
          isRefused(FaultAttribute, "fstat"))
INTERPOSE(int, -1, fchmod, (int file, mode_t mode) noexcept, (file, mode),
          isRefused(FaultAttribute, "fchmod"))
INTERPOSE(int, -1, fchown, (int file, uid_t user, gid_t group) noexcept, (file, user, group),
          isRefused(FaultAttribute, "fchown"))
INTERPOSE(ssize_t, -1, flistxattr, (int file, char* names, size_t size) noexcept,
          (file, names, size), isRefused(FaultAttribute, "flistxattr"))
INTERPOSE(ssize_t, -1, fgetxattr, (int file, const char* name, void* value, size_t size) noexcept,
          (file, name, value, size), isRefused(FaultAttribute, "fgetxattr"))
INTERPOSE(int, -1, fsetxattr,
          (int file, const char* name, const void* value, size_t size, int flags) noexcept,
          (file, name, value, size, flags), isRefused(FaultAttribute, "fsetxattr"))
INTERPOSE(int, -1, fremovexattr, (int file, const char* name) noexcept, (file, name),
          isRefused(FaultAttribute, "fremovexattr"))

// The file is closed even if close() fails, as on Linux.

int close(int file)
{
    NEXT(close, int, int);
    const int result = next(file);
    return isRefused(FaultClose, "close") ? -1 : result;
}

} // extern "C"
