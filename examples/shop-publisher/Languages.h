// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Languages: the language of the program's texts.

#ifndef LANGUAGES_H
#define LANGUAGES_H

#include <QCoreApplication>
#include <QString>
#include <QStringList>

class Languages
{
    Q_DECLARE_TR_FUNCTIONS(Languages)

public:
    /// The codes of the languages of the program, sorted. English, in which it is written, is
    /// included even if it was built without translations.
    static QStringList available();

    /// Switches the program to the language \a code ("fr", "fr_CA"), or to the system's for an
    /// empty code. Returns false and changes nothing if the program has no such language.
    static bool choose(const QString& code);

    /// The code of the language of the program's texts: "fr".
    static QString current();

    /// The name of a language in that language: "Français" for "fr".
    static QString nativeName(const QString& code);
};

#endif // LANGUAGES_H
