// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ShopFile.h"

#include <ColorUtils.h>
#include <CurrencyUtils.h>
#include <HTMLUtils.h>
#include <ImageUtils.h>
#include <StringUtils.h>
#include <TaxeRatesUtils.h>

#include <QCoreApplication>
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
#include <QUrl>

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

bool isEmail(const QString& text)
{
    static const QRegularExpression form(QStringLiteral("\\A[\\w.+-]+@[\\w-]+(\\.[\\w-]+)+\\z"));
    return form.match(text).hasMatch();
}

/// An address of the web; nothing else, such as a script, becomes a link of a page.
bool isWebAddress(const QString& text)
{
    const QUrl url(text, QUrl::StrictMode);
    return url.isValid() && !url.host().isEmpty() && url.userInfo().isEmpty()
        && (url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http"));
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
    Q_DECLARE_TR_FUNCTIONS(ShopFile)

public:
    Reader(ShopFile* file, const Project& project, const QVector<Photograph>& photographs)
        : mFile(file)
        , mProject(project)
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
        vatRates(object, shop);
        if (object.contains(QLatin1String("font")))
            shop->font = font(object);
        shop->crop = yesOrNo(object, QStringLiteral("crop"));
        looks(object, shop);
        addresses(object, shop);
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

    void wrong(WorkItem* owner, const QString& key, const QString& reason)
    {
        fail(owner, key, Unsuitable, reason);
    }

    /// The value of a key that must be there.
    bool find(WorkItem* owner, const QJsonObject& object, const QString& key, QJsonValue* value)
    {
        *value = object.value(key);
        if (value->isUndefined())
            fail(owner, key, Missing, tr("is missing"));
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
            wrong(owner, key,
                  tr("holds a control character (U+%1)")
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
            wrong(owner, key, tr("is no text"));
        else if (text.isEmpty())
            wrong(owner, key, tr("is empty"));
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
            wrong(owner, key, tr("is no text"));
            return texts;
        }
        for (const QString& language : languages) {
            const QJsonValue text = value.isString() ? value : value.toObject().value(language);
            texts.insert(language, text.toString().trimmed());
            if (!isPrintable(owner, key, texts.value(language)))
                return texts;
            if (text.isUndefined())
                fail(owner, key, Missing, tr("has no text in \"%1\"").arg(language));
            else if (!text.isString())
                wrong(owner, key, tr("is no text in \"%1\"").arg(language));
            else if (!mayBeEmpty && texts.value(language).isEmpty()) {
                wrong(owner, key, tr("is empty"));
                return texts;
            }
        }
        return texts;
    }

    /// The text of a key that need not be there; empty without it.
    QString optionalText(WorkItem* owner, const QJsonObject& object, const QString& key)
    {
        return object.contains(key) ? plainText(owner, object, key) : QString();
    }

    LocalText optionalTexts(const QJsonObject& object, const QString& key, const QStringList& codes)
    {
        return object.contains(key) ? localText(mFile, object, key, codes, true) : LocalText();
    }

    bool yesOrNo(const QJsonObject& object, const QString& key)
    {
        const QJsonValue value = object.value(key);
        if (!value.isUndefined() && !value.isBool())
            wrong(mFile, key, tr("is neither true nor false"));
        return value.toBool();
    }

    /// The place of a file below static/, which is the same in the project and in the site; empty,
    /// and told, where there is none.
    QString staticFile(const QString& key, const QString& place)
    {
        if (place.isEmpty())
            return place;
        const QString folder = QFileInfo(mProject.staticFolder()).canonicalFilePath();
        const QString file = QFileInfo(QDir(mProject.folder()), place).canonicalFilePath();
        if (place.startsWith(QLatin1String("static/")) && !folder.isEmpty()
            && file.startsWith(folder + QLatin1Char('/')) && QFileInfo(file).isFile())
            return QDir::cleanPath(place);
        fail(mFile, key, Missing, tr("there is no file \"%1\" below static/").arg(place));
        return QString();
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
            wrong(mFile, key, tr("is no list of languages"));
        for (const QJsonValue& entry : array) {
            const QString code = entry.toString();
            if (!isLanguage(code))
                wrong(mFile, key,
                      tr("\"%1\" is no code of a language, such as \"fr\" or \"pt_BR\"").arg(code));
            else if (codes.contains(code))
                wrong(mFile, key, tr("\"%1\" stands there twice").arg(code));
            else
                codes.append(code);
        }
        return codes;
    }

    QString currency(const QJsonObject& object)
    {
        const QString key = QStringLiteral("currency");
        QString code = plainText(mFile, object, key);
        if (!code.isEmpty()
            && (!CurrencyUtils::listIsoCodes().contains(code)
                || CurrencyUtils::minorUnits(code) < 0))
            wrong(mFile, key, tr("\"%1\" is no code of a currency, such as \"EUR\"").arg(code));
        return code;
    }

    QString country(const QJsonObject& object)
    {
        const QString key = QStringLiteral("country");
        QString code = plainText(mFile, object, key).toUpper();
        mCountryIsKnown = TaxeRatesUtils::europeanTax(code, 0) >= 0;
        if (!code.isEmpty() && !mCountryIsKnown)
            wrong(mFile, key,
                  tr("\"%1\" is no country of the European Union whose tax rates are "
                     "known, such as \"FR\"")
                      .arg(code));
        return code;
    }

    /// The rates of the country, with those that the file has instead.
    void vatRates(const QJsonObject& object, Shop* shop)
    {
        const QList<int> categories = TaxeRatesUtils::europeanTaxCategories();
        for (const int category : categories) {
            const double rate = TaxeRatesUtils::europeanTax(shop->country, category);
            if (rate >= 0)
                shop->vatRates.insert(category, rate);
        }
        shop->vatDate = TaxeRatesUtils::lastUpdated();
        const QString key = QStringLiteral("vatRates");
        if (!object.contains(key))
            return;
        QJsonObject rates = object.value(key).toObject();
        shop->vatDate =
            QDate::fromString(rates.take(QStringLiteral("date")).toString(), Qt::ISODate);
        if (!shop->vatDate.isValid())
            wrong(mFile, key, tr("has no \"date\" of the rates, such as \"2026-01-01\""));
        for (auto it = rates.constBegin(); it != rates.constEnd(); ++it) {
            const double rate = it.value().toDouble(-1);
            bool isNumber = false;
            const int category = it.key().toInt(&isNumber);
            if (!isNumber || !categories.contains(category))
                wrong(mFile, key,
                      tr("\"%1\" is no tax category: a number from 0 to 4").arg(it.key()));
            else if (rate < 0 || rate > 100)
                wrong(mFile, key,
                      tr("the rate of \"%1\" is no number from 0 to 100").arg(it.key()));
            else
                shop->vatRates.insert(category, rate);
        }
    }

    /// What the pages look like, beside their font.
    void looks(const QJsonObject& object, Shop* shop)
    {
        const QString accent = QStringLiteral("accent");
        const QString color = optionalText(mFile, object, accent);
        shop->accent = ColorUtils::colorFromCss(color);
        if (!color.isEmpty() && (!shop->accent.isValid() || shop->accent.alpha() != 255))
            wrong(mFile, accent,
                  tr("\"%1\" is no opaque colour of CSS, such as \"#9c4a27\"").arg(color));
        const QString icon = QStringLiteral("favicon");
        shop->favicon = staticFile(icon, optionalText(mFile, object, icon));
        const QString logo = QStringLiteral("logo");
        shop->logo = staticFile(logo, optionalText(mFile, object, logo));
        if (!shop->logo.isEmpty())
            shop->logoSize =
                ImageUtils::imageSize(mProject.folder() + QLatin1Char('/') + shop->logo);
        if (!shop->logo.isEmpty() && shop->logoSize.isEmpty())
            wrong(mFile, logo, tr("is no picture that can be read"));
    }

    /// Where the shop and its owner are found.
    void addresses(const QJsonObject& object, Shop* shop)
    {
        shop->url =
            webAddress(QStringLiteral("url"), optionalText(mFile, object, QStringLiteral("url")));
        if (shop->url.contains(QLatin1Char('?')) || shop->url.contains(QLatin1Char('#')))
            wrong(mFile, QStringLiteral("url"), tr("holds \"?\" or \"#\""));
        if (!shop->url.isEmpty() && !shop->url.endsWith(QLatin1Char('/')))
            shop->url += QLatin1Char('/');
        shop->order = order(mFile, object);

        const QString imprint = QStringLiteral("imprint");
        shop->imprint = optionalTexts(object, imprint, shop->languages);
        QStringList imprints = shop->imprint.values();
        imprints.removeDuplicates(); // told once
        for (int i = 0; i < imprints.size(); ++i) {
            if (imprints.at(i).startsWith(QLatin1String("static/")))
                staticFile(imprint, imprints.at(i));
            else if (imprints.at(i).contains(QRegularExpression(QStringLiteral("\\Ahttps?://"))))
                webAddress(imprint, imprints.at(i));
        }

        const QString key = QStringLiteral("contact");
        const QJsonObject contact = object.value(key).toObject();
        if (object.contains(key) && contact.isEmpty())
            wrong(mFile, key, tr("is no object"));
        shop->address = optionalTexts(contact, QStringLiteral("address"), shop->languages);
        shop->phone = optionalText(mFile, contact, QStringLiteral("phone"));
        const QString email = QStringLiteral("email");
        shop->email = optionalText(mFile, contact, email);
        if (!shop->email.isEmpty() && !isEmail(shop->email))
            wrong(mFile, email, tr("\"%1\" is no address of e-mail").arg(shop->email));
    }

    QString webAddress(const QString& key, const QString& address)
    {
        if (!address.isEmpty() && !isWebAddress(address))
            wrong(mFile, key,
                  tr("\"%1\" is no address of the web, such as \"https://shop.example/\"")
                      .arg(address));
        return address;
    }

    /// Where to order: an address of e-mail or of the web.
    QString order(WorkItem* owner, const QJsonObject& object)
    {
        const QString key = QStringLiteral("order");
        QString text = optionalText(owner, object, key);
        QString address = text;
        address.remove(QLatin1String("{id}")).remove(QLatin1String("{name}"));
        if (!text.isEmpty() && !isEmail(text) && !isWebAddress(address))
            wrong(owner, key, tr("\"%1\" is no address of e-mail or of the web").arg(text));
        return text;
    }

    ShopFont font(const QJsonObject& object)
    {
        const QString key = QStringLiteral("font");
        ShopFont font;
        const QString wanted = plainText(mFile, object, key);
        if (wanted.isEmpty())
            return font;
        font.fromService = yesOrNo(object, QStringLiteral("fontService"));
        font.files = fontFiles(object);
        font.family = mFile->mFonts.validName(wanted);
        GoogleFontItem item;
        if (font.family.isEmpty() || !mFile->mFonts.findItemByName(font.family, item)) {
            if (!font.files.isEmpty() && !font.fromService) {
                font.family = wanted; // the files are all that it takes
                return font;
            }
            wrong(mFile, key, tr("\"%1\" is no family of the catalogue of web fonts").arg(wanted));
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

    QMap<int, QString> fontFiles(const QJsonObject& object)
    {
        const QString key = QStringLiteral("fontFiles");
        QMap<int, QString> files;
        const QJsonObject wanted = object.value(key).toObject();
        if (object.contains(key) && wanted.isEmpty())
            wrong(mFile, key, tr("is no object"));
        for (auto it = wanted.begin(); it != wanted.end(); ++it) {
            const int weight = it.key().toInt();
            if (weight < 100 || weight > 900)
                wrong(mFile, key,
                      tr("\"%1\" is no weight of a font, such as \"400\"").arg(it.key()));
            else
                files.insert(weight, staticFile(key, plainText(mFile, wanted, it.key())));
        }
        return files;
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
            wrong(mFile, key, tr("is no list of products"));
        for (const QJsonValue& entry : array)
            products.append(product(entry, int(products.size()) + 1, shop));
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
            item->ORVAUTILS_SET_ERROR(item->failure(Unsuitable, tr("is no object")));
            return product;
        }
        product.name = localText(item, object, QStringLiteral("name"), shop.languages, false);
        product.description =
            localText(item, object, QStringLiteral("description"), shop.languages, true);
        product.photos = photos(item, object);
        product.order = order(item, object);
        product.taxCategory = taxCategory(item, object);
        const double net = netPrice(item, object);
        product.vatRate = vatRate(item, shop, product.taxCategory);
        product.price = CurrencyUtils::vatOf(net, CurrencyUtils::Net, qMax(0.0, product.vatRate),
                                             shop.currency);
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
            return tr("%1, product %2").arg(fileName, QString::number(number));
        return tr("%1, product %2 (%3)").arg(fileName, QString::number(number), name);
    }

    /// The pictures of a product: one, or several, of which the first stands for all.
    QStringList photos(WorkItem* item, const QJsonObject& object)
    {
        const QString key = QStringLiteral("photos");
        if (!object.contains(key)) {
            const QString one = QStringLiteral("photo");
            return {photo(item, one, plainText(item, object, one))};
        }
        QStringList names;
        const QJsonArray array = object.value(key).toArray();
        if (array.isEmpty())
            wrong(item, key, tr("is no list of photographs"));
        for (const QJsonValue& value : array)
            names.append(photo(item, key, plainText(item, QJsonObject{{key, value}}, key)));
        return names;
    }

    QString photo(WorkItem* item, const QString& key, const QString& wanted)
    {
        QString name = mPhotos.value(wanted.normalized(QString::NormalizationForm_C));
        if (!wanted.isEmpty() && name.isEmpty())
            fail(item, key, Missing, tr("there is no photograph \"%1\"").arg(wanted));
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
        wrong(item, key, tr("is no tax category: a number from 0 to 4"));
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
            wrong(item, key, tr("is no number, such as 12.50"));
        else if (price < 0)
            wrong(item, key, tr("is below zero"));
        else if (!(price <= highestPrice))
            wrong(item, key, tr("is too high for a price"));
        else
            return price;
        return 0;
    }

    double vatRate(WorkItem* item, const Shop& shop, int category)
    {
        if (!mCountryIsKnown || category < 0)
            return 0; // told already
        const double rate = shop.vatRates.value(category, -1);
        if (rate < 0)
            wrong(item, QStringLiteral("taxCategory"),
                  tr("%1 has no rate of the category %2")
                      .arg(shop.country, QString::number(category)));
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
    const Project& mProject;
    QMap<QString, QString> mPhotos; ///< names by their composed form
    QSet<QString> mIds;
    QHash<QString, int> mNumbers; ///< the last one given behind each id
    bool mCountryIsKnown = false;
    bool mFailed = false;
};

ShopFile::ShopFile(const Project& project, QObject* parent)
    : WorkItem(ShopDescription, fileName, parent)
    , mProject(project)
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
    const QFileInfo file(mProject.shopFile());
    return file.exists() || file.isSymLink();
}

bool ShopFile::read(const QVector<Photograph>& photographs, Shop* shop)
{
    QFile file(mProject.shopFile());
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
        const int line = int(before.count('\n') + 1);
        ORVAUTILS_SET_ERROR(failure(
            Undecodable,
            tr("is no valid JSON (line %1: %2)").arg(QString::number(line), error.errorString())));
        return false;
    }
    if (!document.isObject()) {
        ORVAUTILS_SET_ERROR(failure(Unsuitable, tr("holds no object")));
        return false;
    }
    return Reader(this, mProject, photographs).read(document.object(), shop);
}
