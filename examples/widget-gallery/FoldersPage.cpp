// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The page of folders that are too long for their place.

#include "Canvas.h"
#include "Layouts.h"
#include "Page.h"
#include "Pages.h"

#include <FileUtils.h>

#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QSlider>

namespace {

const int rowHeight = 26;

/// \a text in a box of \a width pixels.
void drawBox(QPainter* painter, const QPoint& place, const QString& text,
             int width)
{
    const int padding = 4;
    const QRect box(place, QSize(width + 2 * padding, 20));
    painter->fillRect(box, QColor(0xe8, 0xf1, 0xfb));
    painter->drawText(box.adjusted(padding, 0, -padding, 0),
                      Qt::AlignLeft | Qt::AlignVCenter, text);
}

void drawWidths(QPainter* painter, const QRect& rect)
{
    Q_UNUSED(rect)
    QString path =
        QStringLiteral("/home/ann/Pictures/harbour/2026/boats/red-sail.jpg");
    QPoint place(6, 8);
    for (const int width : {376, 300, 220, 140, 90, 60, 30}) {
        //! [elided]
        // width is 376, 300, 220, 140, 90, 60, 30 pixels
        const QString text =
            FileUtils::elidedFolder(painter->fontMetrics(), path, width);
        //! [elided]
        drawBox(painter, place, text, width);
        place.ry() += rowHeight;
    }
}

QWidget* ownFolder()
{
    auto* path =
        new QLineEdit(QStringLiteral("/srv/shop/images/summer/beach.jpg"));
    path->setObjectName(QStringLiteral("path"));
    path->setMinimumWidth(270);
    path->setCursorPosition(0);
    auto* width = new QSlider(Qt::Horizontal);
    width->setObjectName(QStringLiteral("width"));
    width->setRange(10, 380);
    width->setValue(170);
    width->setPageStep(20);
    width->setMinimumWidth(270);
    auto* canvas = new Canvas(
        QSize(400, 36), [path, width](QPainter* painter, const QRect&) {
            //! [own]
            QString folder = path->text();
            const QString text = FileUtils::elidedFolder(
                painter->fontMetrics(), folder, width->value());
            //! [own]
            drawBox(painter, QPoint(6, 8), text, width->value());
        });
    canvas->setObjectName(QStringLiteral("folderCanvas"));
    const auto redraw = [canvas] { canvas->update(); };
    QObject::connect(path, &QLineEdit::textChanged, canvas, redraw);
    QObject::connect(width, &QSlider::valueChanged, canvas, redraw);
    return Layouts::column({canvas,
                            Layouts::form({{Page::tr("&Folder"), path},
                                           {Page::tr("&Width"), width}})});
}

QWidget* parts()
{
    const QString path = QStringLiteral("/home/ann/Pictures/harbour");
    //! [parts]
    const QString parent = FileUtils::parentFolder(path);
    const QString name = FileUtils::nameOfLastPartFolder(path);
    //! [parts]
    return Layouts::column(
        {Layouts::plainText(path),
         Layouts::plainText(parent + QStringLiteral("   +   ") + name)});
}

} // namespace

Page* makeFoldersPage(const QString& title)
{
    auto* page = new Page(title,
                          Page::tr("A path loses whole folders at its left, so "
                                   "that its end can be read."),
                          QStringLiteral("FoldersPage.cpp"));
    page->addSample(Page::tr("One path, seven widths"),
                    new Canvas(QSize(400, 8 + 7 * rowHeight), drawWidths),
                    "elided");
    page->addSample(Page::tr("Your own"), ownFolder(), "own");
    page->addSample(Page::tr("The folder and its name"), parts(), "parts");
    return page;
}
