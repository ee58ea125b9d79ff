// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ContactSheet: the pages that show all pictures of the site, small, each leading to the large one.

#ifndef CONTACTSHEET_H
#define CONTACTSHEET_H

#include "Published.h"
#include "Site.h"

#include <QCoreApplication>
#include <QString>
#include <QVector>

class ContactSheet
{
    Q_DECLARE_TR_FUNCTIONS(ContactSheet)

public:
    /// The pages of at most 200 pictures each. Those of a folder are shown together under its name,
    /// in their order. The first page is "index.html" where \a isFrontPage says so, otherwise
    /// "photographs.html", which leads to the shop.
    ///
    /// Each is one self-contained HTML document in UTF-8 that names its pictures relative to
    /// itself, so that it works from the disk as from a server. The same pictures give the same
    /// bytes.
    static QVector<SiteFile> files(const QString& title, const QVector<PublishedPicture>& pictures,
                                   bool isFrontPage);
};

#endif // CONTACTSHEET_H
