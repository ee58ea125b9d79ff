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

/// A value of the file, and the item that its failures belong to. One that is not there needs no
/// further check: it need not be there, or that was told.
struct Field
{
    WorkItem* owner;
    QString key;
    QJsonValue value;

    bool isThere() const { return !value.isUndefined(); }
};

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
        mShop = shop;
        // The languages first: all texts are checked against them.
        shop->languages = languages(needed(mFile, object, "languages"));
        shop->name = localText(needed(mFile, object, "name"), false);
        shop->description = localText(at(mFile, object, "description"));
        shop->currency = currency(needed(mFile, object, "currency"));
        shop->country = country(needed(mFile, object, "country"));
        vatRates(at(mFile, object, "vatRates"));
        shop->font = font(object);
        shop->crop = yesOrNo(at(mFile, object, "crop"));
        looks(object);
        addresses(object);
        const Field products = needed(mFile, object, "products");
        const QJsonArray array = list(products, tr("is no list of products"));
        for (const QJsonValue& entry : array)
            shop->products.append(product(entry, int(shop->products.size()) + 1));
        return !mFailed;
    }

private:
    // Values

    static Field at(WorkItem* owner, const QJsonObject& object, const char* key)
    {
        const QString name = QLatin1String(key);
        return {owner, name, object.value(name)};
    }

    /// The value of a key that must be there.
    Field needed(WorkItem* owner, const QJsonObject& object, const char* key)
    {
        Field field = at(owner, object, key);
        if (!field.isThere())
            fail(field, Missing, tr("is missing"));
        return field;
    }

    void fail(const Field& field, WorkItem::Failure failure, const QString& reason)
    {
        mFailed = true;
        auto* const value =
            new WorkItem(WorkItem::ShopValue, field.owner->name() + QLatin1String(", ") + field.key,
                         field.owner);
        field.owner->ORVAUTILS_ADD_ERRORABLE_CHILD(*value);
        value->ORVAUTILS_SET_ERROR(value->failure(failure, reason));
    }

    void wrong(const Field& field, const QString& reason) { fail(field, Unsuitable, reason); }

    /// Tells of a control character in \a text. A NUL would end a text of the written files before
    /// its quote; the others have no place in a shop, but for the ends of lines and tabulators.
    bool isPrintable(const Field& field, const QString& text)
    {
        for (const QChar character : text) {
            if (character.category() != QChar::Other_Control || character == QLatin1Char('\n')
                || character == QLatin1Char('\t'))
                continue;
            wrong(field,
                  tr("holds a control character (U+%1)")
                      .arg(int(character.unicode()), 4, 16, QLatin1Char('0')));
            return false;
        }
        return true;
    }

    /// A text without blanks around it; empty where there is none.
    QString plainText(const Field& field)
    {
        QString text = field.value.toString().trimmed();
        if (!field.isThere())
            return QString();
        if (!field.value.isString())
            wrong(field, tr("is no text"));
        else if (text.isEmpty())
            wrong(field, tr("is empty"));
        else if (isPrintable(field, text))
            return text;
        return QString();
    }

    /// A text that is the same in all languages, or an object with one for each.
    LocalText localText(const Field& field, bool mayBeEmpty = true)
    {
        LocalText texts;
        const QJsonValue& value = field.value;
        if (field.isThere() && !value.isString() && !value.isObject())
            wrong(field, tr("is no text"));
        if (!value.isString() && !value.isObject())
            return texts;
        for (const QString& language : mShop->languages) {
            const QJsonValue text = value.isString() ? value : value.toObject().value(language);
            texts.insert(language, text.toString().trimmed());
            if (!isPrintable(field, texts.value(language)))
                return texts;
            if (text.isUndefined())
                fail(field, Missing, tr("has no text in \"%1\"").arg(language));
            else if (!text.isString())
                wrong(field, tr("is no text in \"%1\"").arg(language));
            else if (!mayBeEmpty && texts.value(language).isEmpty()) {
                wrong(field, tr("is empty"));
                return texts;
            }
        }
        return texts;
    }

    bool yesOrNo(const Field& field)
    {
        if (field.isThere() && !field.value.isBool())
            wrong(field, tr("is neither true nor false"));
        return field.value.toBool();
    }

    /// An object with something in it, or a list; \a reason is told of anything else.
    QJsonObject group(const Field& field)
    {
        QJsonObject object = field.value.toObject();
        if (field.isThere() && object.isEmpty())
            wrong(field, tr("is no object"));
        return object;
    }

    QJsonArray list(const Field& field, const QString& reason)
    {
        QJsonArray array = field.value.toArray();
        if (field.isThere() && array.isEmpty())
            wrong(field, reason);
        return array;
    }

    /// The place of a file below static/, which is the same in the project and in the site; empty
    /// where there is none.
    QString staticFile(const Field& field, const QString& place)
    {
        if (place.isEmpty())
            return place;
        const QString folder = QFileInfo(mProject.staticFolder()).canonicalFilePath();
        const QString file = QFileInfo(QDir(mProject.folder()), place).canonicalFilePath();
        if (place.startsWith(QLatin1String("static/")) && !folder.isEmpty()
            && file.startsWith(folder + QLatin1Char('/')) && QFileInfo(file).isFile())
            return QDir::cleanPath(place);
        fail(field, Missing, tr("there is no file \"%1\" below static/").arg(place));
        return QString();
    }

    QString webAddress(const Field& field, const QString& address)
    {
        if (!address.isEmpty() && !isWebAddress(address))
            wrong(field,
                  tr("\"%1\" is no address of the web, such as \"https://shop.example/\"")
                      .arg(address));
        return address;
    }

    /// Where to order: an address of e-mail or of the web.
    QString order(const Field& field)
    {
        QString text = plainText(field);
        QString address = text;
        address.remove(QLatin1String("{id}")).remove(QLatin1String("{name}"));
        if (!text.isEmpty() && !isEmail(text) && !isWebAddress(address))
            wrong(field, tr("\"%1\" is no address of e-mail or of the web").arg(text));
        return text;
    }

    // The shop

    QStringList languages(const Field& field)
    {
        QStringList codes;
        const QJsonArray array = list(field, tr("is no list of languages"));
        for (const QJsonValue& entry : array) {
            const QString code = entry.toString();
            if (!isLanguage(code))
                wrong(field,
                      tr("\"%1\" is no code of a language, such as \"fr\" or \"pt_BR\"").arg(code));
            else if (codes.contains(code))
                wrong(field, tr("\"%1\" stands there twice").arg(code));
            else
                codes.append(code);
        }
        return codes;
    }

    QString currency(const Field& field)
    {
        QString code = plainText(field);
        if (!code.isEmpty()
            && (!CurrencyUtils::listIsoCodes().contains(code)
                || CurrencyUtils::minorUnits(code) < 0))
            wrong(field, tr("\"%1\" is no code of a currency, such as \"EUR\"").arg(code));
        return code;
    }

    QString country(const Field& field)
    {
        QString code = plainText(field).toUpper();
        mCountryIsKnown = TaxeRatesUtils::europeanTax(code, 0) >= 0;
        if (!code.isEmpty() && !mCountryIsKnown)
            wrong(field,
                  tr("\"%1\" is no country of the European Union whose tax rates are "
                     "known, such as \"FR\"")
                      .arg(code));
        return code;
    }

    /// The rates of the country, with those that the file has instead.
    void vatRates(const Field& field)
    {
        const QList<int> categories = TaxeRatesUtils::europeanTaxCategories();
        for (const int category : categories) {
            const double rate = TaxeRatesUtils::europeanTax(mShop->country, category);
            if (rate >= 0)
                mShop->vatRates.insert(category, rate);
        }
        mShop->vatDate = TaxeRatesUtils::lastUpdated();
        if (!field.isThere())
            return;
        QJsonObject rates = field.value.toObject();
        mShop->vatDate =
            QDate::fromString(rates.take(QStringLiteral("date")).toString(), Qt::ISODate);
        if (!mShop->vatDate.isValid())
            wrong(field, tr("has no \"date\" of the rates, such as \"2026-01-01\""));
        for (auto it = rates.constBegin(); it != rates.constEnd(); ++it) {
            const double rate = it.value().toDouble(-1);
            bool isNumber = false;
            const int category = it.key().toInt(&isNumber);
            if (!isNumber || !categories.contains(category))
                wrong(field, tr("\"%1\" is no tax category: a number from 0 to 4").arg(it.key()));
            else if (rate < 0 || rate > 100)
                wrong(field, tr("the rate of \"%1\" is no number from 0 to 100").arg(it.key()));
            else
                mShop->vatRates.insert(category, rate);
        }
    }

    /// What the pages look like, beside their font.
    void looks(const QJsonObject& object)
    {
        const Field accent = at(mFile, object, "accent");
        const QString color = plainText(accent);
        mShop->accent = ColorUtils::colorFromCss(color);
        if (!color.isEmpty() && (!mShop->accent.isValid() || mShop->accent.alpha() != 255))
            wrong(accent, tr("\"%1\" is no opaque colour of CSS, such as \"#9c4a27\"").arg(color));
        const Field icon = at(mFile, object, "favicon");
        mShop->favicon = staticFile(icon, plainText(icon));
        const Field logo = at(mFile, object, "logo");
        mShop->logo = staticFile(logo, plainText(logo));
        if (mShop->logo.isEmpty())
            return;
        mShop->logoSize = ImageUtils::imageSize(mProject.folder() + QLatin1Char('/') + mShop->logo);
        if (mShop->logoSize.isEmpty())
            wrong(logo, tr("is no picture that can be read"));
    }

    /// Where the shop and its owner are found.
    void addresses(const QJsonObject& object)
    {
        const Field site = at(mFile, object, "url");
        mShop->url = webAddress(site, plainText(site));
        if (mShop->url.contains(QLatin1Char('?')) || mShop->url.contains(QLatin1Char('#')))
            wrong(site, tr("holds \"?\" or \"#\""));
        if (!mShop->url.isEmpty() && !mShop->url.endsWith(QLatin1Char('/')))
            mShop->url += QLatin1Char('/');
        mShop->order = order(at(mFile, object, "order"));

        const Field imprint = at(mFile, object, "imprint");
        mShop->imprint = localText(imprint);
        QStringList imprints = mShop->imprint.values();
        imprints.removeDuplicates(); // told once
        for (int i = 0; i < imprints.size(); ++i) {
            if (imprints.at(i).startsWith(QLatin1String("static/")))
                staticFile(imprint, imprints.at(i));
            else if (Shop::isWebAddress(imprints.at(i)))
                webAddress(imprint, imprints.at(i));
        }

        const QJsonObject contact = group(at(mFile, object, "contact"));
        mShop->address = localText(at(mFile, contact, "address"));
        mShop->phone = plainText(at(mFile, contact, "phone"));
        const Field email = at(mFile, contact, "email");
        mShop->email = plainText(email);
        if (!mShop->email.isEmpty() && !isEmail(mShop->email))
            wrong(email, tr("\"%1\" is no address of e-mail").arg(mShop->email));
    }

    ShopFont font(const QJsonObject& object)
    {
        const Field field = at(mFile, object, "font");
        ShopFont font;
        const QString wanted = plainText(field);
        if (wanted.isEmpty())
            return font;
        font.fromService = yesOrNo(at(mFile, object, "fontService"));
        font.files = fontFiles(at(mFile, object, "fontFiles"));
        font.family = mFile->mFonts.validName(wanted);
        GoogleFontItem item;
        if (font.family.isEmpty() || !mFile->mFonts.findItemByName(font.family, item)) {
            if (!font.files.isEmpty() && !font.fromService)
                font.family = wanted; // the files are all that it takes
            else
                wrong(field, tr("\"%1\" is no family of the catalogue of web fonts").arg(wanted));
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

    QMap<int, QString> fontFiles(const Field& field)
    {
        QMap<int, QString> files;
        const QJsonObject wanted = group(field);
        for (auto it = wanted.begin(); it != wanted.end(); ++it) {
            const int weight = it.key().toInt();
            if (weight < 100 || weight > 900)
                wrong(field, tr("\"%1\" is no weight of a font, such as \"400\"").arg(it.key()));
            else
                files.insert(weight, staticFile(field, plainText({mFile, it.key(), it.value()})));
        }
        return files;
    }

    // Its products

    ShopProduct product(const QJsonValue& value, int number)
    {
        const QJsonObject object = value.toObject();
        auto* const item = new WorkItem(WorkItem::Product, productName(object, number), mFile);
        mFile->ORVAUTILS_ADD_ERRORABLE_CHILD(*item);
        ShopProduct product;
        if (!value.isObject()) {
            mFailed = true;
            item->ORVAUTILS_SET_ERROR(item->failure(Unsuitable, tr("is no object")));
            return product;
        }
        product.name = localText(needed(item, object, "name"), false);
        product.description = localText(needed(item, object, "description"));
        product.photos = photos(item, object);
        product.order = order(at(item, object, "order"));
        const Field category = needed(item, object, "taxCategory");
        product.taxCategory = taxCategory(category);
        const double net = netPrice(needed(item, object, "netPrice"));
        product.vatRate = vatRate(category, product.taxCategory);
        product.price = CurrencyUtils::vatOf(net, CurrencyUtils::Net, qMax(0.0, product.vatRate),
                                             mShop->currency);
        product.id = distinctId(product.name.value(mShop->languages.value(0)));
        return product;
    }

    /// "shop.json, product 2 (Teapot)".
    QString productName(const QJsonObject& object, int number) const
    {
        const QJsonValue value = object.value(QLatin1String("name"));
        const QString name = value.isObject()
            ? value.toObject().value(mShop->languages.value(0)).toString()
            : value.toString();
        if (name.isEmpty())
            return tr("%1, product %2").arg(fileName, QString::number(number));
        return tr("%1, product %2 (%3)").arg(fileName, QString::number(number), name);
    }

    /// The pictures of a product: one, or several, of which the first stands for all.
    QStringList photos(WorkItem* item, const QJsonObject& object)
    {
        const Field several = at(item, object, "photos");
        if (!several.isThere())
            return {photo(needed(item, object, "photo"))};
        QStringList names;
        const QJsonArray array = list(several, tr("is no list of photographs"));
        for (const QJsonValue& value : array)
            names.append(photo({item, several.key, value}));
        return names;
    }

    QString photo(const Field& field)
    {
        const QString wanted = plainText(field);
        QString name = mPhotos.value(wanted.normalized(QString::NormalizationForm_C));
        if (!wanted.isEmpty() && name.isEmpty())
            fail(field, Missing, tr("there is no photograph \"%1\"").arg(wanted));
        return name;
    }

    int taxCategory(const Field& field)
    {
        const int category = field.value.toInt(-1);
        if (TaxeRatesUtils::europeanTaxCategories().contains(category))
            return category;
        if (field.isThere())
            wrong(field, tr("is no tax category: a number from 0 to 4"));
        return -1;
    }

    double netPrice(const Field& field)
    {
        const double price = field.value.toDouble(-1);
        if (!field.isThere())
            return 0;
        if (!field.value.isDouble())
            wrong(field, tr("is no number, such as 12.50"));
        else if (price < 0)
            wrong(field, tr("is below zero"));
        else if (!(price <= highestPrice))
            wrong(field, tr("is too high for a price"));
        else
            return price;
        return 0;
    }

    double vatRate(const Field& field, int category)
    {
        if (!mCountryIsKnown || category < 0)
            return 0; // told already
        const double rate = mShop->vatRates.value(category, -1);
        if (rate < 0)
            wrong(field,
                  tr("%1 has no rate of the category %2")
                      .arg(mShop->country, QString::number(category)));
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
    Shop* mShop = nullptr;
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
