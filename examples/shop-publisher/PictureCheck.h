// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// PictureCheck: what keeps a picture out of the site, found before anything is made of it.

#ifndef PICTURECHECK_H
#define PICTURECHECK_H

#include "Project.h"
#include "WorkItem.h"

#include <QCoreApplication>
#include <QString>

/// Why a picture is not published. Without a reason nothing is wrong.
struct Defect
{
    WorkItem::Failure failure = WorkItem::Unsuitable;
    QString reason;

    explicit operator bool() const { return !reason.isEmpty(); }
};

class PictureCheck
{
    Q_DECLARE_TR_FUNCTIONS(PictureCheck)

public:
    /// Looks at the content of \a photograph, which decides what it is, whatever a link to it is
    /// called. Of a picture that is to be decoded only the header is read; an SVG, which visitors
    /// get as it is, is read to its end.
    static Defect defectOf(const Photograph& photograph);

    /// The most pixels that a photograph may have.
    static const qint64 maxPixels = 200000000;

private:
    static Defect svgDefect(const QString& path);
    static Defect sizeDefect(const QString& path);
};

#endif // PICTURECHECK_H
