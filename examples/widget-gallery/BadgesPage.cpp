// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The page of badges: counts, places, looks, and one that the user changes.

#include "Canvas.h"
#include "Layouts.h"
#include "Page.h"
#include "Pages.h"
#include "Pictures.h"

#include <DrawUtils.h>
#include <DrawingCountZoneHelper.h>

#include <QPainter>
#include <QSpinBox>

namespace {

DrawingCountOptions redBadge(const QRect& rect)
{
    DrawingCountOptions options;
    options.rect = rect;
    options.firstBackgroundColor = QColor(0xe5, 0x39, 0x35);
    options.secondBackgroundColor = QColor(0xb7, 0x1c, 0x1c);
    options.textColor = Qt::white;
    return options;
}

void drawCounts(QPainter* painter, const QRect& rect)
{
    const QStringList texts = {QStringLiteral("1"), QStringLiteral("12"),
                               QStringLiteral("128"), QStringLiteral("1024"),
                               QStringLiteral("99+")};
    QRect cell(0, 0, rect.width() / texts.size(), rect.height());
    for (const QString& text : texts) {
        //! [count]
        DrawingCountOptions options;
        options.rect = cell; // the badge stands in its middle
        options.firstBackgroundColor = QColor(0xe5, 0x39, 0x35);
        options.secondBackgroundColor = QColor(0xb7, 0x1c, 0x1c);
        options.textColor = Qt::white;
        DrawingCountZoneHelper::paintCountZone(painter, text, options);
        //! [count]
        cell.translate(cell.width(), 0);
    }
}

void drawPlaces(QPainter* painter, const QRect& rect)
{
    const Qt::Alignment columns[] = {Qt::AlignLeft, Qt::AlignHCenter,
                                     Qt::AlignRight};
    const Qt::Alignment rows[] = {Qt::AlignTop, Qt::AlignVCenter,
                                  Qt::AlignBottom};
    int count = 0;
    for (const Qt::Alignment vertical : rows) {
        for (const Qt::Alignment horizontal : columns) {
            const QString text = QString::number(++count);
            DrawingCountOptions options = redBadge(rect);
            //! [alignment]
            options.alignment = horizontal | vertical;
            options.margin = 6; // pixels kept free at the edges
            DrawingCountZoneHelper::paintCountZone(painter, text, options);
            //! [alignment]
        }
    }
}

void drawLooks(QPainter* painter, const QRect& rect)
{
    const QString text = QStringLiteral("128");
    QRect cell(0, 0, rect.width() / 4, rect.height());

    DrawingCountOptions plain;
    plain.rect = cell;
    DrawingCountZoneHelper::paintCountZone(painter, text, plain);

    cell.translate(cell.width(), 0);
    DrawingCountOptions outlined;
    outlined.rect = cell;
    outlined.textColor = outlined.borderColor = QColor(0x00, 0x52, 0x9b);
    DrawingCountZoneHelper::paintCountZone(painter, text, outlined);

    cell.translate(cell.width(), 0);
    DrawingCountOptions options;
    options.rect = cell;
    //! [look]
    options.firstBackgroundColor = QColor(0xff, 0xf3, 0xc4); // at the top
    options.secondBackgroundColor = QColor(0xff, 0xc1, 0x07); // from the middle
    options.borderColor = QColor(0xb2, 0x84, 0x00);
    options.textColor = QColor(0x4a, 0x36, 0x00);
    //! [look]
    DrawingCountZoneHelper::paintCountZone(painter, text, options);

    cell.translate(cell.width(), 0);
    DrawingCountOptions even;
    even.rect = cell;
    even.firstBackgroundColor = even.secondBackgroundColor =
        QColor(0x2e, 0x7d, 0x32);
    even.textColor = Qt::white;
    QFont font = painter->font();
    font.setPixelSize(20);
    painter->setFont(font);
    DrawingCountZoneHelper::paintCountZone(painter, text, even);
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
            DrawingCountOptions options = redBadge(place);
            options.alignment = Qt::AlignRight | Qt::AlignTop;
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

Page* makeBadgesPage(const QString& title)
{
    auto* page = new Page(
        title,
        Page::tr("A count that reads as a pill, at any place of a rectangle."),
        QStringLiteral("BadgesPage.cpp"));
    page->addSample(Page::tr("Counts"), new Canvas(QSize(400, 44), drawCounts),
                    "count");
    page->addSample(Page::tr("Nine places"),
                    new Canvas(QSize(400, 110), drawPlaces), "alignment");
    page->addSample(Page::tr("Looks"), new Canvas(QSize(400, 56), drawLooks),
                    "look");
    page->addSample(Page::tr("One that changes"), unreadMessages(), "measure");
    return page;
}
