// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Languages: the language in which the program speaks.

#ifndef LANGUAGES_H
#define LANGUAGES_H

#include <QCoreApplication>
#include <QString>
#include <QStringList>

class Languages
{
    Q_DECLARE_TR_FUNCTIONS(Languages)

public:
    /// The codes of the languages of the program, sorted. English, in which it is written, is there
    /// also where it was built without translations.
    static QStringList available();

    /// Lets the program speak the language \a code ("fr", "fr_CA"), or the system's for an empty
    /// code. False, and nothing changes, when the program has no such language.
    static bool choose(const QString& code);

    /// The code of the language of the program's texts: "fr".
    static QString current();

    /// A language as those who speak it call it: "Français" for "fr".
    static QString nativeName(const QString& code);
};

#endif // LANGUAGES_H
