// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The page on pictures: coloured, grey, translucent, and scaled; and on the
// metadata of a photograph.

#include "Canvas.h"
#include "Layouts.h"
#include "Page.h"
#include "Pages.h"
#include "Pictures.h"

#include <DrawUtils.h>
#include <ExifEditor.h>
#include <ImageUtils.h>

#include <QDebug>
#include <QLabel>
#include <QPainter>
#include <QSlider>
#include <QVector>

namespace {

/// Draws \a pictures side by side, each sharp at twice the density, too.
void drawRow(QPainter* painter, const QRect& rect,
             const QVector<QPixmap>& pictures)
{
    const int cell = int(rect.width() / pictures.size());
    for (int i = 0; i < pictures.size(); ++i) {
        QSize size = pictures[i].size();
        size.scale(cell - 12, rect.height() - 16, Qt::KeepAspectRatio);
        QRect target(QPoint(), size);
        target.moveCenter(QPoint(cell * i + cell / 2, rect.center().y()));
        DrawUtils::drawSmoothPixmap(painter, target, pictures[i]);
    }
}

Canvas* pictureRow(int height, const QVector<QPixmap>& pictures)
{
    return new Canvas(QSize(400, height),
                      [pictures](QPainter* painter, const QRect& rect) {
                          drawRow(painter, rect, pictures);
                      });
}

QWidget* colourisedSymbols()
{
    const QPixmap bell = Pictures::bell(128);
    QVector<QPixmap> symbols = {bell};
    for (const char* name : {"#00529B", "#4F8A10", "#9F6000", "#D8000C"}) {
        const QColor color(QString::fromLatin1(name));
        //! [colorized]
        // The shape stays, the colours go
        symbols.append(ImageUtils::colorized(bell, color));
        //! [colorized]
    }
    return pictureRow(76, symbols);
}

QWidget* greyPhotograph()
{
    const QImage image = Pictures::boat(QSize(384, 240)).toImage();
    //! [grey-image]
    // (11 red + 16 green + 5 blue) / 32
    const QImage grey = ImageUtils::toGray(image);
    //! [grey-image]
    return pictureRow(134,
                      {QPixmap::fromImage(image), QPixmap::fromImage(grey)});
}

QWidget* ownOpacity()
{
    auto* slider =
        Layouts::slider(QStringLiteral("opacity"), {0, 100, 60, 10, 300});
    auto* canvas = new Canvas(
        QSize(400, 120), [slider](QPainter* painter, const QRect& rect) {
            Pictures::drawChequerboard(painter, rect);
            QImage image = Pictures::boat(QSize(336, 210)).toImage();
            //! [own]
            ImageUtils::applyOpacity(image, slider->value() / 100.0);
            //! [own]
            drawRow(painter, rect, {QPixmap::fromImage(image)});
        });
    canvas->setObjectName(QStringLiteral("opacityCanvas"));
    QObject::connect(slider, &QSlider::valueChanged, canvas,
                     [canvas] { canvas->update(); });
    return Layouts::column(
        {canvas, Layouts::labelled(Page::tr("&Opacity"), slider)});
}

void drawSizes(QPainter* painter, const QRect& rect)
{
    const QPixmap print = Pictures::engraving(200);
    const QPoint down(0, rect.height() / 2);
    QPoint place(10, 10);
    for (const int side : {100, 72, 48, 36, 24, 16}) {
        const QRect target(place, QSize(side, side));
        //! [smooth]
        DrawUtils::drawSmoothPixmap(painter, target, print);
        // For comparison, Qt alone: the lower row loses lines
        painter->drawPixmap(target.translated(down), print);
        //! [smooth]
        place.rx() += side + 14;
    }
}

QWidget* whatPhotographsTell()
{
    QString text;
    //! [tags]
    ExifEditor photograph; // or that of a file: load()
    photograph.setOrientation(6);
    const auto tags = photograph.imageTags();
    for (const auto tag : tags)
        QDebug(&text) << photograph.value(tag);
    //! [tags]
    return Layouts::plainText(text);
}

} // namespace

QVector<Exhibit> picturesExhibits()
{
    return {
        {Page::tr("Colourised"), colourisedSymbols(), "colorized"},
        {Page::tr("Grey"), greyPhotograph(), "grey-image"},
        {Page::tr("Your own opacity"), ownOpacity(), "own"},
        {Page::tr("Scaled smoothly, and not"),
         new Canvas(QSize(400, 236), drawSizes), "smooth"},
        {Page::tr("What photographs tell"), whatPhotographsTell(), "tags"},
    };
}
