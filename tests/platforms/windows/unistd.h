// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#ifdef ORVAUTILS_NO_POSIX
#error "Windows has no <unistd.h>, or not what we take from it"
#else
#include_next <unistd.h>
#endif
