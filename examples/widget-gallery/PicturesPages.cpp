// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The pages of operations on pixels: colours and greys, and transparency.

#include "Canvas.h"
#include "Layouts.h"
#include "Page.h"
#include "Pages.h"
#include "Pictures.h"

#include <DrawUtils.h>
#include <ImageUtils.h>

#include <QLabel>
#include <QPainter>
#include <QSlider>
#include <QVector>

namespace {

/// Draws \a pictures beside each other, each sharp at twice the density too.
void drawRow(QPainter* painter, const QRect& rect,
             const QVector<QPixmap>& pictures)
{
    const int cell = rect.width() / pictures.size();
    for (int i = 0; i < pictures.size(); ++i) {
        QSize size = pictures[i].size();
        size.scale(cell - 12, rect.height() - 16, Qt::KeepAspectRatio);
        QRect target(QPoint(), size);
        target.moveCenter(QPoint(cell * i + cell / 2, rect.center().y()));
        DrawUtils::drawSmoothPixmap(painter, target, pictures[i]);
    }
}

Canvas* pictureRow(int height, const QVector<QPixmap>& pictures,
                   bool chequered = false)
{
    return new Canvas(
        QSize(400, height),
        [pictures, chequered](QPainter* painter, const QRect& rect) {
            if (chequered)
                Pictures::drawChequerboard(painter, rect);
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

QWidget* halfColourisedSymbols()
{
    QVector<QPixmap> symbols;
    for (const int alpha : {255, 180, 110, 50}) {
        QPixmap pixmap = Pictures::lifebelt(128);
        //! [colorize]
        // The alpha of the colour scales that of the picture
        ImageUtils::colorize(pixmap, QColor(0, 82, 155, alpha));
        //! [colorize]
        symbols.append(pixmap);
    }
    return pictureRow(84, symbols, true);
}

QWidget* greySymbols()
{
    const QPixmap belt = Pictures::lifebelt(128);
    //! [grey-pixmap]
    const QPixmap disabled = ImageUtils::toGray(belt);
    //! [grey-pixmap]
    return pictureRow(84, {belt, disabled});
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

QWidget* opacities()
{
    QVector<QPixmap> pictures;
    for (const double opacity : {1.0, 0.75, 0.5, 0.25}) {
        QPixmap pixmap = Pictures::lifebelt(160);
        //! [opacity]
        ImageUtils::applyOpacity(pixmap, opacity); // 1, 0.75, 0.5, 0.25
        //! [opacity]
        pictures.append(pixmap);
    }
    return pictureRow(100, pictures, true);
}

QWidget* ownOpacity()
{
    auto* slider = new QSlider(Qt::Horizontal);
    slider->setObjectName(QStringLiteral("opacity"));
    slider->setRange(0, 100);
    slider->setValue(60);
    slider->setPageStep(10);
    slider->setMinimumWidth(300);
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

QWidget* canvasColours()
{
    const QImage image = Pictures::lifebelt(160).toImage();
    QVector<QPixmap> pictures;
    for (const QColor& color : {QColor(Qt::white), QColor(0xfe, 0xef, 0xb3),
                                QColor(0x24, 0x3b, 0x6b)}) {
        //! [canvas]
        const QImage filled =
            ImageUtils::createTransparentPixmap(image, color, 100);
        //! [canvas]
        pictures.append(QPixmap::fromImage(filled));
    }
    return pictureRow(100, pictures);
}

QWidget* transparentPixels()
{
    const QImage image = Pictures::lifebelt(64).toImage();
    const QImage photograph = Pictures::boat(QSize(64, 64)).toImage();
    //! [transparent]
    const bool belt = ImageUtils::hasTransparentPixel(image);
    const bool boat = ImageUtils::hasTransparentPixel(photograph);
    //! [transparent]
    const auto answer = [](bool yes) {
        return yes ? Page::tr("has") : Page::tr("has not");
    };
    return Layouts::plainText(
        Page::tr("The lifebelt %1 transparent pixels, the boat %2.")
            .arg(answer(belt), answer(boat)));
}

} // namespace

Page* makePicturesPage(const QString& title)
{
    auto* page = new Page(title,
                          Page::tr("One symbol for every colour, and a grey "
                                   "one for what is switched off."),
                          QStringLiteral("PicturesPages.cpp"));
    page->addSample(Page::tr("Colourised"), colourisedSymbols(), "colorized");
    page->addSample(Page::tr("Colourised with a translucent colour"),
                    halfColourisedSymbols(), "colorize");
    page->addSample(Page::tr("A grey symbol"), greySymbols(), "grey-pixmap");
    page->addSample(Page::tr("A grey photograph"), greyPhotograph(),
                    "grey-image");
    return page;
}

Page* makeTransparencyPage(const QString& title)
{
    auto* page = new Page(
        title,
        Page::tr("The chequerboard shows through where a picture lets it."),
        QStringLiteral("PicturesPages.cpp"));
    page->addSample(Page::tr("Ever less opaque"), opacities(), "opacity");
    page->addSample(Page::tr("Your own"), ownOpacity(), "own");
    page->addSample(Page::tr("On a colour"), canvasColours(), "canvas");
    page->addSample(Page::tr("Is anything transparent?"), transparentPixels(),
                    "transparent");
    return page;
}
