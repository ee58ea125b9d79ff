// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The smallest program of a user: it uses one function of each class that the package installs.

#include <ApplicationUtils.h>
#include <CoreAppUrlUtils.h>
#include <CoreApplicationUtils.h>
#include <CurrencyUtils.h>
#include <EventUtils.h>
#include <ExifUtils.h>
#include <FileUtils.h>
#include <FlagsUtils.h>
#include <GoogleFontLoader.h>
#include <ImageUtils.h>
#include <KeyPressCheatCodeDetection.h>
#include <ListUtils.h>
#include <LocalisationTools.h>
#include <LocalizationUtils.h>
#include <MetaObjectUtils.h>
#include <MetricSystemUtils.h>
#include <QExifImageHeader.h>
#include <QExifValue.h>
#include <QObjectEventFilter.h>
#include <TaxeRatesUtils.h>
#include <WidgetUtils.h>

#include <QApplication>
#include <QKeyEvent>

namespace {

// What the frame of an application calls.
bool usesTheFrame()
{
    QObject object;
    KeyPressCheatCodeDetection(&object).setKey(QStringLiteral("shop"));
    QObjectEventFilter filter(&object);
    QKeyEvent backspace(QEvent::KeyPress, Qt::Key_Backspace, Qt::NoModifier);
    Qt::ItemFlags flags;
    FlagsUtils::setFlag(flags, Qt::ItemIsEditable, true);
    CoreApplicationUtils::setApplicationName(QStringLiteral("consumer"));
    return CoreApplicationUtils::applicationGuiName() == QStringLiteral("consumer")
        && ApplicationUtils::pathApplicationSettings().endsWith(QStringLiteral("/consumer/"))
        && EventUtils::match_KeyDelete(&backspace) && flags == Qt::ItemIsEditable
        && ListUtils::allObjectIsSameClass({&object})
        && MetaObjectUtils::hasMethod(&object, SLOT(deleteLater()))
        && WidgetUtils::parentsList(&filter) == QStringList(QStringLiteral("QObject"));
}

// What a shop calls. The fonts and the tax rates are files that the library carries: also in a
// static one they must be there.
bool usesTheShop()
{
    GoogleFontLoader fonts;
    const auto kilogram = MetricSystemUtils::symbol(
        MetricSystemUtils::Weight, MetricSystemUtils::Metric, MetricSystemUtils::ShortSymbol);
    return fonts.validName(QStringLiteral("opensans")) == QStringLiteral("Open Sans")
        && TaxeRatesUtils::europeanTax(QStringLiteral("fr"), 1) == 5.5
        && CurrencyUtils::formatPrice(12.5, QStringLiteral("EUR")) == QStringLiteral("12.50 \u20ac")
        && kilogram == QStringLiteral("Kg");
}

bool usesTheLanguages()
{
    const QString address = QStringLiteral("https://example.org/");
    return LocalisationTools::trQtMessages(LocalisationTools::ButtonCancel)
        == QStringLiteral("Cancel")
        && LocalizationUtils::isoLangCodeToString(QStringLiteral("fr")) == QStringLiteral("French")
        && CoreAppUrlUtils::mapUrlApplication(address, nullptr, {}) == address;
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    return usesTheFrame() && usesTheShop() && usesTheLanguages() ? 0 : 1;
}
