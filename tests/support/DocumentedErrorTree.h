// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The error tree that docs/errors.md shows. The code between the #line directives appears there
// verbatim, as the file that the directive names; a test compares the two.

#ifndef DOCUMENTEDERRORTREE_H
#define DOCUMENTEDERRORTREE_H

#include "Errorable.h"

#include <QObject>

#line 1 "copier.h"
class Copier : public QObject, public Errorable
{
public:
    void copy(const QString& photo)
    {
        // The disk is full.
        ErrorableCode copyFailed;
        copyFailed.context = QStringLiteral("Copier");
        copyFailed.code = 3;
        copyFailed.mEnumText = QStringLiteral("CopyFailed");
        copyFailed.details = photo;
        ORVAUTILS_SET_ERROR(copyFailed);
    }
};

#line 1 "exporter.h"
class Exporter : public QObject, public Errorable
{
public:
    Exporter() { ORVAUTILS_ADD_ERRORABLE_CHILD(mCopier); }

    void run() { mCopier.copy(QStringLiteral("beach.jpg")); }

    Copier mCopier;
};

#line 1 "document.h"
class Document : public QObject, public Errorable
{
public:
    explicit Document(QObject* window)
        : QObject(window)
    {
        ORVAUTILS_ADD_ERRORABLE_CHILD(mExporter);
    }

    void publish() { mExporter.run(); }

    Exporter mExporter;
};

#endif // DOCUMENTEDERRORTREE_H
