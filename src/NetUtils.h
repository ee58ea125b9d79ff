// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// NetUtils: the address of this machine, and the form of the web and e-mail addresses that users
// type.

#ifndef ORVAUTILS_NETUTILS_H
#define ORVAUTILS_NETUTILS_H

#include "orvautils_export.h"

#include <QRegularExpression>
#include <QString>

/// The machine's address in its network, and checks of the addresses that users type.
///
/// All functions are static and may be called from any thread. Nothing here writes to the log.
class ORVAUTILS_EXPORT NetUtils
{
public:
    NetUtils() = delete;

    /// The IPv4 address of this machine in its local network, for example "192.168.1.20": the first
    /// one beginning with "192", in the order in which the system tells them; empty where there is
    /// none. Other private ranges are not looked for.
    static QString mainIpAddress();

    /// The pattern of a web address: scheme, host or IPv4 address, port, path; no query, no
    /// fragment, letters and digits of every script. The scheme, "http://" or "https://" in lower
    /// case, may be left out where \a schemeRequired is false.
    ///
    /// The pattern is for validators of input fields and for short texts: it backtracks, and a long
    /// hostile text keeps it busy. checkInternetAdress() does not have this fault. A line feed at
    /// the very end is let through, as "$" has it.
    static QRegularExpression webAddressRx(bool schemeRequired);

    /// Whether webAddressRx(true) matches \a s, in a time that grows with the length of \a s only.
    ///
    /// \code
    /// NetUtils::checkInternetAdress("https://exämple.de:8080/straße/"); // true
    /// NetUtils::checkInternetAdress("www.example.com"); // false
    /// \endcode
    static bool checkInternetAdress(const QString& s);

    /// The pattern of an e-mail address with letters and digits of every script. Before the "@"
    /// stand two characters at least; the last label of the domain has 2 to 12.
    ///
    /// What is said of webAddressRx() about hostile texts and line feeds holds here as well.
    static QRegularExpression emailAddressRx();

    /// The pattern of one e-mail address or more with "," or ";" and optional white space between
    /// them.
    static QRegularExpression emailAddressMultiRx();

    /// Whether \a s has 254 characters at most and emailAddressRx() matches it, in a time that
    /// grows with the length of \a s only.
    ///
    /// \code
    /// NetUtils::checkEmailAdress("jean-rené.dupont@exemple.fr"); // true
    /// NetUtils::checkEmailAdress("j@exemple.fr"); // false
    /// \endcode
    static bool checkEmailAdress(const QString& s);
};

#endif // ORVAUTILS_NETUTILS_H
