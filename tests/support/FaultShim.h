// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// FaultShim: a disk that fails when a test says so.
//
// The library FaultShim is loaded before all others (LD_PRELOAD) and replaces the file functions of
// the C library. Calls are passed on unchanged, except in a thread that has armed the shim: there
// they are counted by kind, and refused or shortened according to the plan. Calls before arming,
// after disarming and in other threads are neither counted nor changed.
//
// A program looks up the two functions with dlsym(); it does not link to the shim.

#ifndef FAULTSHIM_H
#define FAULTSHIM_H

#include <stddef.h>

/// What a call does. Calls that do two things at once, such as sendfile(), count as both.
enum FaultKind {
    FaultOpen, ///< opening files and folders, including new ones
    FaultRead, ///< reading files and listing folders
    FaultWrite, ///< writing, truncating and syncing
    FaultRename, ///< renaming and creating hard links
    FaultUnlink, ///< removing files and folders
    FaultMakeFolder, ///< making folders and symbolic links
    FaultClose, ///< some file systems store data, and report errors, only then
    FaultAttribute ///< reading and changing the kind, owner, permissions and attributes of a file
};
enum { FaultKindCount = FaultAttribute + 1 };

struct FaultPlan
{
    int kind; ///< the FaultKind to refuse
    int nth; ///< the call of that kind to refuse, starting with 1; 0 refuses none
    int error; ///< the errno of the refusal
    bool isLasting; ///< whether all later calls of the kind are refused as well
    size_t mostBytes; ///< the most bytes that a single read or write moves; 0 means no limit
    bool interrupts; ///< whether every call that can be interrupted ends with EINTR the first time
    bool kills; ///< whether the process is killed before that call instead
    bool lacksExchange; ///< the file system cannot exchange two files in one step
    bool lacksUnnamedFiles; ///< the file system lacks O_TMPFILE, like network file systems
    bool lacksHardLinks; ///< the file system lacks link(), like those of memory cards
    bool lacksEntryKinds; ///< the file system does not report the kind of a folder entry
};

struct FaultReport
{
    int refused; ///< the number of calls that were refused
    int shortened;
    int interrupted;
    int lacking; ///< the number of calls that failed because the file system lacks the feature
    char function[16]; ///< the first function that was refused
    char path[256]; ///< the path passed to that function, if any
};

extern "C" {
/// Starts counting the calls of the calling thread from zero and treats them according to \a plan.
typedef void FaultShimArm(const FaultPlan* plan);
/// Stops doing so.
typedef FaultReport FaultShimDisarm();

FaultShimArm faultShimArm;
FaultShimDisarm faultShimDisarm;
}

#endif // FAULTSHIM_H
