// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "filesystem_p.h"

#include <QFileInfo>
#include <QUuid>

namespace OrvaUtilsPrivate {

namespace {

/// A disk that becomes full takes a part; only the next attempt fails, and gives the reason.
bool writeAll(const char* bytes, qint64 size, QFile& destination)
{
    for (qint64 at = 0; at < size;) {
        const qint64 written = destination.write(bytes + at, size - at);
        if (written <= 0)
            return false;
        at += written;
    }
    return true;
}

} // namespace

bool copyPieces(QFile& source, QFile& destination, qint64 size)
{
    QByteArray piece(256 * 1024, Qt::Uninitialized);
    for (qint64 left = size; left != 0;) {
        const qint64 wanted = left < 0 ? piece.size() : qMin(left, qint64(piece.size()));
        const qint64 got = source.read(piece.data(), wanted);
        if (got == 0)
            return left < 0;
        if (got < 0 || !writeAll(piece.constData(), got, destination))
            return false;
        left -= left < 0 ? 0 : got;
    }
    return true;
}

bool copyRest(QFile& source, QFile& destination, QString* reason)
{
    if (copyPieces(source, destination))
        return true;
    const QFile& failed = source.error() != QFileDevice::NoError ? source : destination;
    *reason = failed.errorString();
    return false;
}

QString pathBeside(const QString& path)
{
    const QByteArray name = ".orvautils-" + QUuid::createUuid().toRfc4122().toHex();
    return QFileInfo(path).path() + QLatin1Char('/') + QLatin1String(name);
}

} // namespace OrvaUtilsPrivate
