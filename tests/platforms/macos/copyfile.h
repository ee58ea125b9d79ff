// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The part of this header that our sources use, as documented by Apple.

#ifndef ORVAUTILS_TESTS_MACOS_COPYFILE_H
#define ORVAUTILS_TESTS_MACOS_COPYFILE_H

#include <cstdint>

struct _copyfile_state;
using copyfile_state_t = struct _copyfile_state*;
using copyfile_flags_t = std::uint32_t;

#define COPYFILE_ACL (1 << 0)
#define COPYFILE_STAT (1 << 1)
#define COPYFILE_XATTR (1 << 2)
#define COPYFILE_DATA (1 << 3)

extern "C" int fcopyfile(int from, int to, copyfile_state_t state, copyfile_flags_t flags);

#endif // ORVAUTILS_TESTS_MACOS_COPYFILE_H
