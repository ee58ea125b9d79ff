// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// What our sources use of the header of this name, as Microsoft documents it.

#ifndef ORVAUTILS_TESTS_WINDOWS_WINDOWS_H
#define ORVAUTILS_TESTS_WINDOWS_WINDOWS_H

using BOOL = int;
using DWORD = unsigned int; // 32 bits, as there
using HANDLE = void*;
using LPCWSTR = const wchar_t*;
struct SECURITY_ATTRIBUTES;

#define FALSE 0
#define FILE_ATTRIBUTE_HIDDEN 0x2u
#define FILE_ATTRIBUTE_NORMAL 0x80u
#define MOVEFILE_REPLACE_EXISTING 0x1u
#define MOVEFILE_WRITE_THROUGH 0x8u
#define PROCESS_QUERY_LIMITED_INFORMATION 0x1000u
#define GENERIC_READ 0x80000000u
#define OPEN_EXISTING 3u
#define STILL_ACTIVE 259u
#define ERROR_ACCESS_DENIED 5u
#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(-1))
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
BOOL MoveFileExW(LPCWSTR name, LPCWSTR newName, DWORD flags);
DWORD GetLastError();
HANDLE OpenProcess(DWORD access, BOOL inherits, DWORD id);
BOOL GetExitCodeProcess(HANDLE process, DWORD* code);
HANDLE CreateFileW(LPCWSTR name, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                   DWORD disposition, DWORD flags, HANDLE model);
BOOL CloseHandle(HANDLE object);
}

#endif // ORVAUTILS_TESTS_WINDOWS_WINDOWS_H
