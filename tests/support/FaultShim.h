// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// FaultShim: a disk that fails when a test says so.
//
// The library FaultShim is loaded before all others (LD_PRELOAD) and takes the place of the C
// library's calls on files. It hands every call on, but for those of a thread that armed it: these
// are counted by kind, and refused or shortened as the plan says. What happens before arming and
// after disarming, or in other threads, is neither counted nor touched.
//
// A program finds the two functions by their names, with dlsym(): it does not link the shim.

#ifndef FAULTSHIM_H
#define FAULTSHIM_H

#include <stddef.h>

/// What a call is there for. Calls that do two things at once, as sendfile() does, count as both.
enum FaultKind {
    FaultOpen, ///< opening files and folders, also new ones
    FaultRead, ///< reading files and listing folders
    FaultWrite, ///< writing, cutting off, and bringing what was written to the disk
    FaultRename, ///< renaming, and giving a file a second name
    FaultUnlink, ///< removing files and folders
    FaultMakeFolder, ///< making folders, and symbolic links
    FaultClose, ///< some file systems store only then, and only then tell that they could not
    FaultAttribute ///< telling and changing what a file is: kind, owner, permissions, attributes
};
enum { FaultKindCount = FaultAttribute + 1 };

struct FaultPlan
{
    int kind; ///< the FaultKind that is refused
    int nth; ///< the call of that kind that is refused, from 1; none if 0
    int error; ///< the errno of the refusal
    bool isLasting; ///< whether all later calls of the kind are refused, too
    size_t mostBytes; ///< no single read or write moves more; 0 is no limit
    bool interrupts; ///< whether every call that a signal can interrupt first ends with EINTR
    bool kills; ///< whether the process is killed before that call, instead of a refusal
    bool lacksExchange; ///< a file system whose files do not change places in one step
    bool lacksUnnamedFiles; ///< a file system without O_TMPFILE, as network ones are
    bool lacksHardLinks; ///< a file system without link(), as those of memory cards are
    bool lacksEntryKinds; ///< a file system whose folders do not tell what is a folder itself
};

struct FaultReport
{
    int refused; ///< the calls that were refused by number
    int shortened;
    int interrupted;
    int lacking; ///< the calls for which the file system lacks what they ask for
    char function[16]; ///< the first function that was refused
    char path[256]; ///< the path that it was given, if any
};

extern "C" {
/// The calling thread's calls are counted anew and treated as \a plan says from now on.
typedef void FaultShimArm(const FaultPlan* plan);
/// They are left alone again.
typedef FaultReport FaultShimDisarm();

FaultShimArm faultShimArm;
FaultShimDisarm faultShimDisarm;
}

#endif // FAULTSHIM_H
