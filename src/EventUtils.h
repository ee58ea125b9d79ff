// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// EventUtils: what a key event means.

#ifndef ORVAUTILS_EVENTUTILS_H
#define ORVAUTILS_EVENTUTILS_H

#include "orvautils_export.h"

class QKeyEvent;

/// Queries about events. Thread: the GUI thread. Nothing is logged.
///
/// \code
/// if (EventUtils::match_KeyDelete(event))
///     deleteSelection();
/// \endcode
class ORVAUTILS_EXPORT EventUtils
{
public:
    /// Whether the user asks for something to be deleted: the event is the platform's standard
    /// Delete key sequence, or Backspace without any modifier, for keyboards that have no other key
    /// for it. Applies to presses and releases.
    ///
    /// \a event must not be null; this is not checked.
    static bool match_KeyDelete(QKeyEvent* event);
};

#endif // ORVAUTILS_EVENTUTILS_H
