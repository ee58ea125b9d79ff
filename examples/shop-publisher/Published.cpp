// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Published.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

/// Whatever changes the pictures that are made of the same photographs changes this.
const QLatin1String recipe(SHOP_PUBLISHER_VERSION "-1");

QJsonArray sizeToJson(const QSize& size)
{
    return {size.width(), size.height()};
}

QSize sizeFromJson(const QJsonValue& json)
{
    const QJsonArray sides = json.toArray();
    return {sides.at(0).toInt(), sides.at(1).toInt()};
}

} // namespace

Published Published::fromJson(const QByteArray& json)
{
    Published published;
    const QJsonObject root = QJsonDocument::fromJson(json).object();
    published.project = root.value(QLatin1String("project")).toString();
    const bool isCurrent = root.value(QLatin1String("recipe")).toString() == recipe;
    const QJsonObject pictures = root.value(QLatin1String("pictures")).toObject();
    for (auto it = pictures.begin(); it != pictures.end(); ++it) {
        const QJsonObject object = it.value().toObject();
        Picture picture;
        picture.siteName = object.value(QLatin1String("name")).toString();
        picture.imported = isCurrent && object.contains(QLatin1String("content"));
        if (picture.imported) {
            picture.stamp =
                FileStamp::fromText(object.value(QLatin1String("photograph")).toString());
            picture.content = object.value(QLatin1String("content")).toString().toLatin1();
            picture.image = FileStamp::fromText(object.value(QLatin1String("image")).toString());
            picture.thumb = FileStamp::fromText(object.value(QLatin1String("thumb")).toString());
            picture.picture = {it.key(), picture.siteName,
                               sizeFromJson(object.value(QLatin1String("imageSize"))),
                               sizeFromJson(object.value(QLatin1String("thumbSize")))};
        }
        published.pictures.insert(it.key(), picture);
    }
    return published;
}

QByteArray Published::toJson() const
{
    QJsonObject list;
    for (auto it = pictures.begin(); it != pictures.end(); ++it) {
        const Picture& picture = it.value();
        QJsonObject object{{QStringLiteral("name"), picture.siteName}};
        if (picture.imported) {
            object.insert(QStringLiteral("photograph"), picture.stamp.toText());
            object.insert(QStringLiteral("content"), QString::fromLatin1(picture.content));
            object.insert(QStringLiteral("image"), picture.image.toText());
            object.insert(QStringLiteral("thumb"), picture.thumb.toText());
            object.insert(QStringLiteral("imageSize"), sizeToJson(picture.picture.imageSize));
            object.insert(QStringLiteral("thumbSize"), sizeToJson(picture.picture.thumbSize));
        }
        list.insert(it.key(), object);
    }
    return QJsonDocument(
               QJsonObject{{QStringLiteral("note"),
                            QStringLiteral("shop-publisher made this site; it replaces and removes "
                                           "the pictures below.")},
                           {QStringLiteral("recipe"), recipe},
                           {QStringLiteral("project"), project},
                           {QStringLiteral("pictures"), list}})
        .toJson();
}
