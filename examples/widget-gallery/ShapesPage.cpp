// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The page on what is painted around content, or in its absence: rounded
// shapes, informative messages, and marks for undefined values.

#include "Canvas.h"
#include "Layouts.h"
#include "Page.h"
#include "Pages.h"
#include "Pictures.h"

#include <DrawUtils.h>

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QSpinBox>

namespace {

void drawClipped(QPainter* painter, const QRect& rect)
{
    painter->setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect).adjusted(100, 10, -100, -10);
    //! [clip]
    const QPainterPath path =
        DrawUtils::makePathRoundedShape(frame, 50, 12, 50, 12);
    painter->setClipPath(path);
    //! [clip]
    painter->drawPixmap(frame.toRect(),
                        Pictures::boat(frame.size().toSize() * 2));
}

QSpinBox* radiusBox(const char* name, int value, Canvas* canvas)
{
    auto* box = new QSpinBox;
    box->setObjectName(QString::fromLatin1(name));
    box->setMaximum(60);
    box->setValue(value);
    box->setSuffix(QStringLiteral(" px"));
    QObject::connect(
        box, static_cast<void (QSpinBox::*)(int)>(&QSpinBox::valueChanged),
        canvas, [canvas] { canvas->update(); });
    return box;
}

QWidget* ownRadii()
{
    auto* radii = new QWidget;
    auto* canvas = new Canvas(
        QSize(160, 140), [radii](QPainter* painter, const QRect& rect) {
            const auto radius = [radii](const char* name) {
                return radii->findChild<QSpinBox*>(QString::fromLatin1(name))
                    ->value();
            };
            painter->setRenderHint(QPainter::Antialiasing);
            painter->setBrush(QColor(0xdf, 0xf2, 0xbf));
            painter->setPen(QPen(QColor(0x4f, 0x8a, 0x10), 2));
            const QRectF shape = QRectF(rect).adjusted(10, 10, -10, -10);
            //! [own]
            painter->drawPath(DrawUtils::makePathRoundedShape(
                shape, radius("topLeft"), radius("topRight"),
                radius("bottomRight"), radius("bottomLeft")));
            //! [own]
        });
    canvas->setObjectName(QStringLiteral("radiiCanvas"));

    auto* grid = new QGridLayout(radii);
    grid->setContentsMargins(0, 0, 0, 0);
    int row = 0;
    const auto add = [&](const QString& text, const char* name, int value) {
        auto* label = new QLabel(text);
        QSpinBox* box = radiusBox(name, value, canvas);
        label->setBuddy(box);
        grid->addWidget(label, row, 0);
        grid->addWidget(box, row++, 1);
    };
    add(Page::tr("&Top left"), "topLeft", 60);
    add(Page::tr("Top &right"), "topRight", 10);
    add(Page::tr("Bottom r&ight"), "bottomRight", 60);
    add(Page::tr("&Bottom left"), "bottomLeft", 10);
    return Layouts::row({canvas, radii});
}

QWidget* ownMessage()
{
    auto* text = new QLineEdit(Page::tr("Write here what it says"));
    text->setObjectName(QStringLiteral("message"));
    text->setMinimumWidth(230);
    auto* canvas = new Canvas(QSize(400, 96),
                              [text](QPainter* painter, const QRect& rect) {
                                  //! [message]
                                  DrawUtils::drawInformativeMessage(
                                      painter, nullptr, text->text(), rect);
                                  //! [message]
                              });
    canvas->setObjectName(QStringLiteral("messageCanvas"));
    QObject::connect(text, &QLineEdit::textChanged, canvas,
                     [canvas] { canvas->update(); });
    return Layouts::column(
        {canvas, Layouts::form({{Page::tr("&Message"), text}})});
}

void drawPrices(QPainter* painter, const QRect& rect)
{
    const int gap = 8;
    const QSize size((rect.width() - 6 * gap) / 5, rect.height() - 2 * gap);
    QRect cell(QPoint(gap, gap), size);
    const auto next = [&] {
        const QRect current = cell;
        painter->fillRect(current, QColor(0xee, 0xf1, 0xf5));
        cell.translate(cell.width() + gap, 0);
        return current;
    };
    painter->drawText(next(), Qt::AlignCenter, QStringLiteral("12.50"));
    //! [undefined]
    // No price is not the same as a price of 0
    DrawUtils::drawUndefinedRectOblique(painter, next());
    const bool black = true; // otherwise red
    DrawUtils::drawUndefinedRectStraight(painter, next(), black);
    DrawUtils::drawUndefinedRectStraight(painter, next(), !black);
    //! [undefined]
    painter->drawText(next(), Qt::AlignCenter, QStringLiteral("0.00"));
}

} // namespace

QVector<Exhibit> shapesExhibits()
{
    return {
        {Page::tr("A picture in a shape"),
         new Canvas(QSize(400, 146), drawClipped), "clip"},
        {Page::tr("Your own corners"), ownRadii(), "own"},
        {Page::tr("Your own message"), ownMessage(), "message"},
        {Page::tr("Prices that are not known"),
         new Canvas(QSize(400, 60), drawPrices), "undefined"},
    };
}
