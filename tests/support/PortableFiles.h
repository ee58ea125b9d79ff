// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// portable: whether the file classes under test leave everything to Qt, as they do on systems whose
// calls the library does not use.

#ifndef PORTABLEFILES_H
#define PORTABLEFILES_H

#if defined(ORVAUTILS_PORTABLE_FILE_SYSTEM) || defined(_WIN32)
const bool portable = true;
#else
const bool portable = false;
#endif

#endif // PORTABLEFILES_H
