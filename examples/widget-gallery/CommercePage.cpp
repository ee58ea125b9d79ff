// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The page on money: currencies, prices and rates of value-added tax.

#include "Layouts.h"
#include "Page.h"
#include "Pages.h"

#include <CurrencyUtils.h>
#include <DrawUtils.h>
#include <TaxeRatesUtils.h>

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QHeaderView>
#include <QLabel>
#include <QTableWidget>

namespace {

QLabel* priceTag()
{
    auto* label = Layouts::plainText();
    label->setObjectName(QStringLiteral("priceTag"));
    DrawUtils::setWidgetTextPixelSize(label, 26);
    DrawUtils::setWidgetTextBold(label, true);
    return label;
}

QWidget* prices(QComboBox* currency)
{
    auto* price = new QDoubleSpinBox;
    price->setObjectName(QStringLiteral("amount"));
    price->setLocale(QLocale::c());
    price->setDecimals(3);
    price->setMaximum(99999);
    price->setValue(1249.905);
    QLabel* const tag = priceTag();
    const auto show = [price, currency, tag] {
        const QString code = currency->currentData().toString();
        //! [price]
        // Rounded to the cent, halves upwards
        tag->setText(CurrencyUtils::formatPrice(price->value(), code));
        //! [price]
    };
    QObject::connect(price,
                     static_cast<void (QDoubleSpinBox::*)(double)>(
                         &QDoubleSpinBox::valueChanged),
                     tag, show);
    QObject::connect(
        currency,
        static_cast<void (QComboBox::*)(int)>(&QComboBox::currentIndexChanged),
        tag, show);
    show();
    return Layouts::row({Layouts::form({{Page::tr("&Amount"), price}}), tag});
}

QComboBox* currencies()
{
    auto* box = new QComboBox;
    box->setObjectName(QStringLiteral("currency"));
    //! [currencies]
    const QStringList codes = CurrencyUtils::listIsoCodes();
    for (const QString& code : codes) {
        const QString name =
            CurrencyUtils::currencySymbol(code, QLocale::CurrencyDisplayName);
        box->addItem(code + QStringLiteral(" – ") + name, code);
    }
    //! [currencies]
    box->setCurrentIndex(box->findData(QStringLiteral("EUR")));
    box->setMaximumWidth(280);
    return box;
}

QString rateText(double rate)
{
    return rate < 0 ? QStringLiteral("–")
                    : QLocale::c().toString(rate) + QStringLiteral(" %");
}

QTableWidget* rates()
{
    const QStringList countries = {
        QStringLiteral("AT"), QStringLiteral("BE"), QStringLiteral("DE"),
        QStringLiteral("EL"), QStringLiteral("ES"), QStringLiteral("FR"),
        QStringLiteral("IE"), QStringLiteral("IT"), QStringLiteral("LU"),
        QStringLiteral("PT"), QStringLiteral("SE")};
    const QStringList names = {
        Page::tr("Standard"), Page::tr("Alternative\nreduced"),
        Page::tr("Reduced"), Page::tr("Super\nreduced"), Page::tr("Parking")};
    const QList<int> categories = TaxeRatesUtils::europeanTaxCategories();

    auto* table =
        new QTableWidget(int(countries.size()), int(categories.size()));
    table->setObjectName(QStringLiteral("rates"));
    table->setHorizontalHeaderLabels(names);
    table->setVerticalHeaderLabels(countries);
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    // Tab leaves the table, the arrow keys move in it.
    table->setTabKeyNavigation(false);
    for (int row = 0; row < countries.size(); ++row) {
        for (int column = 0; column < categories.size(); ++column) {
            const QString& country = countries.at(row);
            const int category = categories.at(column);
            //! [rate]
            // In percent; below 0 where a country has no such rate
            const double rate = TaxeRatesUtils::europeanTax(country, category);
            //! [rate]
            auto* item = new QTableWidgetItem(rateText(rate));
            item->setTextAlignment(Qt::AlignCenter);
            table->setItem(row, column, item);
        }
    }
    table->resizeRowsToContents();
    // Wide enough for the widest title in every column, high enough for all
    // rows.
    const int columnWidth =
        table->fontMetrics().boundingRect(Page::tr("Alternative")).width() + 6;
    const int frame = 2 * table->frameWidth();
    table->setFixedSize(table->verticalHeader()->sizeHint().width()
                            + columnWidth * int(categories.size()) + frame,
                        table->horizontalHeader()->sizeHint().height()
                            + table->verticalHeader()->length() + frame);
    return table;
}

} // namespace

QVector<Exhibit> commerceExhibits()
{
    QComboBox* const currency = currencies();
    return {
        {Page::tr("Currencies"),
         Layouts::form({{Page::tr("&Currency"), currency}}), "currencies"},
        {Page::tr("A price"), prices(currency), "price"},
        {Page::tr("Value-added tax in the European Union"), rates(), "rate"},
    };
}
