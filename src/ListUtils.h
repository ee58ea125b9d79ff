// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ListUtils: whether the objects of a list, a selection for example, are of one kind.

#ifndef ORVAUTILS_LISTUTILS_H
#define ORVAUTILS_LISTUTILS_H

#include "orvautils_export.h"

#include <QList>

class QObject;

/// Queries about lists of objects. An object in a list must not be null; this is not checked.
/// Thread: any, as long as the objects are not destroyed meanwhile. Nothing is logged.
class ORVAUTILS_EXPORT ListUtils
{
public:
    /// Whether \a list is not empty and each of its objects is an instance of the class
    /// \a className or of a derived class. Objects after the first that is not are not examined.
    ///
    /// \code
    /// ListUtils::allObjectInherits(selection, "QAbstractButton"); // buttons of all kinds
    /// \endcode
    static bool allObjectInherits(const QList<QObject*>& list, const char* className);

    /// Whether \a list is not empty and the class of each of its objects has the same name as that
    /// of the first one. A derived class counts as a different class.
    static bool allObjectIsSameClass(const QList<QObject*>& list);
};

#endif // ORVAUTILS_LISTUTILS_H
