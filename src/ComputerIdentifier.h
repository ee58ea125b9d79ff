// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ComputerIdentifier: a stable identifier of this machine, for diagnostics.

#ifndef ORVAUTILS_COMPUTERIDENTIFIER_H
#define ORVAUTILS_COMPUTERIDENTIFIER_H

#include "orvautils_export.h"

#include <QString>

/// Identifies the machine by its network hardware. Every call queries the system again, since
/// adapters come and go; safe from any thread. It distinguishes machines for support, but is no
/// proof of identity: hardware addresses can be changed.
///
/// \code
/// report += QStringLiteral("Machine: ") + ComputerIdentifier::uniqueIdentifier();
/// \endcode
class ORVAUTILS_EXPORT ComputerIdentifier
{
public:
    /// The manufacturer's product number. There is none on the platforms of the library: always
    /// empty.
    static QString productId();

    /// The hardware address of the network interface "en0" (on macOS, the built-in adapter) if that
    /// interface exists, even when its address is empty; otherwise the first address that is not
    /// empty, in the order in which the system lists its interfaces; otherwise an empty string.
    /// Written as "02:00:5E:10:00:07".
    ///
    /// An address of zeros is not empty: on a system whose loopback interface comes first and has
    /// one, that is the result.
    static QString primaryMACAddress();

    /// productId() and primaryMACAddress() joined by "-"; the address alone, which may be empty, if
    /// there is no product id.
    static QString uniqueIdentifier();

    /// The hash of uniqueIdentifier() in lower-case hexadecimal digits without padding: what Qt 5's
    /// `qHash` returns with seed 0. It is computed here, so that a machine keeps its number when
    /// the application moves to another version of Qt.
    static QString hashedUniqueIdentifier();

    /// Writes the four values as Qt warnings in the category "default", each in the local 8-bit
    /// encoding: "Product Id: ", "First MAC: ", "Unique Identifier: " and
    /// "Hashed Unique Identifier: " followed by the value.
    static void debug();
};

#endif // ORVAUTILS_COMPUTERIDENTIFIER_H
