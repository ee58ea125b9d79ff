// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ContactSheet: the page that shows all pictures of the site, small, each leading to the large one.

#ifndef CONTACTSHEET_H
#define CONTACTSHEET_H

#include "PictureImporter.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QPair>
#include <QString>
#include <QVector>

class ContactSheet
{
    Q_DECLARE_TR_FUNCTIONS(ContactSheet)

public:
    explicit ContactSheet(const QString& title)
        : mTitle(title)
    { }

    /// The pictures of a folder are shown together under its name, in the order of adding.
    void add(const PublishedPicture& picture) { mPictures.append(picture); }

    /// A link to another page of the site at the head of this one.
    void link(const QString& place, const QString& label) { mLinks.append({place, label}); }

    /// The page, in UTF-8: one self-contained HTML document that names its pictures relative to
    /// itself, so that it works from the disk as from a server. The same pictures give the same
    /// bytes.
    QByteArray html() const;

private:
    QString mTitle;
    QVector<PublishedPicture> mPictures;
    QVector<QPair<QString, QString>> mLinks;
};

#endif // CONTACTSHEET_H
