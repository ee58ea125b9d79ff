// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// SpiedSignals: the texts that signals carried, waiting until no more signals arrive, and the
// signals and slots of a class.

#ifndef SPIEDSIGNALS_H
#define SPIEDSIGNALS_H

#include <QCoreApplication>
#include <QEvent>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QStringList>
#include <QVariant>

/// The first arguments of all signals so far, in order.
inline QStringList textsOf(const QSignalSpy& spy)
{
    QStringList texts;
    for (const QList<QVariant>& arguments : spy)
        texts.append(arguments.value(0).toString());
    return texts;
}

/// The signals and slots that a class has in addition to those of its base, in their order.
inline QStringList ownMethods(const QMetaObject& meta)
{
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        methods += (meta.method(i).methodType() == QMetaMethod::Signal ? QStringLiteral("signal ")
                                                                       : QStringLiteral("slot "))
            + QString::fromLatin1(meta.method(i).methodSignature());
    }
    return methods;
}

/// Lets this thread handle what has happened on the disk, and the consequences. Linux queues a
/// notification before the call that causes it returns, so there is nothing to wait for. Each turn
/// of the event loop may cause another one, but not ten in a row.
inline void handleEvents()
{
    for (int turn = 0; turn < 10; ++turn) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
}

/// Handles events until no more signals arrive.
inline void settle(const QList<QSignalSpy*>& spies)
{
    const auto count = [&spies] {
        int signalsSoFar = 0;
        for (const QSignalSpy* spy : spies)
            signalsSoFar += int(spy->count());
        return signalsSoFar;
    };
    int before = -1;
    while (before != count()) {
        before = count();
        handleEvents();
    }
}

#endif // SPIEDSIGNALS_H
