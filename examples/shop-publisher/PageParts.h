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

/// The file names of the pages that hold \a count things, so many \a onAPage: \a first, then
/// \a others with a number. There is always a first page.
QStringList names(const QString& first, const QString& others, int count, int onAPage);

/// What page \a index of several says, beside \a texts: the way to the page before it and to the
/// one behind it.
QVariantMap pager(const QVariantMap& texts, const QStringList& names, int index);

/// A small picture, which leads to the large one.
QVariantMap picture(const PublishedPicture& picture, const QString& alternativeText);

} // namespace PageParts

#endif // PAGEPARTS_H
