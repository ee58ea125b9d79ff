// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The pages of keys: sequences that a window recognises, and keys that a field
// replaces.

#include "Layouts.h"
#include "Page.h"
#include "Pages.h"

#include <CurrencyUtils.h>
#include <DrawUtils.h>
#include <EventUtils.h>
#include <KeyPressCheatCodeDetection.h>
#include <QObjectEventFilter.h>

#include <QDoubleValidator>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>

namespace {

QLineEdit* lineEdit(const char* name, const QString& text = QString())
{
    auto* edit = new QLineEdit(text);
    edit->setObjectName(QString::fromLatin1(name));
    edit->setMinimumWidth(200);
    return edit;
}

QLabel* answerLabel(const char* name, const QString& text)
{
    auto* label = new QLabel(text);
    label->setObjectName(QString::fromLatin1(name));
    label->setMargin(6);
    label->setMinimumWidth(290);
    DrawUtils::setBootstrapColor(label, ColorUtils::Info);
    return label;
}

QWidget* sequence()
{
    QLineEdit* const word = lineEdit("word", QStringLiteral("diagnostics"));
    QLineEdit* const typed = lineEdit("typed");
    QLabel* const answer = answerLabel("detected", Page::tr("Not typed yet."));
    const auto found = [answer] {
        const int times = answer->property("times").toInt() + 1;
        answer->setProperty("times", times);
        answer->setText(Page::tr("Typed %n time(s).", nullptr, times));
        DrawUtils::setBootstrapColor(answer, ColorUtils::Success);
    };
    //! [sequence]
    auto* detection = new KeyPressCheatCodeDetection(typed);
    detection->setKey(word->text());
    QObject::connect(detection, &KeyPressCheatCodeDetection::keyDetected,
                     answer, found);
    //! [sequence]
    QObject::connect(word, &QLineEdit::textChanged, detection,
                     &KeyPressCheatCodeDetection::setKey);
    return Layouts::column({Layouts::form({{Page::tr("&Secret word"), word},
                                           {Page::tr("&Type it here"), typed}}),
                            answer});
}

QWidget* withoutDigits()
{
    QLineEdit* const name = lineEdit("name");
    //! [filter]
    QObjectEventFilter::filter(name, [](QObject*, QEvent* event) {
        if (event->type() != QEvent::KeyPress)
            return false;
        const QString text = static_cast<QKeyEvent*>(event)->text();
        return text.size() == 1 && text.at(0).isDigit(); // true: consumed
    });
    //! [filter]
    return Layouts::form({{Page::tr("&Name"), name}});
}

QWidget* deletableItems()
{
    auto* list = new QListWidget;
    list->setObjectName(QStringLiteral("photographs"));
    list->addItems({QStringLiteral("beach.jpg"), QStringLiteral("boat.jpg"),
                    QStringLiteral("lighthouse.jpg"),
                    QStringLiteral("pier.jpg")});
    list->setCurrentRow(0);
    list->setFixedSize(260, 96);
    //! [delete]
    QObjectEventFilter::filter(list, [list](QObject*, QEvent* event) {
        // Delete, or Backspace on keyboards that have no other key
        if (event->type() != QEvent::KeyPress
            || !EventUtils::match_KeyDelete(static_cast<QKeyEvent*>(event)))
            return false;
        delete list->currentItem();
        return true;
    });
    //! [delete]
    return Layouts::form({{Page::tr("&Delete from"), list}});
}

QLineEdit* priceEdit(const char* name)
{
    QLineEdit* const price = lineEdit(name);
    //! [plain]
    QLocale locale = QLocale::c(); // a point, and no comma anywhere
    locale.setNumberOptions(QLocale::RejectGroupSeparator);
    auto* validator = new QDoubleValidator(0, 100000, 2, price);
    validator->setLocale(locale);
    price->setValidator(validator);
    //! [plain]
    return price;
}

QWidget* replacedKey()
{
    QLineEdit* const price = priceEdit("price");
    const QString comma = QStringLiteral(",");
    const QString point = QStringLiteral(".");
    //! [replacement]
    // The comma of the number pad becomes the point of the price
    QObjectEventFilter::filter(
        price, QObjectEventFilter::inputKeyReplacement(comma, point));
    //! [replacement]
    return Layouts::form({{Page::tr("&Replaced"), price}});
}

QWidget* formattedPrice()
{
    QLineEdit* const price = priceEdit("shownPrice");
    const QString comma = QStringLiteral(",");
    const QString point = QStringLiteral(".");
    QObjectEventFilter::filter(
        price, QObjectEventFilter::inputKeyReplacement(comma, point));
    QLabel* const answer = answerLabel("formattedPrice", QString());
    const auto show = [answer](const QString& text) {
        //! [price]
        const QString shown =
            CurrencyUtils::formatPrice(text.toDouble(), QStringLiteral("EUR"));
        //! [price]
        answer->setText(shown);
    };
    QObject::connect(price, &QLineEdit::textChanged, answer, show);
    price->setText(QStringLiteral("12.5"));
    return Layouts::column(
        {Layouts::form({{Page::tr("&Shop price"), price}}), answer});
}

QWidget* plainPrice()
{
    QLineEdit* const price = priceEdit("plainPrice");
    price->setPlaceholderText(Page::tr("1,5 becomes 15"));
    return Layouts::form({{Page::tr("&Left alone"), price}});
}

} // namespace

Page* makeKeySequencePage(const QString& title)
{
    auto* page = new Page(
        title,
        Page::tr(
            "A window that knows a secret word, and takes no key away for it."),
        QStringLiteral("KeysPages.cpp"));
    page->addSample(Page::tr("A secret word"), sequence(), "sequence");
    page->addSample(Page::tr("A field that refuses digits"), withoutDigits(),
                    "filter");
    page->addSample(Page::tr("Is this key meant to delete?"), deletableItems(),
                    "delete");
    return page;
}

Page* makeDecimalKeyPage(const QString& title)
{
    auto* page = new Page(title,
                          Page::tr("Prices have a point; many keyboards have a "
                                   "comma. Type 1,5 into the fields."),
                          QStringLiteral("KeysPages.cpp"));
    page->addSample(Page::tr("The comma becomes a point"), replacedKey(),
                    "replacement");
    page->addSample(Page::tr("A field without it"), plainPrice(), "plain");
    page->addSample(Page::tr("And what the shop shows"), formattedPrice(),
                    "price");
    return page;
}
