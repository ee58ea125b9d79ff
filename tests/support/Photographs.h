// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Photographs: the folder of real photographs, the values that other readers report for them, and
// these readers. The folder and the readers may be missing; tests then skip what needs them.

#ifndef PHOTOGRAPHS_H
#define PHOTOGRAPHS_H

#include "Sandbox.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QStringList>

inline QString photosFolder()
{
    return QStringLiteral(ORVAUTILS_PHOTOS_DIR);
}

/// The reported values by file name; empty if the folder is missing.
inline QJsonObject expectedPhotos()
{
    const QByteArray json = contentOf(photosFolder() + QStringLiteral("/expected.json"));
    return QJsonDocument::fromJson(json).object()[QStringLiteral("files")].toObject();
}

/// The standard output of a program; empty if it cannot be run.
inline QByteArray outputOf(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(60000))
        return QByteArray();
    return process.readAllStandardOutput();
}

#endif // PHOTOGRAPHS_H
