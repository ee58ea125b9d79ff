// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// FlagsUtils: turns a single flag of a model item on or off.

#ifndef ORVAUTILS_FLAGSUTILS_H
#define ORVAUTILS_FLAGSUTILS_H

#include "orvautils_export.h"

#include <Qt>

/// Operations on flags. Thread: any. Nothing is logged.
class ORVAUTILS_EXPORT FlagsUtils
{
public:
    /// Sets \a flag in \a flags when \a on, clears it otherwise. The other flags stay.
    ///
    /// \code
    /// Qt::ItemFlags flags = item->flags();
    /// FlagsUtils::setFlag(flags, Qt::ItemIsEditable, !readOnly);
    /// item->setFlags(flags);
    /// \endcode
    static void setFlag(QFlags<Qt::ItemFlag>& flags, Qt::ItemFlag flag, bool on);
};

#endif // ORVAUTILS_FLAGSUTILS_H
