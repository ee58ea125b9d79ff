// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "GoogleFontItem.h"

#include <QCoreApplication>
#include <QJsonArray>

using namespace OrvaUtilsPrivate;

class OrvaUtilsPrivate::GoogleFontItemPrivate : public QSharedData
{
public:
    explicit GoogleFontItemPrivate(const QJsonObject& familyObject = QJsonObject())
        : object(familyObject)
    { }

    const QJsonObject object;
};

namespace {

const int normalWeight = 400;
const int boldWeight = 700;

/// The number that \a count ASCII digits of \a text from \a start form; -1 if one is not a digit.
int decimalAt(const QString& text, int start, int count)
{
    int number = 0;
    for (int i = start; i < start + count; ++i) {
        const ushort unit = text.at(i).unicode();
        if (unit < '0' || unit > '9')
            return -1;
        number = 10 * number + (unit - '0');
    }
    return number;
}

/// Parses \a text with the pattern "yyyy-MM-dd". By hand, because QDate::fromString() asks the
/// system for its time zone for every date, which took longer than parsing the whole catalogue.
QDate dateOf(const QString& text)
{
    if (text.size() != 10 || text.at(4) != QLatin1Char('-') || text.at(7) != QLatin1Char('-'))
        return QDate();
    const int year = decimalAt(text, 0, 4);
    const int month = decimalAt(text, 5, 2);
    const int day = decimalAt(text, 8, 2);
    return year < 0 || month < 0 || day < 0 ? QDate() : QDate(year, month, day);
}

} // namespace

GoogleFontItem::GoogleFontItem()
    : d(new GoogleFontItemPrivate)
{ }

GoogleFontItem::GoogleFontItem(const QJsonObject& object)
    : d(new GoogleFontItemPrivate(object))
{ }

GoogleFontItem::GoogleFontItem(const GoogleFontItem& other) = default;

GoogleFontItem& GoogleFontItem::operator=(const GoogleFontItem& other) = default;

GoogleFontItem::~GoogleFontItem() = default;

QString GoogleFontItem::family() const
{
    return d->object.value(QLatin1String("family")).toString();
}

QString GoogleFontItem::compressedFamily() const
{
    return family().remove(QLatin1Char(' '));
}

QDate GoogleFontItem::lastModified() const
{
    return dateOf(d->object.value(QLatin1String("lastModified")).toString());
}

QStringList GoogleFontItem::allVariants() const
{
    const QJsonArray array = d->object.value(QLatin1String("variants")).toArray();
    QStringList variants;
    variants.reserve(array.size());
    for (const QJsonValue& variant : array)
        if (variant.isString())
            variants += variant.toString();
    return variants;
}

QStringList GoogleFontItem::commonVariants() const
{
    const QStringList variants = allVariants();
    QStringList common;
    for (const QString& variant : {QStringLiteral("regular"), QStringLiteral("italic"),
                                   QStringLiteral("700"), QStringLiteral("700italic")})
        if (variants.contains(variant))
            common += variant;
    return common;
}

QMap<int, GoogleFontWeightDetail> GoogleFontItem::availableWeights() const
{
    const QLatin1String regular("regular");
    const QLatin1String italic("italic");
    const QStringList variants = allVariants();

    QMap<int, GoogleFontWeightDetail> weights;
    for (const QString& variant : variants) {
        QString number = variant.toLower();
        if (number.contains(regular) || variant == italic)
            weights.insert(normalWeight, GoogleFontWeightDetail());
        number.remove(italic).remove(regular);
        bool isNumber = false;
        const int weight = number.toInt(&isNumber);
        if (isNumber)
            weights.insert(weight, GoogleFontWeightDetail());
    }
    for (auto weight = weights.begin(); weight != weights.end(); ++weight) {
        const bool normal = weight.key() == normalWeight;
        const QString upright = normal ? QString(regular) : QString::number(weight.key());
        weight->hasNormal = variants.contains(upright);
        weight->hasItalic = variants.contains(normal ? QString(italic) : upright + italic);
    }
    return weights;
}

QJsonObject GoogleFontItem::object() const
{
    return d->object;
}

QString GoogleFontItem::labelWeight(int weight, bool italic)
{
    QString label;
    if (weight == normalWeight)
        label = QCoreApplication::translate("GoogleFontItem", "Normal weight");
    else if (weight == boldWeight)
        label = QCoreApplication::translate("GoogleFontItem", "Bold weight");
    else if (weight < normalWeight)
        label = QCoreApplication::translate("GoogleFontItem", "Lighter weight (%1)").arg(weight);
    else
        label = QCoreApplication::translate("GoogleFontItem", "Bolder weight (%1)").arg(weight);
    return italic ? label + QStringLiteral(" (Italic)") : label;
}

QString GoogleFontItem::labelFromVariant(const QString& variant)
{
    const QString name = variant.trimmed();
    if (name.compare(QLatin1String("regular"), Qt::CaseInsensitive) == 0)
        return labelWeight(normalWeight, false);
    if (name.compare(QLatin1String("italic"), Qt::CaseInsensitive) == 0)
        return labelWeight(normalWeight, true);
    const bool italic = name.contains(QLatin1String("italic"), Qt::CaseInsensitive);
    const QString weight = QString(name).remove(QLatin1String("italic"));
    return labelWeight(weight.toInt(), italic);
}
