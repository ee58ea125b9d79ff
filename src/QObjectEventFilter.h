// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// QObjectEventFilter: an event filter that is written as a function where it is needed, instead of
// as a class of its own.

#ifndef ORVAUTILS_QOBJECTEVENTFILTER_H
#define ORVAUTILS_QOBJECTEVENTFILTER_H

#include "orvautils_export.h"

#include <QObject>

#include <functional>
#include <memory>

namespace OrvaUtilsPrivate {
class QObjectEventFilterPrivate;
} // namespace OrvaUtilsPrivate

/// An event filter that runs a function.
///
/// \code
/// QObjectEventFilter::filter(view, [](QObject*, QEvent* event) {
///     return event->type() == QEvent::Wheel; // the wheel does not reach the view
/// });
/// \endcode
///
/// Thread: the filter lives in its target's thread and runs inside the delivery of the target's
/// events; for widgets that is the GUI thread. Nothing is logged.
class ORVAUTILS_EXPORT QObjectEventFilter : public QObject
{
    Q_OBJECT

public:
    /// Becomes a child of \a target, is destroyed with it, and installs itself as its event filter.
    /// The function is empty, so nothing is filtered; a derived class may override eventFilter().
    ///
    /// \a target must not be null; this is not checked.
    explicit QObjectEventFilter(QObject* target);
    /// Ends the filtering.
    ~QObjectEventFilter() override;

    /// The result of the function for \a watched and \a event. True consumes the event. With an
    /// empty function, the result of QObject::eventFilter(), which lets everything pass.
    ///
    /// The function may delete the filter, also by deleting its target; it must then return true,
    /// as with every event filter of Qt that deletes the watched object.
    bool eventFilter(QObject* watched, QEvent* event) override;

    /// A new filter on \a target that runs \a f. The target owns it: the caller may delete it to
    /// end the filtering, but need not. An empty \a f filters nothing. Several filters on one
    /// target run in Qt's order, the one installed last first.
    ///
    /// \a target must not be null; this is not checked.
    static QObjectEventFilter* filter(QObject* target,
                                      const std::function<bool(QObject*, QEvent*)>& f);

    /// A function for filter() that replaces the key whose text is \a from by a key whose text is
    /// \a to, made for the decimal separator of number fields:
    ///
    /// \code
    /// QObjectEventFilter::filter(
    ///     priceEdit,
    ///     QObjectEventFilter::inputKeyReplacement(QStringLiteral(","), QStringLiteral(".")));
    /// \endcode
    ///
    /// For a key press or key release with exactly the text \a from it posts to the same object a
    /// key event of the same type with the same modifiers and the text \a to, not auto-repeated and
    /// with count 1, accepts the received event and returns true. It returns false for every other
    /// event. The replacement is posted, so it arrives through the event queue, after the function
    /// has returned.
    ///
    /// The replacement's key code is Qt::Key_Period whatever \a to is; this is deliberate, because
    /// the function is meant for the decimal separator. If \a from equals \a to, the replacement
    /// itself is not replaced again.
    static std::function<bool(QObject*, QEvent*)> inputKeyReplacement(const QString& from,
                                                                      const QString& to);

private:
    const std::unique_ptr<OrvaUtilsPrivate::QObjectEventFilterPrivate> d;
};

#endif // ORVAUTILS_QOBJECTEVENTFILTER_H
