// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// PageTexts: the words of a page in the language of that page, whatever the program speaks.

#ifndef PAGETEXTS_H
#define PAGETEXTS_H

#include <QString>
#include <QVariant>

class PageTexts
{
public:
    /// The texts in the language \a code, by the names that the templates have for them; English
    /// ones where the program has none of that language.
    static QVariantMap in(const QString& code);

    /// What every page of several says, beside the texts of in(): the way to the page before page
    /// \a number and to the one behind it. \a first is the file name of the first of \a count;
    /// those of the others are numbered.
    static QVariantMap pager(const QVariantMap& texts, const QString& first, const QString& others,
                             int number, int count);

    /// The file name of page \a number: \a first, or \a others with the number.
    static QString fileName(const QString& first, const QString& others, int number)
    {
        return number == 1 ? first : others.arg(number);
    }
};

#endif // PAGETEXTS_H
