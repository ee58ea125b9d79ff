// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The pages of what is painted where there is nothing to show: informative
// messages and undefined marks.

#include "Canvas.h"
#include "Layouts.h"
#include "Page.h"
#include "Pages.h"
#include "Pictures.h"

#include <DrawUtils.h>

#include <QLineEdit>
#include <QPainter>

namespace {

void drawEmptyList(QPainter* painter, const QRect& rect)
{
    //! [message]
    DrawUtils::drawInformativeMessage(
        painter, nullptr, Page::tr("No photograph in this folder"), rect);
    //! [message]
}

void drawWrapped(QPainter* painter, const QRect& rect)
{
    painter->drawPixmap(rect, Pictures::boat(rect.size() * 2));
    //! [wrapped]
    // Wrapped at words to the width of the rectangle less 39 pixels
    const QString text = Page::tr("Drop photographs here, they become upright");
    DrawUtils::drawInformativeMessage(painter, nullptr, text, rect);
    //! [wrapped]
}

QWidget* ownMessage()
{
    auto* text = new QLineEdit(Page::tr("Write here what it says"));
    text->setObjectName(QStringLiteral("message"));
    text->setMinimumWidth(230);
    auto* canvas = new Canvas(QSize(400, 96),
                              [text](QPainter* painter, const QRect& rect) {
                                  //! [own]
                                  DrawUtils::drawInformativeMessage(
                                      painter, nullptr, text->text(), rect);
                                  //! [own]
                              });
    canvas->setObjectName(QStringLiteral("messageCanvas"));
    QObject::connect(text, &QLineEdit::textChanged, canvas,
                     [canvas] { canvas->update(); });
    return Layouts::column(
        {canvas, Layouts::form({{Page::tr("&Message"), text}})});
}

/// A list of prices of which some are not known.
template <typename Mark>
void drawPrices(QPainter* painter, const QRect& rect, Mark mark)
{
    const QStringList prices = {QStringLiteral("12.50"), QString(),
                                QStringLiteral("8.00"), QString(),
                                QStringLiteral("19.90")};
    const int gap = 8;
    const int count = prices.size();
    QRect cell(gap, gap, (rect.width() - gap * (count + 1)) / count,
               rect.height() - 2 * gap);
    for (const QString& price : prices) {
        painter->fillRect(cell, QColor(0xee, 0xf1, 0xf5));
        if (price.isEmpty())
            mark(painter, cell);
        else
            painter->drawText(cell, Qt::AlignCenter, price);
        cell.translate(cell.width() + gap, 0);
    }
}

void markOblique(QPainter* painter, const QRect& rect)
{
    //! [oblique]
    DrawUtils::drawUndefinedRectOblique(painter, rect);
    //! [oblique]
}

void markBlack(QPainter* painter, const QRect& rect)
{
    //! [black]
    DrawUtils::drawUndefinedRectStraight(painter, rect, true);
    //! [black]
}

void markRed(QPainter* painter, const QRect& rect)
{
    //! [red]
    DrawUtils::drawUndefinedRectStraight(painter, rect, false);
    //! [red]
}

} // namespace

Page* makeMessagesPage(const QString& title)
{
    auto* page = new Page(
        title, Page::tr("What an empty list or a drop zone says about itself."),
        QStringLiteral("MessagesPages.cpp"));
    page->addSample(Page::tr("In the middle of an empty list"),
                    new Canvas(QSize(400, 110), drawEmptyList), "message");
    page->addSample(Page::tr("Wrapped, on a picture"),
                    new Canvas(QSize(288, 180), drawWrapped), "wrapped");
    page->addSample(Page::tr("Your own"), ownMessage(), "own");
    return page;
}

Page* makeUndefinedPage(const QString& title)
{
    auto* page = new Page(
        title,
        Page::tr("A value that is not known is not the same as an empty one."),
        QStringLiteral("MessagesPages.cpp"));
    page->addSample(Page::tr("A diagonal"),
                    new Canvas(QSize(400, 60),
                               [](QPainter* painter, const QRect& rect) {
                                   drawPrices(painter, rect, markOblique);
                               }),
                    "oblique");
    page->addSample(Page::tr("Two strokes, black"),
                    new Canvas(QSize(400, 60),
                               [](QPainter* painter, const QRect& rect) {
                                   drawPrices(painter, rect, markBlack);
                               }),
                    "black");
    page->addSample(Page::tr("Two strokes, red"),
                    new Canvas(QSize(400, 60),
                               [](QPainter* painter, const QRect& rect) {
                                   drawPrices(painter, rect, markRed);
                               }),
                    "red");
    return page;
}
