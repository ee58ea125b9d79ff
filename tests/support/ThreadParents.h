// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// compareParents: checks the parents of the threads of a class.

#ifndef THREADPARENTS_H
#define THREADPARENTS_H

#include <QCoreApplication>
#include <QtTest>

/// A thread belongs to its parent, or to the application if it has none.
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
