// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#ifdef ORVAUTILS_NO_POSIX
#error "Windows has no <sys/stat.h>, or not what we take from it"
#else
#include_next <sys/stat.h>
#endif
