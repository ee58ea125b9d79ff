// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Photographs: the folder of real photographs, what other readers say of them, and these readers
// themselves. Folder and readers may be absent; tests then skip what needs them.

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

/// What the readers say of the photographs, by file name; empty where the folder is absent.
inline QJsonObject expectedPhotos()
{
    const QByteArray json = contentOf(photosFolder() + QStringLiteral("/expected.json"));
    return QJsonDocument::fromJson(json).object()[QStringLiteral("files")].toObject();
}

/// The standard output of a program; empty where it cannot be run.
inline QByteArray outputOf(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(60000))
        return QByteArray();
    return process.readAllStandardOutput();
}

#endif // PHOTOGRAPHS_H
