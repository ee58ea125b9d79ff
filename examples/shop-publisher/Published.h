// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Published: what earlier runs have published into a site.

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
    QSize thumbSize; ///< size in CSS pixels at which the thumbnail is meant to be shown
    QVector<PictureSize> sizes; ///< the thumbnail, and for a product further sizes, ascending
    QVector<PictureSize> webp; ///< the same in WebP, if that is much smaller

    /// The paths of all its files in the site.
    QStringList places() const;
};

/// It is stored in the site as a file that records which pictures belong to the program: they are
/// removed when their photograph is, and one that has not changed is not made again.
struct Published
{
    struct Picture
    {
        QString stamp; ///< of the photograph, before it was read
        QString content; ///< its SHA-1, in hexadecimal digits
        QString siteName;
        bool imported = false; ///< false: it failed, and would fail again
        bool ofProduct = false;
        QMap<QString, QString> files; ///< stamps by path; empty for a file that may not exist
        PublishedPicture picture; ///< if it was imported
    };

    /// The name of the file in the site.
    static QString fileName() { return QStringLiteral(".shop-publisher.json"); }

    /// Reads what toJson() wrote. In a site that is not the program's own, nothing is published.
    /// Pictures that another version of the program made are known, and are made again.
    static Published fromJson(const QByteArray& json);
    QByteArray toJson() const;

    bool anything = false; ///< this process has completed a run
    QString project; ///< distinguishes projects; empty if none was published
    QMap<QString, Picture> pictures; ///< by the name of the photograph
    QMap<QString, QPair<QString, QString>> staticFiles; ///< stamps of each and of its copy, by name
    QStringList shopPages; ///< the files of the shop in the site; none without a shop
    QStringList sheetPages; ///< those of the contact sheet
};

#endif // PUBLISHED_H
