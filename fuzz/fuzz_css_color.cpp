// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ColorUtils: colorFromCss() accepts exactly the texts of its grammar, and reads the output of
// colorToCss().

#include "ColorUtils.h"
#include "Fuzz.h"

#include <QRegularExpression>

#include <cmath>

namespace {

/// The parts of "NAME(a,b,…)" if there are \a count of them.
QStringList parts(const QString& text, const QString& name, int count)
{
    if (!text.startsWith(name + QLatin1Char('('), Qt::CaseInsensitive)
        || !text.endsWith(QLatin1Char(')')))
        return QStringList();
    const QStringList all =
        text.mid(name.size() + 1, text.size() - name.size() - 2).split(QLatin1Char(','));
    return all.size() == count ? all : QStringList();
}

bool inRange(const QStringList& rgb)
{
    for (int i = 0; i < 3; ++i) {
        if (rgb.at(i).toInt() < 0 || rgb.at(i).toInt() > 255)
            return false;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const QString text = remainingText(input);
    const QColor color = ColorUtils::colorFromCss(text);

    const QStringList rgba = parts(text, QStringLiteral("rgba"), 4);
    const QStringList rgb = rgba.isEmpty() ? parts(text, QStringLiteral("rgb"), 3) : rgba;
    if (!rgb.isEmpty()) {
        FUZZ_PROMISE(color.isValid() == inRange(rgb));
        if (color.isValid()) {
            FUZZ_PROMISE(color.red() == rgb.at(0).toInt() && color.green() == rgb.at(1).toInt()
                         && color.blue() == rgb.at(2).toInt());
            if (rgba.isEmpty())
                FUZZ_PROMISE(color.alpha() == 255);
        }
    } else if (text.startsWith(QLatin1Char('#'))) {
        static const QRegularExpression digits(QStringLiteral(
            "\\A#([0-9a-fA-F]{3}|[0-9a-fA-F]{6}|[0-9a-fA-F]{8,9}|[0-9a-fA-F]{12})\\z"));
        FUZZ_PROMISE(color.isValid() == digits.match(text).hasMatch());
    }
    if (!color.isValid())
        return 0;

    FUZZ_PROMISE(color.alphaF() >= 0 && color.alphaF() <= 1);
    const QColor again = ColorUtils::colorFromCss(ColorUtils::colorToCss(color));
    FUZZ_PROMISE(again.isValid() && again.red() == color.red() && again.green() == color.green()
                 && again.blue() == color.blue());
    FUZZ_PROMISE(std::abs(again.alphaF() - color.alphaF()) < 0.0001);
    return 0;
}
