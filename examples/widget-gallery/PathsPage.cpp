// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The page of rounded paths: each corner with a radius of its own.

#include "Canvas.h"
#include "Layouts.h"
#include "Page.h"
#include "Pages.h"
#include "Pictures.h"

#include <DrawUtils.h>

#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QSpinBox>
#include <QVector>

namespace {

void drawShapes(QPainter* painter, const QRect& rect)
{
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(QColor(0xdb, 0xea, 0xfe));
    painter->setPen(QPen(QColor(0x1d, 0x4e, 0x89), 2));
    const int width = rect.width() / 4;
    QRectF cell(14, 14, width - 28, rect.height() - 28);
    //! [shapes]
    // Top left, top right, bottom right, bottom left
    for (const QVector<int>& radii :
         {QVector<int>{20, 20, 20, 20}, QVector<int>{20, 20},
          QVector<int>{32, 0, 32, 0}, QVector<int>{0, 40, 8, 8}}) {
        painter->drawPath(DrawUtils::makePathRoundedShape(cell, radii));
        cell.translate(width, 0);
    }
    //! [shapes]
}

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

} // namespace

Page* makePathsPage(const QString& title)
{
    auto* page = new Page(
        title,
        Page::tr(
            "A quarter of a circle at each corner, each as large as you say."),
        QStringLiteral("PathsPage.cpp"));
    page->addSample(Page::tr("Four shapes"),
                    new Canvas(QSize(400, 110), drawShapes), "shapes");
    page->addSample(Page::tr("A picture in a shape"),
                    new Canvas(QSize(400, 146), drawClipped), "clip");
    page->addSample(Page::tr("Your own"), ownRadii(), "own");
    return page;
}
