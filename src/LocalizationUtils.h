// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// LocalizationUtils: the name of a language, and the code of the system's.

#ifndef ORVAUTILS_LOCALIZATIONUTILS_H
#define ORVAUTILS_LOCALIZATIONUTILS_H

#include "orvautils_export.h"

#include <QString>

/// Two helpers about language codes. Thread: any. Nothing is logged.
///
/// \code
/// LocalizationUtils::isoLangCodeToString(QStringLiteral("fr_FR")); // "français"
/// \endcode
class ORVAUTILS_EXPORT LocalizationUtils
{
public:
    /// The name of the language that \a code stands for.
    ///
    /// Deliberate: a code with a region is answered in its own language, any other in English.
    /// "fr_FR" gives "français", "fr" gives "French". A code that is no language gives an empty
    /// text with a "_" in it and "C" without.
    static QString isoLangCodeToString(const QString& code);

    /// The name of the system's locale in lower case, "fr_fr" for example; "en" when it has none.
    /// A system without language settings is "c".
    static QString currentSystemLangCode();

    LocalizationUtils() = delete;
};

#endif // ORVAUTILS_LOCALIZATIONUTILS_H
