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

QString filled(const QString& text, const QVariantMap& values);

QString filledFile(const QString& name, const QVariantMap& values)
{
    return filled(QString::fromUtf8(FileUtils::readFileContent(QLatin1String(":/pages/") + name)),
                  values);
}

/// \a text for each value of a list, once for any other that is something.
QString filledForEach(const QString& text, const QVariantMap& values, const QVariant& given)
{
    QVariantList scopes{given};
    if (given.userType() == QMetaType::QVariantList)
        scopes = given.toList();
    else if (!isSomething(given))
        return QString();
    QString page;
    for (const QVariant& scope : scopes)
        page += filled(text, Template::with(values, scope.toMap()));
    return page;
}

QString filled(const QString& text, const QVariantMap& values)
{
    // A section, or the mark of a value or file. The marks of a section that have their lines for
    // themselves leave none.
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
        const QVariant section = values.value(mark.captured(2));
        const QString name = mark.captured(5);
        if (mark.captured(1) == QLatin1String("#"))
            page += filledForEach(mark.captured(3), values, section);
        else if (mark.captured(1) == QLatin1String("^"))
            page += isSomething(section) ? QString() : filled(mark.captured(3), values);
        else if (mark.captured(4) == QLatin1String(">"))
            page += filledFile(name, values);
        else if (mark.captured(4) == QLatin1String("{"))
            page += values.value(name).toString();
        else
            page += HTMLUtils::escaped(values.value(name).toString());
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
    return filledFile(name, values).toUtf8();
}

QString Template::address(const QString& place)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(place, QByteArrayLiteral("/")));
}
