// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// compareParents: whom the threads of a class belong to.

#ifndef THREADPARENTS_H
#define THREADPARENTS_H

#include <QCoreApplication>
#include <QtTest>

/// A thread belongs to its parent, and to the application where it has none.
template <typename AnyThread>
void compareParents()
{
    AnyThread orphan;
    QCOMPARE(orphan.parent(), static_cast<QObject*>(QCoreApplication::instance()));
    QObject parent;
    AnyThread child(&parent);
    QCOMPARE(child.parent(), &parent);
}

#endif // THREADPARENTS_H
