// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Template.h"

#include <FileUtils.h>
#include <HTMLUtils.h>

#include <QMetaType>
#include <QRegularExpression>
#include <QUrl>

namespace {

bool isSomething(const QVariant& value)
{
    switch (value.userType()) {
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::QVariantMap:
        return !value.toMap().isEmpty();
    case QMetaType::QVariantList:
        return !value.toList().isEmpty();
    default:
        return !value.toString().isEmpty();
    }
}

/// The values of a section, and its enclosing scope. Nothing is copied: a page has thousands.
struct Scope
{
    QVariantMap values;
    const Scope* outer;

    QVariant value(const QString& name) const
    {
        const auto found = values.constFind(name);
        if (found != values.constEnd())
            return found.value();
        return outer ? outer->value(name) : QVariant();
    }
};

QString filled(const QString& text, const Scope& scope);

QString filledFile(const QString& name, const Scope& scope)
{
    return filled(QString::fromUtf8(FileUtils::readFileContent(QLatin1String(":/pages/") + name)),
                  scope);
}

/// \a text for each value of a list, once for any other value that isSomething().
QString filledForEach(const QString& text, const Scope& scope, const QVariant& given)
{
    const bool isList = given.userType() == QMetaType::QVariantList;
    if (!isList && !isSomething(given))
        return QString();
    const QVariantList inner = isList ? given.toList() : QVariantList{given};
    QString page;
    for (const QVariant& values : inner)
        page += filled(text, {values.toMap(), &scope});
    return page;
}

QString filled(const QString& text, const Scope& scope)
{
    // A section, or the tag of a value or file. Tags of a section that are alone on their lines
    // leave no empty line.
    static const QRegularExpression marks(
        QStringLiteral("\\{\\{(?:"
                       "([#^])(\\w+)\\}\\}(?|\\n(.*?)\\{\\{/\\2\\}\\}\\n?|(.*?)\\{\\{/\\2\\}\\})"
                       "|([>{]?) ?([\\w.]+)\\}?\\}\\})"),
        QRegularExpression::DotMatchesEverythingOption);
    QString page;
    int end = 0;
    for (auto found = marks.globalMatch(text); found.hasNext();) {
        const QRegularExpressionMatch mark = found.next();
        page.append(text.constData() + end, mark.capturedStart() - end);
        end = int(mark.capturedEnd());
        const QString kind = mark.captured(1) + mark.captured(4);
        const QString name = mark.captured(2) + mark.captured(5);
        const QVariant value = scope.value(name);
        if (kind == QLatin1String("#"))
            page += filledForEach(mark.captured(3), scope, value);
        else if (kind == QLatin1String("^"))
            page += isSomething(value) ? QString() : filled(mark.captured(3), scope);
        else if (kind == QLatin1String(">"))
            page += filledFile(name, scope);
        else
            page += kind.isEmpty() ? HTMLUtils::escaped(value.toString()) : value.toString();
    }
    return page + text.mid(end);
}

} // namespace

QVariantMap Template::values(std::initializer_list<std::pair<const char*, QVariant>> values)
{
    QVariantMap map;
    for (const auto& value : values)
        map.insert(QLatin1String(value.first), value.second);
    return map;
}

QVariantMap Template::with(QVariantMap values, const QVariantMap& more)
{
    for (auto it = more.begin(); it != more.end(); ++it)
        values.insert(it.key(), it.value());
    return values;
}

QByteArray Template::fill(const QString& name, const QVariantMap& values)
{
    return filledFile(name, {values, nullptr}).toUtf8();
}

QString Template::address(const QString& place)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(place, QByteArrayLiteral("/")));
}
