// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The page of colours: notifications, ramps, greys, and colours as CSS.

#include "Canvas.h"
#include "Layouts.h"
#include "Page.h"
#include "Pages.h"

#include <ColorUtils.h>
#include <DrawUtils.h>

#include <QLabel>
#include <QPainter>
#include <QVector>

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

void drawGreys(QPainter* painter, const QRect& rect)
{
    const int count = 12;
    for (int i = 0; i < count; ++i) {
        const int left = rect.width() * i / count;
        const int width = rect.width() * (i + 1) / count - left;
        const QRect upper(left, 0, width, rect.height() / 2);
        const QRect lower = upper.translated(0, rect.height() / 2);
        const QColor color = QColor::fromHsv(360 * i / count, 190, 225);
        //! [grey]
        painter->fillRect(upper, color);
        painter->fillRect(lower, ColorUtils::grayColor(color));
        //! [grey]
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

QWidget* randomColours()
{
    QVector<QColor> colors;
    for (int i = 0; i < 16; ++i) {
        //! [random]
        colors.append(ColorUtils::randomColor());
        //! [random]
    }
    return new Canvas(QSize(400, 22),
                      [colors](QPainter* painter, const QRect& rect) {
                          const int width = rect.width() / colors.size();
                          for (int i = 0; i < colors.size(); ++i)
                              painter->fillRect(i * width, 0, width,
                                                rect.height(), colors[i]);
                      });
}

} // namespace

Page* makeColoursPage(const QString& title)
{
    auto* page = new Page(title,
                          Page::tr("Messages of one kind have one colour in "
                                   "all programs of the family."),
                          QStringLiteral("ColoursPage.cpp"));
    page->addSample(Page::tr("Four kinds of message"), notifications(),
                    "notification");
    page->addSample(Page::tr("Between two colours"),
                    new Canvas(QSize(400, 40), drawRamp), "interpolate");
    page->addSample(Page::tr("The grey of a colour"),
                    new Canvas(QSize(400, 44), drawGreys), "grey");
    page->addSample(Page::tr("From CSS and back"), cssColours(), "css");
    page->addSample(Page::tr("Random colours"), randomColours(), "random");
    return page;
}
