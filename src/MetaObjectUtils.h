// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// MetaObjectUtils: calls a signal or slot whose name a host passes as text, in whatever notation
// the host uses.

#ifndef ORVAUTILS_METAOBJECTUTILS_H
#define ORVAUTILS_METAOBJECTUTILS_H

#include "orvautils_export.h"

#include <QString>

class QObject;

/// Invocation of signals, slots and invokable methods by name.
///
/// A name may be bare ("refresh"), a signature without arguments ("refresh()"), the result of Qt's
/// SLOT() and SIGNAL() macros ("1refresh()", "2refresh()"), and may contain white space anywhere
/// ("2 refresh ( )"): all of these invoke the same method. A method with arguments that have no
/// default cannot be invoked.
///
/// \code
/// MetaObjectUtils::invokeSignalOrSlot(window, "refresh");
/// bool mayClose = true;
/// MetaObjectUtils::invokeSlotReturningBoolean(window, QStringLiteral("mayClose"), mayClose);
/// \endcode
///
/// Thread: the object's own thread, which for widgets is the GUI thread.
class ORVAUTILS_EXPORT MetaObjectUtils
{
public:
    /// As the next overload, with \a method in UTF-8.
    static bool invokeSignalOrSlot(QObject* object, const char* method);

    /// Invokes the method \a method of \a object without arguments, at once when called in the
    /// object's thread, else through the event queue of that thread.
    ///
    /// Returns true when the method was invoked, or will be: a call that goes through the event
    /// queue is dropped when the object is destroyed before its turn. If the object has no such
    /// method, or is null, it logs "Impossible dinvoquer ", the bare name, " sur " and the object's
    /// address (LogType 4), and returns false. If there is an object, Qt adds a warning of its own,
    /// which lists the methods of the same name that take other arguments.
    static bool invokeSignalOrSlot(QObject* object, const QString& method);

    /// Whether \a object has a method with exactly the signature \a method, its own or inherited.
    ///
    /// \a method may contain white space and the leading "1" or "2" of SLOT() and SIGNAL(), but the
    /// parentheses are deliberately required: for a method refresh(), "1refresh ( )" is found and
    /// "refresh" is not.
    ///
    /// \a object must not be null; this is not checked. Nothing is logged.
    static bool hasMethod(QObject* object, const char* method);

    /// Invokes the method \a method of \a object, which must return "bool", without arguments and
    /// writes what it returns to \a result. The invocation is direct, so \a result may be read at
    /// once; it must be called in the object's thread, because an event queue returns no result.
    ///
    /// Returns true when the method was invoked. If the object has no such method, the method
    /// returns another type, the object lives in another thread or is null, it logs as
    /// invokeSignalOrSlot() does, returns false and leaves \a result as it was.
    static bool invokeSlotReturningBoolean(QObject* object, const QString& method, bool& result);
};

#endif // ORVAUTILS_METAOBJECTUTILS_H
