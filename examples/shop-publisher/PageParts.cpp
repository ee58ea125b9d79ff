// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Pages.h"

#include "Template.h"

#include <ImageUtils.h>
#include <LocalisationTools.h>

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

QStringList PageParts::names(const QString& first, const QString& others, int count, int onAPage)
{
    QStringList names(first);
    while (names.size() * onAPage < count)
        names.append(others.arg(names.size() + 1));
    return names;
}

QVariantMap PageParts::pager(const QVariantMap& texts, const QStringList& names, int index)
{
    if (names.size() < 2)
        return {};
    const QString text = texts.value(QStringLiteral("pageText")).toString();
    return Template::values({{"previous", names.value(index - 1)},
                             {"next", names.value(index + 1)},
                             {"pageText", text.arg(index + 1).arg(names.size())}});
}

QVariantMap PageParts::picture(const PublishedPicture& picture, const QString& alternativeText)
{
    const QString suffix = QFileInfo(picture.name).suffix().toLower();
    const bool isJpeg = suffix == QLatin1String("jpg") || suffix == QLatin1String("jpeg");
    return Template::values({{"large", Template::address(QLatin1String("images/") + picture.name)},
                             {"src", Template::address(QLatin1String("thumbs/") + picture.name)},
                             {"table", !isJpeg}, // what may be transparent gets a light background
                             {"drawing", ImageUtils::imageNameIsVectoriel(picture.name)},
                             {"alt", alternativeText},
                             {"width", picture.thumbSize.width()},
                             {"height", picture.thumbSize.height()}});
}
