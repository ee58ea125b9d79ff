// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// PictureCheck: finds the reasons not to publish a picture, before anything is made of it.

#ifndef PICTURECHECK_H
#define PICTURECHECK_H

#include "Project.h"
#include "WorkItem.h"

#include <QCoreApplication>
#include <QString>

class QIODevice;

/// Why a picture is not published. Without a reason there is no defect.
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
    /// Checks the content of \a photograph, which decides its type, whatever a link to it is
    /// called. Of a picture that is to be decoded only the header is read; an SVG, which visitors
    /// get unchanged, is read to its end.
    static Defect defectOf(const Photograph& photograph);

    /// The maximum number of pixels of a photograph.
    static const qint64 maxPixels = 200000000;
};

/// Keeps SVG pictures with active content out of the site.
///
/// A browser that opens an SVG runs the scripts in it, with all the rights of the shop's own pages.
/// So only drawings pass: nothing that runs, nothing that is loaded from elsewhere, nothing that is
/// not SVG. Anything doubtful is refused.
class SvgGuard
{
    Q_DECLARE_TR_FUNCTIONS(SvgGuard)

public:
    /// Reads the picture in \a device, which is open, to its end or to the first thing that is
    /// refused. It passes as an SVG picture only if it is well-formed and names its namespace.
    static Defect defectOf(QIODevice* device);
};

#endif // PICTURECHECK_H
