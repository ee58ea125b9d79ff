// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// SvgGuard: keeps SVG pictures that could do something out of the site.
//
// A browser that is pointed at an SVG runs the scripts in it, with all the rights of the shop's own
// pages. So only drawings pass: nothing that runs, nothing that is loaded from elsewhere, nothing
// that is not SVG. What is doubtful is refused.

#ifndef SVGGUARD_H
#define SVGGUARD_H

#include <QCoreApplication>
#include <QString>

class QIODevice;
class QXmlStreamReader;
class QXmlStreamAttribute;

class SvgGuard
{
    Q_DECLARE_TR_FUNCTIONS(SvgGuard)

public:
    struct Verdict
    {
        QString reason; ///< why it is refused; empty where it is fine
        bool isBroken = false; ///< it is no SVG picture, rather than one that is refused
    };

    /// Reads the picture in \a device, which is open, to its end or to the first thing that is
    /// refused. It may be an SVG picture only when it is well-formed and names its namespace.
    static Verdict judge(QIODevice* device);

private:
    static QString elementReason(const QXmlStreamReader& xml);
    static QString attributeReason(const QXmlStreamAttribute& attribute);
    static QString styleReason(const QString& css);
};

#endif // SVGGUARD_H
