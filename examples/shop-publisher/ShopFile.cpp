// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ShopFile.h"

#include <ColorUtils.h>
#include <CurrencyUtils.h>
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

/// A web address; nothing else, such as a script, becomes a link of a page.
bool isWebAddress(const QString& text)
{
    const QUrl url(text, QUrl::StrictMode);
    return url.isValid() && !url.host().isEmpty() && url.userInfo().isEmpty()
        && (url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http"));
}

/// The available weight nearest to \a wanted; the bolder of two equally near ones.
int nearestWeight(const QList<int>& weights, int wanted)
{
    int nearest = weights.isEmpty() ? wanted : weights.first();
    for (const int weight : weights) {
        if (qAbs(weight - wanted) <= qAbs(nearest - wanted))
            nearest = weight;
    }
    return nearest;
}

/// "Bol bleu d'été" gives "product_bol_bleu_d_ete"; what has no plain letters gives "product_".
QString idOf(const QString& name)
{
    static const QRegularExpression others(QStringLiteral("[^a-z0-9]+"));
    QString words = StringUtils::removeAccents(name).toLower();
    words = words.replace(others, QStringLiteral(" ")).trimmed();
    return QLatin1String("product_") + words.replace(QLatin1Char(' '), QLatin1Char('_'));
}

/// The file or a product of it: its values, and the item that their failures belong to.
struct Part
{
    WorkItem* item;
    QJsonObject values;
};

/// A value of the file, and the item that its failures belong to. A missing one needs no further
/// check: it is optional, or its absence was reported.
struct Field
{
    WorkItem* owner;
    QString key;
    QJsonValue value;

    bool isThere() const { return !value.isUndefined(); }
};

} // namespace

/// Reads the file once. Checks continue after an error, so that all errors are reported at once.
class ShopFile::Reader
{
    Q_DECLARE_TR_FUNCTIONS(ShopFile)

public:
    Reader(ShopFile* file, const Project& project, const QVector<Photograph>& photographs)
        : mFile(file)
        , mProject(project)
    {
        for (const Photograph& photograph : photographs) {
            // The file may have been written on a system that composes accents differently.
            mPhotos.insert(photograph.name.normalized(QString::NormalizationForm_C),
                           photograph.name);
        }
    }

    bool read(const QJsonObject& object, Shop* shop)
    {
        mShop = shop;
        const Part file{mFile, object};
        // The languages first: all texts are checked against them.
        shop->languages = languages(needed(file, "languages"));
        shop->name = localText(needed(file, "name"), false);
        shop->description = localText(at(file, "description"));
        const Field currency = needed(file, "currency");
        shop->currency = text(currency);
        expect(currency, shop->currency,
               CurrencyUtils::minorUnits(shop->currency) >= 0
                   && CurrencyUtils::listIsoCodes().contains(shop->currency),
               tr("\"%1\" is no code of a currency, such as \"EUR\""));
        const Field country = needed(file, "country");
        shop->country = text(country).toUpper();
        mCountryIsKnown = TaxeRatesUtils::europeanTax(shop->country, 0) >= 0;
        expect(country, shop->country, mCountryIsKnown,
               tr("\"%1\" is no country of the European Union whose tax rates are "
                  "known, such as \"FR\""));
        vatRates(at(file, "vatRates"));
        shop->font = font(file);
        shop->crop = yesOrNo(at(file, "crop"));
        looks(file);
        addresses(file);
        const QJsonArray products = list(needed(file, "products"), tr("is no list of products"));
        for (const QJsonValue& entry : products)
            shop->products.append(product(entry, int(shop->products.size()) + 1));
        return !mFailed;
    }

private:
    // Values

    static Field at(const Part& part, const char* key)
    {
        const QString name = QLatin1String(key);
        return {part.item, name, part.values.value(name)};
    }

    /// The value of a required key.
    Field needed(const Part& part, const char* key)
    {
        Field field = at(part, key);
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

    /// Reports a value that exists and is not right.
    void expect(const Field& field, bool isRight, const QString& reason)
    {
        if (field.isThere() && !isRight)
            wrong(field, reason);
    }

    /// Reports a text of the value that is not right; \a reason names it. An empty one was already
    /// reported.
    void expect(const Field& field, const QString& text, bool isRight, const QString& reason)
    {
        if (!text.isEmpty() && !isRight)
            wrong(field, reason.arg(text));
    }

    /// Reports a control character in \a text. A NUL would end a text in the written files before
    /// its quote; the others have no place in a shop, except line breaks and tabs.
    bool isPrintable(const Field& field, const QString& text)
    {
        static const QRegularExpression control(QStringLiteral("[^\\P{Cc}\\n\\t]"));
        const QString found = control.match(text).captured();
        if (!found.isEmpty())
            wrong(field,
                  tr("holds a control character (U+%1)")
                      .arg(int(found.at(0).unicode()), 4, 16, QLatin1Char('0')));
        return found.isEmpty();
    }

    /// A text without surrounding white space; empty if there is none.
    QString text(const Field& field)
    {
        const QString text = field.value.toString().trimmed();
        expect(field, field.value.isString(), tr("is no text"));
        expect(field, !field.value.isString() || !text.isEmpty(), tr("is empty"));
        return isPrintable(field, text) ? text : QString();
    }

    /// A text that is the same in all languages, or an object with one for each.
    LocalText localText(const Field& field, bool mayBeEmpty = true)
    {
        LocalText texts;
        const QJsonValue& value = field.value;
        expect(field, value.isString() || value.isObject(), tr("is no text"));
        if (!value.isString() && !value.isObject())
            return texts;
        for (const QString& language : mShop->languages) {
            const QJsonValue given = value.isString() ? value : value.toObject().value(language);
            const QString text = given.toString().trimmed();
            texts.insert(language, text);
            if (!isPrintable(field, text))
                return texts;
            if (given.isUndefined())
                fail(field, Missing, tr("has no text in \"%1\"").arg(language));
            else if (!given.isString())
                wrong(field, tr("is no text in \"%1\"").arg(language));
            else if (!mayBeEmpty && text.isEmpty()) {
                wrong(field, tr("is empty"));
                return texts;
            }
        }
        return texts;
    }

    bool yesOrNo(const Field& field)
    {
        expect(field, field.value.isBool(), tr("is neither true nor false"));
        return field.value.toBool();
    }

    /// An object that is not empty.
    QJsonObject group(const Field& field)
    {
        QJsonObject object = field.value.toObject();
        expect(field, !object.isEmpty(), tr("is no object"));
        return object;
    }

    /// A list that is not empty; for anything else \a reason is reported.
    QJsonArray list(const Field& field, const QString& reason)
    {
        QJsonArray array = field.value.toArray();
        expect(field, !array.isEmpty(), reason);
        return array;
    }

    /// The path of a file below static/, which is the same in the project and in the site; empty if
    /// there is none.
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
        expect(field, address, isWebAddress(address),
               tr("\"%1\" is no address of the web, such as \"https://shop.example/\""));
        return address;
    }

    /// Where to order: an e-mail or a web address.
    QString order(const Field& field)
    {
        QString order = text(field);
        QString address = order;
        address.remove(QLatin1String("{id}")).remove(QLatin1String("{name}"));
        expect(field, order, isEmail(order) || isWebAddress(address),
               tr("\"%1\" is no address of e-mail or of the web"));
        return order;
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

    /// The rates of the country, with those that the file overrides.
    void vatRates(const Field& field)
    {
        const QList<int> categories = TaxeRatesUtils::europeanTaxCategories();
        for (const int category : categories) {
            const double rate = TaxeRatesUtils::europeanTax(mShop->country, category);
            if (rate >= 0)
                mShop->vatRates.insert(category, rate);
        }
        QJsonObject rates = field.value.toObject();
        const QString date = rates.take(QStringLiteral("date")).toString();
        mShop->vatDate =
            field.isThere() ? QDate::fromString(date, Qt::ISODate) : TaxeRatesUtils::lastUpdated();
        expect(field, mShop->vatDate.isValid(),
               tr("has no \"date\" of the rates, such as \"2026-01-01\""));
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

    /// What the pages look like, except for their font.
    void looks(const Part& file)
    {
        const Field accent = at(file, "accent");
        const QString color = text(accent);
        mShop->accent = ColorUtils::colorFromCss(color);
        expect(accent, color, mShop->accent.isValid() && mShop->accent.alpha() == 255,
               tr("\"%1\" is no opaque colour of CSS, such as \"#9c4a27\""));
        const Field icon = at(file, "favicon");
        mShop->favicon = staticFile(icon, text(icon));
        const Field logo = at(file, "logo");
        mShop->logo = staticFile(logo, text(logo));
        if (mShop->logo.isEmpty())
            return;
        mShop->logoSize = ImageUtils::imageSize(mProject.folder() + QLatin1Char('/') + mShop->logo);
        expect(logo, !mShop->logoSize.isEmpty(), tr("is no picture that can be read"));
    }

    /// The addresses of the shop and its owner.
    void addresses(const Part& file)
    {
        const Field site = at(file, "url");
        mShop->url = webAddress(site, text(site));
        expect(site,
               !mShop->url.contains(QLatin1Char('?')) && !mShop->url.contains(QLatin1Char('#')),
               tr("holds \"?\" or \"#\""));
        if (!mShop->url.isEmpty() && !mShop->url.endsWith(QLatin1Char('/')))
            mShop->url += QLatin1Char('/');
        mShop->order = order(at(file, "order"));

        const Field imprint = at(file, "imprint");
        mShop->imprint = localText(imprint);
        QStringList imprints = mShop->imprint.values();
        imprints.removeDuplicates(); // report each once
        for (int i = 0; i < imprints.size(); ++i) {
            if (imprints.at(i).startsWith(QLatin1String("static/")))
                staticFile(imprint, imprints.at(i));
            else if (Shop::isWebAddress(imprints.at(i)))
                webAddress(imprint, imprints.at(i));
        }

        const Part contact{mFile, group(at(file, "contact"))};
        mShop->address = localText(at(contact, "address"));
        mShop->phone = text(at(contact, "phone"));
        const Field email = at(contact, "email");
        mShop->email = text(email);
        expect(email, mShop->email, isEmail(mShop->email), tr("\"%1\" is no address of e-mail"));
    }

    ShopFont font(const Part& file)
    {
        const Field field = at(file, "font");
        ShopFont font;
        const QString wanted = text(field);
        if (wanted.isEmpty())
            return font;
        font.fromService = yesOrNo(at(file, "fontService"));
        font.files = fontFiles(at(file, "fontFiles"));
        font.family = mFile->mFonts.validName(wanted);
        GoogleFontItem item;
        if (font.family.isEmpty() || !mFile->mFonts.findItemByName(font.family, item)) {
            font.family = wanted; // its files are sufficient
            expect(field, !font.files.isEmpty() && !font.fromService,
                   tr("\"%1\" is no family of the catalogue of web fonts").arg(wanted));
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
                files.insert(weight, staticFile(field, text({mFile, it.key(), it.value()})));
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
        const Part part{item, object};
        product.name = localText(needed(part, "name"), false);
        product.description = localText(needed(part, "description"));
        product.photos = photos(part);
        product.order = order(at(part, "order"));
        const Field category = needed(part, "taxCategory");
        product.taxCategory = category.value.toInt(-1);
        const bool hasCategory =
            TaxeRatesUtils::europeanTaxCategories().contains(product.taxCategory);
        expect(category, hasCategory, tr("is no tax category: a number from 0 to 4"));
        const double net = netPrice(needed(part, "netPrice"));
        product.vatRate = mShop->vatRates.value(product.taxCategory, -1);
        expect(category, !mCountryIsKnown || !hasCategory || product.vatRate >= 0,
               tr("%1 has no rate of the category %2")
                   .arg(mShop->country, QString::number(product.taxCategory)));
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

    /// The pictures of a product: one, or several, of which the first is the main one.
    QStringList photos(const Part& part)
    {
        const Field several = at(part, "photos");
        if (!several.isThere())
            return {photo(needed(part, "photo"))};
        QStringList names;
        const QJsonArray array = list(several, tr("is no list of photographs"));
        for (const QJsonValue& value : array)
            names.append(photo({part.item, several.key, value}));
        return names;
    }

    QString photo(const Field& field)
    {
        const QString wanted = text(field);
        QString name = mPhotos.value(wanted.normalized(QString::NormalizationForm_C));
        if (!wanted.isEmpty() && name.isEmpty())
            fail(field, Missing, tr("there is no photograph \"%1\"").arg(wanted));
        return name;
    }

    double netPrice(const Field& field)
    {
        const double price = field.value.toDouble();
        expect(field, field.value.isDouble(), tr("is no number, such as 12.50"));
        expect(field, price >= 0, tr("is below zero"));
        expect(field, price <= highestPrice, tr("is too high for a price"));
        return qBound(0.0, price, highestPrice);
    }

    QString distinctId(const QString& name)
    {
        const QString wish = idOf(name);
        QString id = wish;
        // Continue after the last number given to this name.
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
    QHash<QString, int> mNumbers; ///< the last number given to each id
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
    // Reading a pipe or a device might never end.
    const QFileInfo info(file);
    if (info.exists() && !info.isFile() && !info.isDir()) {
        ORVAUTILS_SET_ERROR(failure(Unsuitable, Project::tr("is not a file")));
        return false;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        ORVAUTILS_SET_ERROR(
            failure(Unreadable, tr("cannot be opened (%1)").arg(file.errorString())));
        return false;
    }
    QByteArray content = file.readAll();
    if (content.startsWith("\xef\xbb\xbf")) // the mark that some editors write before UTF-8
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
