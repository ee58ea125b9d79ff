// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// PictureCheck: what keeps a picture out of the site, found before anything is made of it.

#ifndef PICTURECHECK_H
#define PICTURECHECK_H

#include "Project.h"
#include "WorkItem.h"

#include <QCoreApplication>
#include <QString>

class QIODevice;

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
};

/// Keeps SVG pictures that could do something out of the site.
///
/// A browser that is pointed at an SVG runs the scripts in it, with all the rights of the shop's
/// own pages. So only drawings pass: nothing that runs, nothing that is loaded from elsewhere,
/// nothing that is not SVG. What is doubtful is refused.
class SvgGuard
{
    Q_DECLARE_TR_FUNCTIONS(SvgGuard)

public:
    /// Reads the picture in \a device, which is open, to its end or to the first thing that is
    /// refused. It may be an SVG picture only when it is well-formed and names its namespace.
    static Defect defectOf(QIODevice* device);
};

#endif // PICTURECHECK_H
