// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ShopFile.h"

#include <CurrencyUtils.h>
#include <HTMLUtils.h>
#include <StringUtils.h>
#include <TaxeRatesUtils.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QLocale>
#include <QRegularExpression>
#include <QSet>

#include <cmath>

namespace {

const QLatin1String fileName("shop.json");

/// Above it a price in cents is no exact number any more, long before that no price.
const double highestPrice = 1e9;

bool isLanguage(const QString& code)
{
    static const QRegularExpression form(QStringLiteral("\\A[a-z]{2,3}(_[A-Z]{2})?\\z"));
    const QLocale locale(code);
    return form.match(code).hasMatch()
        && locale.name().section(QLatin1Char('_'), 0, 0) == code.section(QLatin1Char('_'), 0, 0);
}

/// The available weight that is nearest to \a wanted; the bolder one of two.
int nearestWeight(const QList<int>& weights, int wanted)
{
    int nearest = weights.isEmpty() ? wanted : weights.first();
    for (const int weight : weights) {
        if (qAbs(weight - wanted) <= qAbs(nearest - wanted))
            nearest = weight;
    }
    return nearest;
}

/// "Bol bleu d'été" gives "bol-bleu-d-ete"; what has no plain letters gives nothing.
QString slug(const QString& name)
{
    QString words = StringUtils::removeAccents(name).toLower();
    for (QChar& character : words) {
        const ushort unit = character.unicode();
        if (!(unit >= 'a' && unit <= 'z') && !(unit >= '0' && unit <= '9'))
            character = QLatin1Char(' ');
    }
    return words.simplified().replace(QLatin1Char(' '), QLatin1Char('-'));
}

} // namespace

/// One reading. Every check goes on after an error, so that all of them are told at once.
class ShopFile::Reader
{
public:
    Reader(ShopFile* file, const QVector<Photograph>& photographs)
        : mFile(file)
    {
        for (const Photograph& photograph : photographs) {
            // The file may have been written on a system that composes accents in another way.
            mPhotos.insert(photograph.name.normalized(QString::NormalizationForm_C),
                           photograph.name);
        }
    }

    bool read(const QJsonObject& object, Shop* shop)
    {
        // The languages first: all texts are checked against them.
        shop->languages = languages(object);
        shop->name = localText(mFile, object, QStringLiteral("name"), shop->languages, false);
        if (object.contains(QLatin1String("description")))
            shop->description =
                localText(mFile, object, QStringLiteral("description"), shop->languages, true);
        shop->currency = currency(object);
        shop->country = country(object);
        shop->font = font(object);
        shop->products = products(object, *shop);
        return !mFailed;
    }

private:
    void fail(WorkItem* owner, const QString& key, WorkItem::Failure failure, const QString& reason)
    {
        mFailed = true;
        auto* const value =
            new WorkItem(WorkItem::ShopValue, owner->name() + QLatin1String(", ") + key, owner);
        owner->ORVAUTILS_ADD_ERRORABLE_CHILD(*value);
        value->ORVAUTILS_SET_ERROR(value->failure(failure, reason));
    }

    /// The value of a key that must be there.
    bool find(WorkItem* owner, const QJsonObject& object, const QString& key, QJsonValue* value)
    {
        *value = object.value(key);
        if (value->isUndefined())
            fail(owner, key, Missing, ShopFile::tr("is missing"));
        return !value->isUndefined();
    }

    /// Tells of a control character in \a text. A NUL would end a text of the written files before
    /// its quote; the others have no place in a shop, but for the ends of lines and tabulators.
    bool isPrintable(WorkItem* owner, const QString& key, const QString& text)
    {
        for (const QChar character : text) {
            if (character.category() != QChar::Other_Control || character == QLatin1Char('\n')
                || character == QLatin1Char('\t'))
                continue;
            fail(owner, key, Unsuitable,
                 ShopFile::tr("holds a control character (U+%1)")
                     .arg(int(character.unicode()), 4, 16, QLatin1Char('0')));
            return false;
        }
        return true;
    }

    /// A text without blanks around it; empty, and told, where there is none.
    QString plainText(WorkItem* owner, const QJsonObject& object, const QString& key)
    {
        QJsonValue value;
        if (!find(owner, object, key, &value))
            return QString();
        QString text = value.toString().trimmed();
        if (!value.isString())
            fail(owner, key, Unsuitable, ShopFile::tr("is no text"));
        else if (text.isEmpty())
            fail(owner, key, Unsuitable, ShopFile::tr("is empty"));
        else if (!isPrintable(owner, key, text))
            text.clear();
        return text;
    }

    /// A text that is the same in all languages, or an object with one for each.
    LocalText localText(WorkItem* owner, const QJsonObject& object, const QString& key,
                        const QStringList& languages, bool mayBeEmpty)
    {
        LocalText texts;
        QJsonValue value;
        if (!find(owner, object, key, &value))
            return texts;
        if (!value.isString() && !value.isObject()) {
            fail(owner, key, Unsuitable, ShopFile::tr("is no text"));
            return texts;
        }
        for (const QString& language : languages) {
            const QJsonValue text = value.isString() ? value : value.toObject().value(language);
            texts.insert(language, text.toString().trimmed());
            if (!isPrintable(owner, key, texts.value(language)))
                return texts;
            if (text.isUndefined())
                fail(owner, key, Missing, ShopFile::tr("has no text in \"%1\"").arg(language));
            else if (!text.isString())
                fail(owner, key, Unsuitable, ShopFile::tr("is no text in \"%1\"").arg(language));
            else if (!mayBeEmpty && texts.value(language).isEmpty()) {
                fail(owner, key, Unsuitable, ShopFile::tr("is empty"));
                return texts;
            }
        }
        return texts;
    }

    QStringList languages(const QJsonObject& object)
    {
        const QString key = QStringLiteral("languages");
        QStringList codes;
        QJsonValue value;
        if (!find(mFile, object, key, &value))
            return codes;
        const QJsonArray array = value.toArray();
        if (array.isEmpty())
            fail(mFile, key, Unsuitable, ShopFile::tr("is no list of languages"));
        for (const QJsonValue& entry : array) {
            const QString code = entry.toString();
            if (!isLanguage(code))
                fail(mFile, key, Unsuitable,
                     ShopFile::tr("\"%1\" is no code of a language, such as \"fr\" or \"pt_BR\"")
                         .arg(code));
            else if (codes.contains(code))
                fail(mFile, key, Unsuitable, ShopFile::tr("\"%1\" stands there twice").arg(code));
            else
                codes.append(code);
        }
        return codes;
    }

    QString currency(const QJsonObject& object)
    {
        const QString key = QStringLiteral("currency");
        QString code = plainText(mFile, object, key);
        if (!code.isEmpty() && !CurrencyUtils::listIsoCodes().contains(code))
            fail(mFile, key, Unsuitable,
                 ShopFile::tr("\"%1\" is no code of a currency, such as \"EUR\"").arg(code));
        return code;
    }

    QString country(const QJsonObject& object)
    {
        const QString key = QStringLiteral("country");
        QString code = plainText(mFile, object, key).toUpper();
        mCountryIsKnown = TaxeRatesUtils::europeanTax(code, 0) >= 0;
        if (!code.isEmpty() && !mCountryIsKnown)
            fail(mFile, key, Unsuitable,
                 ShopFile::tr("\"%1\" is no country of the European Union whose tax rates are "
                              "known, such as \"FR\"")
                     .arg(code));
        return code;
    }

    ShopFont font(const QJsonObject& object)
    {
        const QString key = QStringLiteral("font");
        ShopFont font;
        const QString wanted = plainText(mFile, object, key);
        if (wanted.isEmpty())
            return font;
        font.family = mFile->mFonts.validName(wanted);
        GoogleFontItem item;
        if (font.family.isEmpty() || !mFile->mFonts.findItemByName(font.family, item)) {
            fail(mFile, key, Unsuitable,
                 ShopFile::tr("\"%1\" is no family of the catalogue of web fonts").arg(wanted));
            return font;
        }
        font.category = item.object().value(QLatin1String("category")).toString();
        const QMap<int, GoogleFontWeightDetail> available = item.availableWeights();
        QList<int> weights;
        for (auto it = available.begin(); it != available.end(); ++it) {
            if (it.value().hasNormal)
                weights.append(it.key());
        }
        font.italic = weights.isEmpty();
        if (font.italic)
            weights = available.keys();
        font.textWeight = nearestWeight(weights, 400);
        font.boldWeight = nearestWeight(weights, 700);
        return font;
    }

    QVector<ShopProduct> products(const QJsonObject& object, const Shop& shop)
    {
        const QString key = QStringLiteral("products");
        QVector<ShopProduct> products;
        QJsonValue value;
        if (!find(mFile, object, key, &value))
            return products;
        const QJsonArray array = value.toArray();
        if (array.isEmpty())
            fail(mFile, key, Unsuitable, ShopFile::tr("is no list of products"));
        for (const QJsonValue& entry : array)
            products.append(product(entry, products.size() + 1, shop));
        return products;
    }

    ShopProduct product(const QJsonValue& value, int number, const Shop& shop)
    {
        const QJsonObject object = value.toObject();
        auto* const item =
            new WorkItem(WorkItem::Product, productName(object, number, shop), mFile);
        mFile->ORVAUTILS_ADD_ERRORABLE_CHILD(*item);
        ShopProduct product;
        if (!value.isObject()) {
            mFailed = true;
            item->ORVAUTILS_SET_ERROR(item->failure(Unsuitable, ShopFile::tr("is no object")));
            return product;
        }
        product.name = localText(item, object, QStringLiteral("name"), shop.languages, false);
        product.description =
            localText(item, object, QStringLiteral("description"), shop.languages, true);
        product.photo = photo(item, object);
        product.taxCategory = taxCategory(item, object);
        product.net = netPrice(item, object);
        product.vatRate = vatRate(item, shop.country, product.taxCategory);
        product.gross = CurrencyUtils::roundPrice(product.net * (1 + product.vatRate / 100));
        product.vat = CurrencyUtils::roundPrice(product.gross - product.net);
        product.id = distinctId(product.name.value(shop.languages.value(0)));
        return product;
    }

    /// "shop.json, product 2 (Teapot)".
    static QString productName(const QJsonObject& object, int number, const Shop& shop)
    {
        const QJsonValue value = object.value(QLatin1String("name"));
        const QString name = value.isObject()
            ? value.toObject().value(shop.languages.value(0)).toString()
            : value.toString();
        if (name.isEmpty())
            return ShopFile::tr("%1, product %2").arg(fileName, QString::number(number));
        return ShopFile::tr("%1, product %2 (%3)").arg(fileName, QString::number(number), name);
    }

    QString photo(WorkItem* item, const QJsonObject& object)
    {
        const QString key = QStringLiteral("photo");
        const QString wanted = plainText(item, object, key);
        QString name = mPhotos.value(wanted.normalized(QString::NormalizationForm_C));
        if (!wanted.isEmpty() && name.isEmpty())
            fail(item, key, Missing, ShopFile::tr("there is no photograph \"%1\"").arg(wanted));
        return name;
    }

    int taxCategory(WorkItem* item, const QJsonObject& object)
    {
        const QString key = QStringLiteral("taxCategory");
        QJsonValue value;
        if (!find(item, object, key, &value))
            return -1;
        const int category = value.toInt(-1);
        if (TaxeRatesUtils::europeanTaxCategories().contains(category))
            return category;
        fail(item, key, Unsuitable, ShopFile::tr("is no tax category: a number from 0 to 4"));
        return -1;
    }

    double netPrice(WorkItem* item, const QJsonObject& object)
    {
        const QString key = QStringLiteral("netPrice");
        QJsonValue value;
        if (!find(item, object, key, &value))
            return 0;
        const double price = value.toDouble(-1);
        if (!value.isDouble())
            fail(item, key, Unsuitable, ShopFile::tr("is no number, such as 12.50"));
        else if (price < 0)
            fail(item, key, Unsuitable, ShopFile::tr("is below zero"));
        else if (!(price <= highestPrice))
            fail(item, key, Unsuitable, ShopFile::tr("is too high for a price"));
        else
            return CurrencyUtils::roundPrice(price);
        return 0;
    }

    double vatRate(WorkItem* item, const QString& country, int category)
    {
        if (!mCountryIsKnown || category < 0)
            return 0; // told already
        const double rate = TaxeRatesUtils::europeanTax(country, category);
        if (rate < 0)
            fail(item, QStringLiteral("taxCategory"), Unsuitable,
                 ShopFile::tr("%1 has no rate of the category %2")
                     .arg(country, QString::number(category)));
        return rate;
    }

    QString distinctId(const QString& name)
    {
        const QString wish =
            HTMLUtils::formatCompliantcssId(QLatin1String("product-") + slug(name));
        QString id = wish;
        // Products of one name go on where the one before has ended.
        int& number = mNumbers[wish];
        while (mIds.contains(id))
            id = wish + QStringLiteral("_%1").arg(++number);
        mIds.insert(id);
        return id;
    }

    ShopFile* mFile;
    QMap<QString, QString> mPhotos; ///< names by their composed form
    QSet<QString> mIds;
    QHash<QString, int> mNumbers; ///< the last one given behind each id
    bool mCountryIsKnown = false;
    bool mFailed = false;
};

ShopFile::ShopFile(const Project& project, QObject* parent)
    : WorkItem(ShopDescription, fileName, parent)
    , mPath(QDir(project.folder()).filePath(fileName))
    , mFonts(this)
{
    if (!exists())
        return;
    mFonts.load();
    TaxeRatesUtils::init();
    CurrencyUtils::init();
}

ShopFile::~ShopFile() = default;

bool ShopFile::exists() const
{
    const QFileInfo file(mPath);
    return file.exists() || file.isSymLink();
}

bool ShopFile::read(const QVector<Photograph>& photographs, Shop* shop)
{
    QFile file(mPath);
    if (!file.open(QIODevice::ReadOnly)) {
        ORVAUTILS_SET_ERROR(
            failure(Unreadable, tr("cannot be opened (%1)").arg(file.errorString())));
        return false;
    }
    QByteArray content = file.readAll();
    if (content.startsWith("\xef\xbb\xbf")) // some editors mark UTF-8 so
        content.remove(0, 3);
    QJsonParseError error = {};
    const QJsonDocument document = QJsonDocument::fromJson(content, &error);
    if (error.error != QJsonParseError::NoError) {
        const QByteArray before = content.left(error.offset);
        const int line = before.count('\n') + 1;
        ORVAUTILS_SET_ERROR(failure(
            Undecodable,
            tr("is no valid JSON (line %1: %2)").arg(QString::number(line), error.errorString())));
        return false;
    }
    if (!document.isObject()) {
        ORVAUTILS_SET_ERROR(failure(Unsuitable, tr("holds no object")));
        return false;
    }
    return Reader(this, photographs).read(document.object(), shop);
}
