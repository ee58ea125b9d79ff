// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// NetUtils: the IP address of this machine, and validation of the web and e-mail addresses that
// users type.

#ifndef ORVAUTILS_NETUTILS_H
#define ORVAUTILS_NETUTILS_H

#include "orvautils_export.h"

#include <QRegularExpression>
#include <QString>

/// The local IP address, and validation of the addresses that users type.
///
/// All functions are static and may be called from any thread. Nothing is logged.
class ORVAUTILS_EXPORT NetUtils
{
public:
    NetUtils() = delete;

    /// The IPv4 address of this machine in its local network, for example "192.168.1.20": the first
    /// one that begins with "192", in the order in which the system lists them. Empty if there is
    /// none: other private ranges are not considered.
    static QString mainIpAddress();

    /// The pattern of a web address: scheme, host or IPv4 address, port and path, with letters and
    /// digits of every script, but no query and no fragment. The scheme, "http://" or "https://" in
    /// lower case, is optional if \a schemeRequired is false.
    ///
    /// The pattern is meant for validators of input fields and other short texts: it backtracks, so
    /// that a long hostile text takes a long time. checkInternetAdress() does not. A line feed at
    /// the very end is accepted, as "$" matches in front of it.
    static QRegularExpression webAddressRx(bool schemeRequired);

    /// Whether webAddressRx(true) matches \a s. Takes time proportional to the length of \a s.
    ///
    /// \code
    /// NetUtils::checkInternetAdress("https://exämple.de:8080/straße/"); // true
    /// NetUtils::checkInternetAdress("www.example.com"); // false
    /// \endcode
    static bool checkInternetAdress(const QString& s);

    /// The pattern of an e-mail address with letters and digits of every script. It requires at
    /// least two characters before the "@", and 2 to 12 in the last label of the domain.
    ///
    /// Like webAddressRx(), it backtracks and accepts a line feed at the end.
    static QRegularExpression emailAddressRx();

    /// The pattern of one or more e-mail addresses, separated by "," or ";" and optional white
    /// space.
    static QRegularExpression emailAddressMultiRx();

    /// Whether \a s has at most 254 characters and emailAddressRx() matches it. Takes time
    /// proportional to the length of \a s.
    ///
    /// \code
    /// NetUtils::checkEmailAdress("jean-rené.dupont@exemple.fr"); // true
    /// NetUtils::checkEmailAdress("j@exemple.fr"); // false
    /// \endcode
    static bool checkEmailAdress(const QString& s);
};

#endif // ORVAUTILS_NETUTILS_H
