// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// price-editor: a widget in which a price is typed, with or without tax, and which shows both parts
// in the currency and with the tax rates of a country.
//
//     price-editor [RATES.json]
//
// RATES.json contains newer rates than those of the library; see TaxeRatesUtils::setRatesFile().

#include <CurrencyUtils.h>
#include <TaxeRatesUtils.h>

#include <QApplication>
#include <QComboBox>
#include <QDebug>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>

namespace {

class PriceEditor : public QWidget
{
public:
    PriceEditor()
    {
        setWindowTitle(QStringLiteral("Price editor"));
        mCurrency->addItems(CurrencyUtils::listIsoCodes());
        mCurrency->setCurrentText(QStringLiteral("EUR"));
        mCountry->addItems(TaxeRatesUtils::countries());
        mKind->addItem(QStringLiteral("with tax"), CurrencyUtils::Gross);
        mKind->addItem(QStringLiteral("without tax"), CurrencyUtils::Net);

        auto* const layout = new QFormLayout(this);
        layout->addRow(QStringLiteral("&Price"), mPrice);
        layout->addRow(QStringLiteral("&Is"), mKind);
        layout->addRow(QStringLiteral("C&urrency"), mCurrency);
        layout->addRow(QStringLiteral("&Country"), mCountry);
        layout->addRow(QStringLiteral("&Rate"), mRate);
        layout->addRow(QStringLiteral("Net"), mNet);
        layout->addRow(QStringLiteral("Tax"), mTax);
        layout->addRow(QStringLiteral("Gross"), mGross);
        layout->addRow(new QLabel(
            QStringLiteral("Rates of %1.")
                .arg(locale().toString(TaxeRatesUtils::lastUpdated(), QLocale::LongFormat))));

        const auto changed = static_cast<void (QComboBox::*)(int)>(&QComboBox::currentIndexChanged);
        connect(mCountry, changed, this, [this] { listRates(); });
        for (QComboBox* box : {mKind, mCurrency, mRate})
            connect(box, changed, this, [this] { showSplit(); });
        connect(mPrice, &QLineEdit::textChanged, this, [this] { showSplit(); });
        mCountry->setCurrentText(QStringLiteral("FR"));
        mPrice->setText(locale().toString(29.4, 'f', CurrencyUtils::minorUnits(code())));
    }

private:
    QString code() const { return mCurrency->currentText(); }

    /// Lists the rates that the country has.
    void listRates()
    {
        mRate->clear();
        const QList<int> categories = TaxeRatesUtils::europeanTaxCategories();
        for (int category : categories) {
            const double rate = TaxeRatesUtils::europeanTax(mCountry->currentText(), category);
            if (rate >= 0)
                mRate->addItem(
                    QStringLiteral("%1 % – %2")
                        .arg(locale().toString(rate), TaxeRatesUtils::categoryName(category)),
                    rate);
        }
    }

    void showSplit()
    {
        bool isNumber = false;
        const double price = locale().toDouble(mPrice->text(), &isNumber);
        const auto kind = CurrencyUtils::AmountKind(mKind->currentData().toInt());
        const auto split =
            CurrencyUtils::vatOf(price, kind, mRate->currentData().toDouble(), code());
        const bool valid = isNumber && split.isValid;
        const auto show = [&](QLabel* label, qint64 amount) {
            label->setText(valid ? CurrencyUtils::formatMoney(amount, code(), locale())
                                 : QStringLiteral("–"));
        };
        show(mNet, split.net);
        show(mTax, split.vat);
        show(mGross, split.gross);
        QString details; // in minor units, as they are stored
        QDebug(&details) << split;
        setToolTip(details);
    }

    QLineEdit* const mPrice = new QLineEdit(this);
    QComboBox* const mKind = new QComboBox(this);
    QComboBox* const mCurrency = new QComboBox(this);
    QComboBox* const mCountry = new QComboBox(this);
    QComboBox* const mRate = new QComboBox(this);
    QLabel* const mNet = new QLabel(this);
    QLabel* const mTax = new QLabel(this);
    QLabel* const mGross = new QLabel(this);
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    QString error;
    if (arguments.size() > 1 && !TaxeRatesUtils::setRatesFile(arguments.at(1), &error)) {
        qWarning("%s: %s", qPrintable(arguments.at(1)), qPrintable(error));
        return 1;
    }
    PriceEditor editor;
    editor.show();
    return QApplication::exec();
}
