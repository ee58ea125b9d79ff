// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Published: what the runs so far have published into a site.

#ifndef PUBLISHED_H
#define PUBLISHED_H

#include <QByteArray>
#include <QMap>
#include <QPair>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QVector>

/// One of the sizes of a picture.
struct PictureSize
{
    QString place; ///< in the site
    int width; ///< pixels
};

/// What the pages need to know of a picture of the site.
struct PublishedPicture
{
    QString photograph; ///< path of the photograph below the photographs' folder
    QString name; ///< path below SITE/images and SITE/thumbs
    QSize imageSize; ///< pixels of the large picture; for an SVG its nominal size
    QSize thumbSize; ///< size in CSS pixels at which the small picture is meant to be shown
    QVector<PictureSize> sizes; ///< the small one, and for a product further ones, ascending
    QVector<PictureSize> webp; ///< the same in WebP, where that is much smaller

    /// The places of all its files.
    QStringList places() const;
};

/// It lies in the site as a file that tells the program which pictures are its own: they go when
/// their photograph goes, and one that has not changed is not made again.
struct Published
{
    struct Picture
    {
        QString stamp; ///< of the photograph, before it was read
        QString content; ///< its SHA-1, in hexadecimal digits
        QString siteName;
        bool imported = false; ///< false: it failed, and would again
        bool ofProduct = false;
        QMap<QString, QString> files; ///< stamps by place; empty of one that may not be there
        PublishedPicture picture; ///< where it was imported
    };

    /// Under this name it lies in the site.
    static QString fileName() { return QStringLiteral(".shop-publisher.json"); }

    /// Reads what toJson() wrote. Nothing is published in a site of anybody else. Pictures that an
    /// other version of the program made are known, and are made again.
    static Published fromJson(const QByteArray& json);
    QByteArray toJson() const;

    bool anything = false; ///< this process has completed a run
    QString project; ///< tells projects apart; empty where none was published
    QMap<QString, Picture> pictures; ///< by the name of the photograph
    QMap<QString, QPair<QString, QString>> staticFiles; ///< stamps of each and of its copy, by name
    QStringList shopPages; ///< the files of the shop in the site, none without one
    QStringList sheetPages; ///< those of the contact sheet
};

#endif // PUBLISHED_H
