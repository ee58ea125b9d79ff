// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// What our sources use of the header of this name, as Microsoft documents it.

#ifndef ORVAUTILS_TESTS_WINDOWS_WINDOWS_H
#define ORVAUTILS_TESTS_WINDOWS_WINDOWS_H

using BOOL = int;
using DWORD = unsigned int; // 32 bits, as there
using LPCWSTR = const wchar_t*;

#define FILE_ATTRIBUTE_HIDDEN 0x2u
#define INVALID_FILE_ATTRIBUTES (static_cast<DWORD>(-1))

// The real header defines these two unless it is asked not to; so a source must not rely on the
// names.
#ifndef NOMINMAX
#define max(a, b) (((a) > (b)) ? (a) : (b))
#define min(a, b) (((a) < (b)) ? (a) : (b))
#endif

extern "C" {
DWORD GetFileAttributesW(LPCWSTR name);
BOOL SetFileAttributesW(LPCWSTR name, DWORD attributes);
}

#endif // ORVAUTILS_TESTS_WINDOWS_WINDOWS_H
