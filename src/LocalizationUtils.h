// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// LocalizationUtils: the name of a language, and the code of the system's language.

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
    /// Deliberate: for a code with a region the name is in that language itself, for any other in
    /// English. "fr_FR" gives "français", "fr" gives "French". A code that is not a language gives
    /// an empty string if it contains a "_", otherwise "C".
    static QString isoLangCodeToString(const QString& code);

    /// The name of the system's locale in lower case, "fr_fr" for example; "en" if it has none. A
    /// system without language settings gives "c".
    static QString currentSystemLangCode();

    LocalizationUtils() = delete;
};

#endif // ORVAUTILS_LOCALIZATIONUTILS_H
