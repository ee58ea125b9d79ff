// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// TypeUtils: the names of C++ types as a person writes them.

#ifndef ORVAUTILS_TYPEUTILS_H
#define ORVAUTILS_TYPEUTILS_H

#include "orvautils_export.h"

#include <QString>

/// Turns the compiler's names of types into readable ones. Stateless; safe from any thread.
class ORVAUTILS_EXPORT TypeUtils
{
public:
    /// \a name demangled by the platform ABI's demangler. A name that the demangler refuses,
    /// including null, and every name on a platform without such a demangler is returned as given.
    ///
    /// \code
    /// TypeUtils::demangle("7QObject"); // "QObject"
    /// TypeUtils::demangle("no name!"); // "no name!"
    /// \endcode
    static QString demangle(const char* name);

    /// The readable name of a type; \a typeName is the type's run-time name.
    ///
    /// \code
    /// TypeUtils::name(typeid(*object).name());
    /// \endcode
    static QString name(const char* typeName);
};

#endif // ORVAUTILS_TYPEUTILS_H
