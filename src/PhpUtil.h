// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// PhpUtil: double-quoted PHP strings, in which PHP puts the values of variables.

#ifndef ORVAUTILS_PHPUTIL_H
#define ORVAUTILS_PHPUTIL_H

#include "orvautils_export.h"

#include <QString>

/// Double-quoted PHP strings; PhpCodeHelpers writes single-quoted ones.
///
/// All functions are static, keep no state and may be called from any thread. Nothing here writes
/// to the log.
class ORVAUTILS_EXPORT PhpUtil
{
public:
    PhpUtil() = delete;

    /// \a s as a PHP string in double quotes.
    ///
    /// \code
    /// PhpUtil::formatPhpString(R"(say "hi", $name)"); // R"("say \"hi\", $name")"
    /// \endcode
    ///
    /// Deliberate: double quotes alone are escaped. A "$name" is replaced by the variable's value
    /// when PHP runs, and a backslash begins an escape sequence, so \a s is code to be trusted.
    static QString formatPhpString(const QString& s);

    /// The same as formatPhpString() of \a s.
    static QString escapeAndQuotedPhpStringVariable(const QString& s);

    /// formatPhpString() of \a s with its white space simplified.
    ///
    /// \code
    /// PhpUtil::formatPhpSimplifiedString("  a \n b "); // "\"a b\""
    /// \endcode
    static QString formatPhpSimplifiedString(const QString& s);
};

#endif // ORVAUTILS_PHPUTIL_H
