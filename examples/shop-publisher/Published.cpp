// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Published.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

/// To be changed whenever the same photographs would give different pictures.
const QLatin1String recipe(SHOP_PUBLISHER_VERSION "-3");

QJsonArray sizeToJson(const QSize& size)
{
    return {size.width(), size.height()};
}

QSize sizeFromJson(const QJsonValue& json)
{
    const QJsonArray sides = json.toArray();
    return {sides.at(0).toInt(), sides.at(1).toInt()};
}

QJsonArray sizesToJson(const QVector<PictureSize>& sizes)
{
    QJsonArray json;
    for (const PictureSize& size : sizes)
        json.append(QJsonArray{size.place, size.width});
    return json;
}

QVector<PictureSize> sizesFromJson(const QJsonValue& json)
{
    QVector<PictureSize> sizes;
    const QJsonArray array = json.toArray();
    for (const QJsonValue& size : array)
        sizes.append({size.toArray().at(0).toString(), size.toArray().at(1).toInt()});
    return sizes;
}

QStringList textsFromJson(const QJsonValue& json)
{
    return json.toVariant().toStringList();
}

} // namespace

QStringList PublishedPicture::places() const
{
    QStringList places{QLatin1String("images/") + name, QLatin1String("thumbs/") + name};
    for (const QVector<PictureSize>& list : {sizes, webp}) {
        for (const PictureSize& size : list)
            places.append(size.place);
    }
    places.removeDuplicates();
    return places;
}

Published Published::fromJson(const QByteArray& json)
{
    Published published;
    const QJsonObject root = QJsonDocument::fromJson(json).object();
    published.project = root.value(QLatin1String("project")).toString();
    const bool isCurrent = root.value(QLatin1String("recipe")).toString() == recipe;
    published.shopPages = textsFromJson(root.value(QLatin1String("shopPages")));
    published.sheetPages = textsFromJson(root.value(QLatin1String("sheetPages")));
    const QJsonObject pictures = root.value(QLatin1String("pictures")).toObject();
    for (auto it = pictures.begin(); it != pictures.end(); ++it) {
        const QJsonObject object = it.value().toObject();
        Picture picture;
        picture.siteName = object.value(QLatin1String("name")).toString();
        const QJsonObject files = object.value(QLatin1String("files")).toObject();
        for (auto file = files.begin(); file != files.end(); ++file)
            picture.files.insert(file.key(), file.value().toString());
        for (const char* folder : {"images/", "thumbs/"}) // an older record does not name them
            picture.files[QLatin1String(folder) + picture.siteName];
        picture.imported = isCurrent && object.contains(QLatin1String("content"));
        if (picture.imported) {
            picture.stamp = object.value(QLatin1String("photograph")).toString();
            picture.content = object.value(QLatin1String("content")).toString();
            picture.ofProduct = object.value(QLatin1String("ofProduct")).toBool();
            picture.picture = {it.key(),
                               picture.siteName,
                               sizeFromJson(object.value(QLatin1String("imageSize"))),
                               sizeFromJson(object.value(QLatin1String("thumbSize"))),
                               sizesFromJson(object.value(QLatin1String("sizes"))),
                               sizesFromJson(object.value(QLatin1String("webp")))};
        }
        published.pictures.insert(it.key(), picture);
    }
    const QJsonObject copies = root.value(QLatin1String("static")).toObject();
    for (auto it = copies.begin(); it != copies.end(); ++it)
        published.staticFiles.insert(
            it.key(),
            {it.value().toArray().at(0).toString(), it.value().toArray().at(1).toString()});
    return published;
}

QByteArray Published::toJson() const
{
    QJsonObject copies;
    for (auto it = staticFiles.begin(); it != staticFiles.end(); ++it)
        copies.insert(it.key(), QJsonArray{it.value().first, it.value().second});
    QJsonObject list;
    for (auto it = pictures.begin(); it != pictures.end(); ++it) {
        const Picture& picture = it.value();
        QJsonObject files;
        for (auto file = picture.files.begin(); file != picture.files.end(); ++file)
            files.insert(file.key(), file.value());
        QJsonObject object{{QStringLiteral("name"), picture.siteName},
                           {QStringLiteral("files"), files}};
        if (picture.imported) {
            object.insert(QStringLiteral("photograph"), picture.stamp);
            object.insert(QStringLiteral("content"), picture.content);
            object.insert(QStringLiteral("ofProduct"), picture.ofProduct);
            object.insert(QStringLiteral("imageSize"), sizeToJson(picture.picture.imageSize));
            object.insert(QStringLiteral("thumbSize"), sizeToJson(picture.picture.thumbSize));
            object.insert(QStringLiteral("sizes"), sizesToJson(picture.picture.sizes));
            object.insert(QStringLiteral("webp"), sizesToJson(picture.picture.webp));
        }
        list.insert(it.key(), object);
    }
    return QJsonDocument(
               QJsonObject{{QStringLiteral("note"),
                            QStringLiteral("shop-publisher made this site; it replaces and removes "
                                           "the files below.")},
                           {QStringLiteral("recipe"), recipe},
                           {QStringLiteral("project"), project},
                           {QStringLiteral("shopPages"), QJsonArray::fromStringList(shopPages)},
                           {QStringLiteral("sheetPages"), QJsonArray::fromStringList(sheetPages)},
                           {QStringLiteral("static"), copies},
                           {QStringLiteral("pictures"), list}})
        .toJson();
}
