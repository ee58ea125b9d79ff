// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ComputerIdentifier.h"

#include "stringhash_p.h"

#include <QNetworkInterface>

using namespace OrvaUtilsPrivate;

namespace {

QString preferredInterface()
{
    return QStringLiteral("en0");
}

} // namespace

QString ComputerIdentifier::productId()
{
    return QString();
}

QString ComputerIdentifier::primaryMACAddress()
{
    const QNetworkInterface preferred = QNetworkInterface::interfaceFromName(preferredInterface());
    if (preferred.isValid())
        return preferred.hardwareAddress();

    const QList<QNetworkInterface> interfaces = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface& candidate : interfaces) {
        QString address = candidate.hardwareAddress();
        if (!address.isEmpty())
            return address;
    }
    return QString();
}

QString ComputerIdentifier::uniqueIdentifier()
{
    const QString product = productId();
    const QString address = primaryMACAddress();
    return product.isEmpty() ? address : product + QLatin1Char('-') + address;
}

QString ComputerIdentifier::hashedUniqueIdentifier()
{
    return QString::number(stringHash(uniqueIdentifier()), 16);
}

void ComputerIdentifier::debug()
{
    qWarning("Product Id: %s", productId().toLocal8Bit().constData());
    qWarning("First MAC: %s", primaryMACAddress().toLocal8Bit().constData());
    qWarning("Unique Identifier: %s", uniqueIdentifier().toLocal8Bit().constData());
    qWarning("Hashed Unique Identifier: %s", hashedUniqueIdentifier().toLocal8Bit().constData());
}
