// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ListUtils: whether the objects of a list, a selection for example, are of one kind.

#ifndef ORVAUTILS_LISTUTILS_H
#define ORVAUTILS_LISTUTILS_H

#include "orvautils_export.h"

#include <QList>

class QObject;

/// Questions about lists of objects. An object in a list must not be null; this is not checked.
/// Thread: any in which the objects do not go away. Nothing is logged.
class ORVAUTILS_EXPORT ListUtils
{
public:
    /// Whether \a list is not empty and each of its objects inherits the class \a className, or is
    /// of it. Objects after the first that does not are not examined.
    ///
    /// \code
    /// ListUtils::allObjectInherits(selection, "QAbstractButton"); // buttons of all kinds
    /// \endcode
    static bool allObjectInherits(const QList<QObject*>& list, const char* className);

    /// Whether \a list is not empty and the class of each of its objects has the name of the first
    /// one's class. A derived class is another class.
    static bool allObjectIsSameClass(const QList<QObject*>& list);
};

#endif // ORVAUTILS_LISTUTILS_H
