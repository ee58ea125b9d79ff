// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ListUtils.h"

#include <QObject>

#include <algorithm>

bool ListUtils::allObjectInherits(const QList<QObject*>& list, const char* className)
{
    return !list.isEmpty()
        && std::all_of(list.begin(), list.end(),
                       [className](const QObject* object) { return object->inherits(className); });
}

bool ListUtils::allObjectIsSameClass(const QList<QObject*>& list)
{
    if (list.isEmpty())
        return false;
    const char* first = list.first()->metaObject()->className();
    return std::all_of(list.begin(), list.end(), [first](const QObject* object) {
        return qstrcmp(object->metaObject()->className(), first) == 0;
    });
}
