// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "PageParts.h"

#include "Template.h"

#include <ImageUtils.h>
#include <LocalisationTools.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QLocale>
#include <QTranslator>

namespace {

const struct
{
    const char* name;
    const char* text;
} namedTexts[] = {
    {"vatText", QT_TRANSLATE_NOOP("PageTexts", "VAT")},
    {"inclVatText", QT_TRANSLATE_NOOP("PageTexts", "incl. VAT")},
    {"netText", QT_TRANSLATE_NOOP("PageTexts", "net")},
    {"pricesText", QT_TRANSLATE_NOOP("PageTexts", "Prices in %1, with the VAT of %2.")},
    {"ratesText", QT_TRANSLATE_NOOP("PageTexts", "VAT rates of %1.")},
    {"orderText", QT_TRANSLATE_NOOP("PageTexts", "Order")},
    {"imprintText", QT_TRANSLATE_NOOP("PageTexts", "Imprint")},
    {"languagesText", QT_TRANSLATE_NOOP("PageTexts", "Languages")},
    {"photographsText", QT_TRANSLATE_NOOP("PageTexts", "All photographs")},
    {"pagesText", QT_TRANSLATE_NOOP("PageTexts", "Pages")},
    {"pageText", QT_TRANSLATE_NOOP("PageTexts", "Page %1 of %2")},
    {"previousText", QT_TRANSLATE_NOOP("PageTexts", "Previous page")},
    {"nextText", QT_TRANSLATE_NOOP("PageTexts", "Next page")},
};

} // namespace

QVariantMap PageParts::texts(const QString& code)
{
    // The same files as those of the program itself.
    const QString key = QStringLiteral("app_");
    QTranslator translator;
    const bool isLoaded = translator.load(
        QLocale(code), key, QString(), LocalisationTools::pathFile_QM(key), QStringLiteral(".qm"));
    QVariantMap map;
    for (const auto& entry : namedTexts) {
        const QString text = isLoaded ? translator.translate("PageTexts", entry.text) : QString();
        map.insert(QLatin1String(entry.name),
                   text.isEmpty() ? QString::fromUtf8(entry.text) : text);
    }
    return map;
}

QVariantMap PageParts::pager(const QVariantMap& texts, const QString& first, const QString& others,
                             int number, int count)
{
    if (count < 2)
        return {};
    return Template::values(
        {{"previous", number > 1 ? fileName(first, others, number - 1) : QString()},
         {"next", number < count ? fileName(first, others, number + 1) : QString()},
         {"pageText", texts.value(QStringLiteral("pageText")).toString().arg(number).arg(count)}});
}

QString PageParts::fileName(const QString& first, const QString& others, int number)
{
    return number == 1 ? first : others.arg(number);
}

QVariantMap PageParts::picture(const PublishedPicture& picture, const QString& alternativeText)
{
    const QString suffix = QFileInfo(picture.name).suffix().toLower();
    const bool isJpeg = suffix == QLatin1String("jpg") || suffix == QLatin1String("jpeg");
    return Template::values({{"large", Template::address(QLatin1String("images/") + picture.name)},
                             {"src", Template::address(QLatin1String("thumbs/") + picture.name)},
                             {"table", !isJpeg}, // what may be transparent lies on a light table
                             {"drawing", ImageUtils::imageNameIsVectoriel(picture.name)},
                             {"alt", alternativeText},
                             {"width", picture.thumbSize.width()},
                             {"height", picture.thumbSize.height()}});
}
