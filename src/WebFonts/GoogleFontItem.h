// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// GoogleFontItem: one family of the web font catalogue, and what its variant names mean.

#ifndef ORVAUTILS_GOOGLEFONTITEM_H
#define ORVAUTILS_GOOGLEFONTITEM_H

#include "GoogleFontWeightDetail.h"
#include "orvautils_export.h"

#include <QDate>
#include <QJsonObject>
#include <QMap>
#include <QSharedDataPointer>
#include <QString>
#include <QStringList>

namespace OrvaUtilsPrivate {
class GoogleFontItemPrivate;
} // namespace OrvaUtilsPrivate

/// One family of the catalogue: a value that is cheap to copy.
///
/// The font service names the styles of a family "regular" (weight 400, upright), "italic" (weight
/// 400, italic), "700" (a weight, upright) or "700italic" (a weight, italic).
///
/// \code
/// for (const QString& variant : item.allVariants())
///     menu->addAction(GoogleFontItem::labelFromVariant(variant)); // "Bold weight (Italic)"
/// \endcode
///
/// Everything is read from the family's JSON object, of which only the keys "family", "variants"
/// and "lastModified" are used. A key that is missing or contains something else gives an empty
/// result. Nothing is logged. Thread: as for any Qt value class.
class ORVAUTILS_EXPORT GoogleFontItem
{
public:
    /// An empty item: no name, no variant, no weight.
    GoogleFontItem();
    /// The family that \a object describes.
    explicit GoogleFontItem(const QJsonObject& object);
    /// The same family as \a other, whose data it shares.
    GoogleFontItem(const GoogleFontItem& other);
    /// Becomes the same family as \a other, whose data it shares.
    GoogleFontItem& operator=(const GoogleFontItem& other);
    /// Releases the data, which other copies may still share.
    ~GoogleFontItem();

    /// The family's name as the catalogue spells it, for example "Open Sans".
    QString family() const;

    /// The name without its spaces: "Open Sans" gives "OpenSans".
    QString compressedFamily() const;

    /// The day of the family's last change, written "yyyy-MM-dd" in the catalogue; an invalid date
    /// when it cannot be read.
    QDate lastModified() const;

    /// The names of all variants, in the order of the catalogue. Elements that are not text are
    /// left out.
    QStringList allVariants() const;

    /// Those of "regular", "italic", "700" and "700italic" that the family has, in that order.
    QStringList commonVariants() const;

    /// The weights that the family has, ascending, each with its styles.
    ///
    /// A variant gives the weight that its name shows, in any case: the integer that is left when
    /// "italic" and "regular" are removed, and 400 for a name that contains "regular". Exactly
    /// "italic", in lower case, is 400, too. The styles of a weight are then determined by exact
    /// names: 400 is upright with "regular" and italic with "italic"; another weight is upright
    /// with its decimal text and italic with that text followed by "italic". So the variant "400"
    /// gives the weight 400, but neither style, and "Regular" does the same.
    ///
    /// The map depends only on the variants, which never change. It is built from them by every
    /// call (about a microsecond): building it for all 1365 families while the catalogue is loaded,
    /// of which a user looks at three, took as long as a third of parsing the catalogue.
    QMap<int, GoogleFontWeightDetail> availableWeights() const;

    /// The family's whole JSON object, with the keys that this class does not read.
    QJsonObject object() const;

    /// A \a weight in words, translated in the context "GoogleFontItem": "Normal weight" for 400,
    /// "Bold weight" for 700, "Lighter weight (300)" below 400 and "Bolder weight (500)" for any
    /// other weight above. " (Italic)", which is not translated, follows when \a italic is true.
    static QString labelWeight(int weight, bool italic);

    /// A variant in words: "700italic" gives "Bold weight (Italic)".
    ///
    /// White space around \a variant is ignored. "regular" and "italic", in any case, are the
    /// weight 400. Otherwise the variant is italic when it contains "italic" in any case; but only
    /// "italic" in lower case is removed before the rest is read as the weight. A rest that is not
    /// a number gives the weight 0, so that "700Italic" gives "Lighter weight (0) (Italic)".
    static QString labelFromVariant(const QString& variant);

private:
    QSharedDataPointer<OrvaUtilsPrivate::GoogleFontItemPrivate> d;
};

Q_DECLARE_TYPEINFO(GoogleFontItem, Q_MOVABLE_TYPE);

#endif // ORVAUTILS_GOOGLEFONTITEM_H
