// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "NetUtils.h"

#include "processstate_p.h"

#include <QHostAddress>
#include <QNetworkInterface>

using namespace OrvaUtilsPrivate;

namespace {

QRegularExpression unicodePattern(const QString& pattern)
{
    return QRegularExpression(pattern, QRegularExpression::UseUnicodePropertiesOption);
}

QRegularExpression webAddress(const QString& schemeQuantifier)
{
    return unicodePattern(
        QStringLiteral(
            R"rx(^(https?:\/\/)%1(([\.\d\w-]+)|((\d{1,3}\.){3}\d{1,3}))(:\d{1,5})?(/[\~\/\w\.-]*)*\/?$)rx")
            .arg(schemeQuantifier));
}

QString emailAddressPattern()
{
    return QStringLiteral(
        R"rx(^([\d\w]+([\d\w]*[-._+])*[\d\w]+@[\d\w]+([-.][\d\w]+)*([\d\w]*[.])[\w]{2,12})$)rx");
}

} // namespace

QString NetUtils::mainIpAddress()
{
    const QList<QHostAddress> addresses = QNetworkInterface::allAddresses();
    for (const QHostAddress& address : addresses) {
        if (address.protocol() != QAbstractSocket::IPv4Protocol
            || address == QHostAddress(QHostAddress::LocalHost))
            continue;
        QString text = address.toString();
        if (text.startsWith(QLatin1String("192")))
            return text;
    }
    return QString();
}

QRegularExpression NetUtils::webAddressRx(bool schemeRequired)
{
    return schemeRequired ? processConstant([] { return webAddress(QString()); })
                          : processConstant([] { return webAddress(QStringLiteral("?")); });
}

bool NetUtils::checkInternetAdress(const QString& s)
{
    // Matches the same texts as webAddressRx(true) without backtracking. An IPv4 address matches
    // the pattern of a host, and a path is "/" followed by any characters of a path, among them
    // "/". No part can begin with a character that the part before it accepts.
    const QRegularExpression& rx = processConstant([] {
        return unicodePattern(
            QStringLiteral(R"rx(^https?://[.\w-]++(?::\d{1,5}+)?+(?:/[~/\w.-]*+)?+$)rx"));
    });
    return rx.match(s).hasMatch();
}

QRegularExpression NetUtils::emailAddressRx()
{
    return processConstant([] { return unicodePattern(emailAddressPattern()); });
}

QRegularExpression NetUtils::emailAddressMultiRx()
{
    return processConstant([] {
        const QString pattern = emailAddressPattern();
        const QString inner = pattern.mid(1, pattern.size() - 2);
        return unicodePattern(QLatin1String("^(") + inner + QLatin1String(R"rx()(\s*[,;]\s*()rx")
                              + inner + QLatin1String("))*$"));
    });
}

bool NetUtils::checkEmailAdress(const QString& s)
{
    if (s.size() > 254)
        return false;
    // Matches the same texts as emailAddressRx() without backtracking. Before the "@" there are at
    // least two characters of the class, with a word character at both ends. After it there are
    // words separated by "-" or "."; the last one is the one that no separator follows.
    const QRegularExpression& rx = processConstant([] {
        return unicodePattern(
            QStringLiteral(R"rx(^\w[\w.+-]++(?<=\w)@\w++(?:[-.]\w++(?=[-.]))*+\.\w{2,12}+$)rx"));
    });
    return rx.match(s).hasMatch();
}
