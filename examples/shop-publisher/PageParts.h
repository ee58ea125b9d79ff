// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// PageParts: what the pages of the shop and of the photographs have in common.

#ifndef PAGEPARTS_H
#define PAGEPARTS_H

#include "Published.h"

#include <QString>
#include <QVariant>

namespace PageParts {

/// The words of a page in the language \a code, whatever the program speaks, by the names that the
/// templates have for them; English ones where the program has none of that language.
QVariantMap texts(const QString& code);

/// What every page of several says, beside \a texts: the way to the page before page \a number and
/// to the one behind it. \a first is the file name of the first of \a count; those of the others
/// are numbered.
QVariantMap pager(const QVariantMap& texts, const QString& first, const QString& others, int number,
                  int count);

/// The file name of page \a number: \a first, or \a others with the number.
QString fileName(const QString& first, const QString& others, int number);

/// A small picture, which leads to the large one.
QVariantMap picture(const PublishedPicture& picture, const QString& alternativeText);

} // namespace PageParts

#endif // PAGEPARTS_H
