// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ContactSheet: the page that shows all pictures of the site, small, each leading to the large one.

#ifndef CONTACTSHEET_H
#define CONTACTSHEET_H

#include "PictureImporter.h"

#include <QByteArray>
#include <QString>
#include <QVector>

class ContactSheet
{
public:
    explicit ContactSheet(const QString& title)
        : mTitle(title)
    { }

    /// The pictures of a folder are shown together under its name, in the order of adding.
    void add(const PublishedPicture& picture) { mPictures.append(picture); }

    /// The page, in UTF-8: one self-contained HTML document that names its pictures relative to
    /// itself, so that it works from the disk as from a server. The same pictures give the same
    /// bytes.
    QByteArray html() const;

private:
    QString mTitle;
    QVector<PublishedPicture> mPictures;
};

#endif // CONTACTSHEET_H
