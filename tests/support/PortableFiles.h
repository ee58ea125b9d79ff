// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// portable: whether the file classes under test use Qt alone, as on systems for which the library
// has no code of its own.

#ifndef PORTABLEFILES_H
#define PORTABLEFILES_H

#if defined(ORVAUTILS_PORTABLE_FILE_SYSTEM) || defined(_WIN32)
const bool portable = true;
#else
const bool portable = false;
#endif

#endif // PORTABLEFILES_H
