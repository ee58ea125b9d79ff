// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// PageTexts: the words of a page in the language of that page, whatever the program speaks.

#ifndef PAGETEXTS_H
#define PAGETEXTS_H

#include <QString>
#include <QTranslator>

class PageTexts
{
public:
    /// The texts of the language \a code; English ones where the program has none of it.
    explicit PageTexts(const QString& code);

    /// The translation of \a text, which is marked with QT_TRANSLATE_NOOP("PageTexts", …).
    QString text(const char* text) const;

private:
    QTranslator mTranslator;
};

#endif // PAGETEXTS_H
