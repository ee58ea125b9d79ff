// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Template.h"

#include <FileUtils.h>
#include <HTMLUtils.h>

#include <QMetaType>
#include <QUrl>
#include <QVector>

namespace {

QString textOf(const QString& name)
{
    return QString::fromUtf8(FileUtils::readFileContent(QLatin1String(":/pages/") + name));
}

class Filling
{
public:
    void add(const QString& text)
    {
        int at = 0;
        for (int open = int(text.indexOf(QLatin1String("{{"))); open >= 0;
             open = int(text.indexOf(QLatin1String("{{"), at))) {
            mPage.append(text.constData() + at, open - at);
            const bool isRaw = text.mid(open, 3) == QLatin1String("{{{");
            const QString end = isRaw ? QStringLiteral("}}}") : QStringLiteral("}}");
            const int close = int(text.indexOf(end, open));
            const QString name = text.mid(open + end.size(), close - open - end.size());
            at = int(close + end.size());
            const QString rest = name.mid(1);
            if (name.startsWith(QLatin1Char('>')))
                add(textOf(rest.trimmed()));
            else if (name.startsWith(QLatin1Char('#')) || name.startsWith(QLatin1Char('^')))
                at = addSection(text, at, rest, name.startsWith(QLatin1Char('^')));
            else
                mPage +=
                    isRaw ? value(name).toString() : HTMLUtils::escaped(value(name).toString());
        }
        mPage.append(text.constData() + at, text.size() - at);
    }

    QString mPage;
    QVector<QVariantMap> mScopes;

private:
    /// \a begin is behind the mark that opens it; returns the place behind the one that closes it.
    int addSection(const QString& text, int begin, const QString& name, bool isOfNone)
    {
        const QString mark = QLatin1String("{{/") + name + QLatin1String("}}");
        const int end = int(text.indexOf(mark, begin));
        // A mark that has its line for itself leaves none.
        const int first = text.mid(begin, 1) == QLatin1String("\n") ? begin + 1 : begin;
        const int after = int(end + mark.size());
        const bool isLine = first > begin && text.mid(after, 1) == QLatin1String("\n");
        const QString section = text.mid(first, end - first);
        const QVariant given = value(name);
        const bool isList = given.userType() == QMetaType::QVariantList
            || given.userType() == QMetaType::QStringList;
        if (isList && !isOfNone) {
            const QVariantList list = given.toList();
            for (const QVariant& one : list)
                addIn(one, section);
        } else if (isOfNone != isSomething(given)) {
            addIn(given, section);
        }
        return isLine ? after + 1 : after;
    }

    void addIn(const QVariant& scope, const QString& section)
    {
        mScopes.append(scope.toMap());
        add(section);
        mScopes.removeLast();
    }

    static bool isSomething(const QVariant& value)
    {
        if (value.userType() == QMetaType::Bool)
            return value.toBool();
        if (value.userType() == QMetaType::QVariantMap
            || value.userType() == QMetaType::QVariantList)
            return !value.toMap().isEmpty() || !value.toList().isEmpty();
        return !value.toString().isEmpty();
    }

    QVariant value(const QString& name) const
    {
        for (int i = int(mScopes.size() - 1); i >= 0; --i) {
            const auto found = mScopes.at(i).constFind(name);
            if (found != mScopes.at(i).constEnd())
                return found.value();
        }
        return QVariant();
    }
};

} // namespace

QVariantMap Template::values(std::initializer_list<std::pair<const char*, QVariant>> values)
{
    QVariantMap map;
    for (const auto& value : values)
        map.insert(QLatin1String(value.first), value.second);
    return map;
}

QByteArray Template::fill(const QString& name, const QVariantMap& values)
{
    Filling filling;
    filling.mScopes.append(values);
    filling.add(textOf(name));
    return filling.mPage.toUtf8();
}

QString Template::address(const QString& place)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(place, QByteArrayLiteral("/")));
}
