// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "QObjectEventFilter.h"

#include <QCoreApplication>
#include <QKeyEvent>

using namespace OrvaUtilsPrivate;

class OrvaUtilsPrivate::QObjectEventFilterPrivate
{
public:
    // Shared, so that a function that deletes its filter stays alive until it returns.
    std::shared_ptr<const std::function<bool(QObject*, QEvent*)>> function;
};

QObjectEventFilter::QObjectEventFilter(QObject* target)
    : QObject(target)
    , d(new QObjectEventFilterPrivate)
{
    target->installEventFilter(this);
}

QObjectEventFilter::~QObjectEventFilter() = default;

bool QObjectEventFilter::eventFilter(QObject* watched, QEvent* event)
{
    const auto function = d->function;
    if (!function)
        return QObject::eventFilter(watched, event);
    return (*function)(watched, event);
}

QObjectEventFilter* QObjectEventFilter::filter(QObject* target,
                                               const std::function<bool(QObject*, QEvent*)>& f)
{
    auto* created = new QObjectEventFilter(target);
    if (f)
        created->d->function = std::make_shared<const std::function<bool(QObject*, QEvent*)>>(f);
    return created;
}

std::function<bool(QObject*, QEvent*)> QObjectEventFilter::inputKeyReplacement(const QString& from,
                                                                               const QString& to)
{
    return [from, to](QObject* watched, QEvent* event) {
        if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease)
            return false;
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->text() != from)
            return false;
        if (from == to && key->key() == Qt::Key_Period)
            return false; // the replacement itself, or a key that would be replaced by itself
        QCoreApplication::postEvent(
            watched, new QKeyEvent(event->type(), Qt::Key_Period, key->modifiers(), to, false, 1));
        event->accept();
        return true;
    };
}
