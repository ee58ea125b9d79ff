// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ColorUtils.h"

#include <QStringList>

#include <cstdlib>

namespace {

int channelBetween(int a, int b, double t)
{
    const double value = a * (1 - t) + b * t;
    // NaN, or too far outside the range for an int.
    const int outside = -1;
    return value > -256 && value < 512 ? int(value) : outside;
}

// The parts inside "name(...)"; none if the text does not have that form.
QStringList functionParts(const QString& text, const QString& opening)
{
    if (!text.startsWith(opening, Qt::CaseInsensitive) || !text.endsWith(QLatin1Char(')')))
        return QStringList();
    return text.mid(opening.size(), text.size() - opening.size() - 1).split(QLatin1Char(','));
}

QColor opaqueColor(const QStringList& parts)
{
    return QColor(parts.at(0).toInt(), parts.at(1).toInt(), parts.at(2).toInt(), 255);
}

double alphaOf(const QString& part)
{
    const double alpha = part.toDouble();
    return alpha > 0 ? qMin(alpha, 1.0) : 0; // false for NaN, too
}

struct NotificationColors
{
    QColor text;
    QColor background;
};

NotificationColors notificationColors(ColorUtils::NotificationType type)
{
    switch (type) {
    case ColorUtils::Info:
        return {QColor(0x00, 0x52, 0x9B), QColor(0xBD, 0xE5, 0xF8)};
    case ColorUtils::Success:
        return {QColor(0x4F, 0x8A, 0x10), QColor(0xDF, 0xF2, 0xBF)};
    case ColorUtils::Warning:
        return {QColor(0x9F, 0x60, 0x00), QColor(0xFE, 0xEF, 0xB3)};
    case ColorUtils::Error:
        return {QColor(0xD8, 0x00, 0x0C), QColor(0xFF, 0xBA, 0xBA)};
    }
    return {QColor(Qt::black), QColor(Qt::black)};
}

} // namespace

ColorUtils::ColorUtils(QObject* parent)
    : QObject(parent)
{ }

QColor ColorUtils::bootstrapColorText(NotificationType type)
{
    return notificationColors(type).text;
}

QColor ColorUtils::bootstrapColorBackground(NotificationType type)
{
    return notificationColors(type).background;
}

QColor ColorUtils::grayColor(const QColor& color)
{
    const int gray = (11 * color.red() + 16 * color.green() + 5 * color.blue()) / 32;
    return QColor(gray, gray, gray, color.alpha());
}

QColor ColorUtils::randomColor()
{
    const int red = std::rand() % 255;
    const int green = std::rand() % 255;
    const int blue = std::rand() % 255;
    return QColor(red, green, blue, 255);
}

QColor ColorUtils::interpolate(QColor a, QColor b, double t)
{
    return QColor(channelBetween(a.red(), b.red(), t), channelBetween(a.green(), b.green(), t),
                  channelBetween(a.blue(), b.blue(), t), 255);
}

QString ColorUtils::colorToCss(const QColor& color)
{
    if (color.alphaF() == 1.0)
        return color.name();
    return QStringLiteral("rgba(%1,%2,%3,%4)")
        .arg(QString::number(color.red()), QString::number(color.green()),
             QString::number(color.blue()), QString::number(color.alphaF(), 'g', 6));
}

QColor ColorUtils::colorFromCss(const QString& text)
{
    const QStringList withAlpha = functionParts(text, QStringLiteral("rgba("));
    if (withAlpha.size() == 4) {
        QColor color = opaqueColor(withAlpha);
        if (color.isValid())
            color.setAlphaF(decltype(color.alphaF())(alphaOf(withAlpha.at(3))));
        return color;
    }
    const QStringList withoutAlpha = functionParts(text, QStringLiteral("rgb("));
    if (withoutAlpha.size() == 3)
        return opaqueColor(withoutAlpha);
    // QColor's parser prints a warning about an unknown name.
    return QColor::isValidColor(text) ? QColor(text) : QColor();
}
