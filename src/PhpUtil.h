// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// PhpUtil: double-quoted PHP strings, in which PHP interpolates variables.

#ifndef ORVAUTILS_PHPUTIL_H
#define ORVAUTILS_PHPUTIL_H

#include "orvautils_export.h"

#include <QString>

/// Double-quoted PHP strings; PhpCodeHelpers writes single-quoted ones.
///
/// All functions are static, keep no state and may be called from any thread. Nothing is logged.
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
    /// Deliberate: only double quotes are escaped. PHP replaces "$name" by the value of the
    /// variable and reads a backslash as the start of an escape sequence, so \a s must come from a
    /// trusted source.
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
