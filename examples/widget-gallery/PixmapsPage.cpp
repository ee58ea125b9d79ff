// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The page of pixmaps: tiles, and pictures made much smaller.

#include "Canvas.h"
#include "Page.h"
#include "Pages.h"
#include "Pictures.h"

#include <DrawUtils.h>

#include <QPainter>

namespace {

void drawTiles(QPainter* painter, const QRect& rect)
{
    const QPixmap pixmap = Pictures::wave(40);
    //! [tiled]
    DrawUtils::drawTiledPixmap(painter, pixmap, rect, rect, true, true);
    //! [tiled]
}

void drawTilesWithoutFirst(QPainter* painter, const QRect& rect)
{
    const QPixmap pixmap = Pictures::wave(40);
    const QRect half(0, 0, rect.width() / 2 - 6, rect.height());
    //! [first]
    // Room for a margin picture: no first column, then no first row
    DrawUtils::drawTiledPixmap(painter, pixmap, half, half, false, true);
    painter->translate(half.width() + 12, 0);
    DrawUtils::drawTiledPixmap(painter, pixmap, half, half, true, false);
    //! [first]
}

/// The same picture ever smaller, by \a draw.
template <typename Draw>
void drawSizes(QPainter* painter, const QRect& rect, Draw draw)
{
    const QPixmap print = Pictures::engraving(200);
    int left = 10;
    for (const int side : {100, 72, 48, 36, 24, 16}) {
        draw(painter, QRect(left, (rect.height() - side) / 2, side, side),
             print);
        left += side + 14;
    }
}

void drawSmooth(QPainter* painter, const QRect& rect)
{
    drawSizes(painter, rect,
              [](QPainter* canvas, const QRect& target, const QPixmap& pixmap) {
                  //! [smooth]
                  DrawUtils::drawSmoothPixmap(canvas, target, pixmap);
                  //! [smooth]
              });
}

void drawPlain(QPainter* painter, const QRect& rect)
{
    drawSizes(painter, rect,
              [](QPainter* canvas, const QRect& target, const QPixmap& pixmap) {
                  //! [plain]
                  // For comparison, Qt alone: lines are lost
                  canvas->drawPixmap(target, pixmap);
                  //! [plain]
              });
}

} // namespace

Page* makePixmapsPage(const QString& title)
{
    auto* page = new Page(title,
                          Page::tr("Backgrounds out of one tile, and "
                                   "thumbnails that keep their lines."),
                          QStringLiteral("PixmapsPage.cpp"));
    page->addSample(Page::tr("Tiled"), new Canvas(QSize(400, 100), drawTiles),
                    "tiled");
    page->addSample(Page::tr("Tiled without the first column or row"),
                    new Canvas(QSize(400, 100), drawTilesWithoutFirst),
                    "first");
    page->addSample(Page::tr("Smooth"), new Canvas(QSize(400, 120), drawSmooth),
                    "smooth");
    page->addSample(Page::tr("Not smooth"),
                    new Canvas(QSize(400, 120), drawPlain), "plain");
    return page;
}
