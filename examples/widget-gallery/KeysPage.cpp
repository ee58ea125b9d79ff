// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The page on keys: a typed word that is recognised, and keys that a widget
// handles in its own way.

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

QWidget* priceWithPoint()
{
    QLineEdit* const price = lineEdit("price");
    QLocale locale = QLocale::c(); // a decimal point, and no commas
    locale.setNumberOptions(QLocale::RejectGroupSeparator);
    auto* validator = new QDoubleValidator(0, 100000, 2, price);
    validator->setLocale(locale);
    price->setValidator(validator);
    const QString comma = QStringLiteral(",");
    const QString point = QStringLiteral(".");
    //! [replacement]
    // The comma of the number pad becomes the point of the price
    QObjectEventFilter::filter(
        price, QObjectEventFilter::inputKeyReplacement(comma, point));
    //! [replacement]
    QLabel* const answer = answerLabel("formattedPrice", QString());
    QObject::connect(price, &QLineEdit::textChanged, answer,
                     [answer](const QString& text) {
                         answer->setText(CurrencyUtils::formatPrice(
                             text.toDouble(), QStringLiteral("EUR")));
                     });
    price->setText(QStringLiteral("12.5"));
    return Layouts::column(
        {Layouts::form({{Page::tr("P&rice"), price}}), answer});
}

} // namespace

QVector<Exhibit> keysExhibits()
{
    return {
        {Page::tr("A secret word"), sequence(), "sequence"},
        {Page::tr("Is this key meant to delete?"), deletableItems(), "delete"},
        {Page::tr("The comma becomes a point"), priceWithPoint(),
         "replacement"},
    };
}
