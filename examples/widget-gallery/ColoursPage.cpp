// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The page on colours, in messages, ramps and CSS, and on badges.

#include "Canvas.h"
#include "Layouts.h"
#include "Page.h"
#include "Pages.h"
#include "Pictures.h"

#include <ColorUtils.h>
#include <DrawUtils.h>
#include <DrawingCountZoneHelper.h>

#include <QLabel>
#include <QPainter>
#include <QSpinBox>

namespace {

QWidget* notification(ColorUtils::NotificationType type, const QString& text)
{
    auto* label = new QLabel(text);
    label->setMargin(7);
    label->setMinimumWidth(380);
    //! [notification]
    // type is Info, Success, Warning or Error
    DrawUtils::setBootstrapColor(label, type);
    //! [notification]
    return label;
}

QWidget* notifications()
{
    return Layouts::column({
        notification(ColorUtils::Info,
                     Page::tr("Info: 12 photographs are new.")),
        notification(ColorUtils::Success,
                     Page::tr("Success: the site was published.")),
        notification(ColorUtils::Warning,
                     Page::tr("Warning: two prices are missing.")),
        notification(ColorUtils::Error,
                     Page::tr("Error: the folder is read-only.")),
    });
}

void drawRamp(QPainter* painter, const QRect& rect)
{
    const QColor dusk(0x24, 0x3b, 0x6b);
    const QColor dawn(0xff, 0xb3, 0x6b);
    for (int x = 0; x < rect.width(); ++x) {
        const double t = double(x) / (rect.width() - 1);
        //! [interpolate]
        // t runs from 0 at the left to 1 at the right
        const QColor color = ColorUtils::interpolate(dusk, dawn, t);
        painter->fillRect(x, 0, 1, rect.height(), color);
        //! [interpolate]
    }
}

QWidget* cssColour(const QString& text)
{
    //! [css]
    const QColor color = ColorUtils::colorFromCss(text);
    const QString css = ColorUtils::colorToCss(color);
    //! [css]
    auto* swatch = new Canvas(QSize(44, 20),
                              [color](QPainter* painter, const QRect& rect) {
                                  painter->fillRect(rect, color);
                              });
    auto* label = Layouts::plainText(text + QStringLiteral("  →  ") + css);
    return Layouts::row({swatch, label});
}

QWidget* cssColours()
{
    return Layouts::column({
        cssColour(QStringLiteral("SteelBlue")),
        cssColour(QStringLiteral("#F80")),
        cssColour(QStringLiteral("rgb(79,138,16)")),
        cssColour(QStringLiteral("RGBA(216,0,12,0.25)")),
    });
}

DrawingCountOptions redBadge(const QRect& rect)
{
    //! [badge]
    DrawingCountOptions options;
    options.rect = rect;
    options.alignment = Qt::AlignRight | Qt::AlignTop;
    options.firstBackgroundColor = QColor(0xe5, 0x39, 0x35); // at the top
    options.secondBackgroundColor = QColor(0xb7, 0x1c, 0x1c);
    options.textColor = Qt::white;
    //! [badge]
    return options;
}

void drawBadges(QPainter* painter, const QRect& rect)
{
    const QStringList texts = {QStringLiteral("1"), QStringLiteral("12"),
                               QStringLiteral("128"), QStringLiteral("99+")};
    QRect cell(0, 0, int(rect.width() / texts.size()), rect.height());
    for (const QString& text : texts) {
        DrawingCountOptions options = redBadge(cell);
        options.alignment = Qt::AlignCenter;
        DrawingCountZoneHelper::paintCountZone(painter, text, options);
        cell.translate(cell.width(), 0);
    }
}

QWidget* unreadMessages()
{
    auto* count = new QSpinBox;
    count->setObjectName(QStringLiteral("unread"));
    count->setMaximum(99999);
    count->setValue(7);
    auto* symbol =
        new Canvas(QSize(120, 76), [count](QPainter* painter, const QRect&) {
            const QRect place(30, 8, 60, 60);
            DrawUtils::drawSmoothPixmap(painter, place, Pictures::bell(240));
            if (count->value() == 0)
                return;
            painter->setRenderHint(QPainter::Antialiasing);
            const DrawingCountOptions options = redBadge(place);
            //! [measure]
            const QString text = QString::number(count->value());
            const QRect badge =
                DrawingCountZoneHelper::boundingRect(painter, text, options);
            painter->setPen(Qt::NoPen); // a white edge around the badge
            painter->setBrush(Qt::white);
            painter->drawRoundedRect(badge.adjusted(-2, -2, 2, 2), 10, 10);
            DrawingCountZoneHelper::paintCountZone(painter, text, options);
            //! [measure]
        });
    symbol->setObjectName(QStringLiteral("bell"));
    QObject::connect(
        count, static_cast<void (QSpinBox::*)(int)>(&QSpinBox::valueChanged),
        symbol, [symbol] { symbol->update(); });
    return Layouts::row(
        {symbol, Layouts::labelled(Page::tr("&Unread"), count)});
}

} // namespace

QVector<Exhibit> coloursExhibits()
{
    return {
        {Page::tr("Four kinds of message"), notifications(), "notification"},
        {Page::tr("Between two colours"), new Canvas(QSize(400, 40), drawRamp),
         "interpolate"},
        {Page::tr("From CSS and back"), cssColours(), "css"},
        {Page::tr("Badges"), new Canvas(QSize(400, 44), drawBadges), "badge"},
        {Page::tr("A badge on a picture"), unreadMessages(), "measure"},
    };
}
