// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Errorable.h"

#include "WidgetUtils.h"
#include "asconst_p.h"
#include "logrecord_p.h"

#include <QObject>
#include <QPointer>

#include <new>

using namespace OrvaUtilsPrivate;

namespace {

/// A weak reference to another object of the tree, which becomes null when either part of that
/// object is destroyed. A QPointer alone is not enough: while a widget deletes its children, a
/// QPointer to it is still set, although its Errorable part is gone.
class Link
{
public:
    Link() = default;
    Link(QObject* object, const std::shared_ptr<ErrorablePrivate>& errorable)
        : mObject(object)
        , mErrorable(errorable)
    { }

    /// Null if the object no longer exists.
    Errorable* target() const;

private:
    QPointer<QObject> mObject;
    std::weak_ptr<ErrorablePrivate> mErrorable;
};

} // namespace

class OrvaUtilsPrivate::ErrorablePrivate
{
public:
    explicit ErrorablePrivate(Errorable* errorable)
        : q(errorable)
    { }

    Errorable* const q;
    Link parent;
    QString location; // where this object was registered
    QList<Link> children;
    ErrorableCode error;
    QVector<ErrorableCode> stack; // newest first
};

namespace {

Errorable* Link::target() const
{
    const std::shared_ptr<ErrorablePrivate> errorable = mErrorable.lock();
    return mObject && errorable ? errorable->q : nullptr;
}

QString locationText(const char* file, int line)
{
    return QStringLiteral("%1:%2").arg(QString::fromUtf8(file), QString::number(line));
}

/// Storage for a message table, which exists before any initialiser runs and is never destroyed.
union MessageTable {
    constexpr MessageTable()
        : nothing()
    { }
    ~MessageTable() { } // NOLINT(modernize-use-equals-default): that would be deleted

    char nothing;
    QMap<ErrorableCode, QString> map;
};

MessageTable errorMessages; // clazy:exclude=non-pod-global-static
MessageTable overriddenErrorMessages; // clazy:exclude=non-pod-global-static

} // namespace

// The message tables

QMap<ErrorableCode, QString>& Errorable::sErrorMessages = errorMessages.map;
QMap<ErrorableCode, QString>& Errorable::sOverriddenErrorMessage = overriddenErrorMessages.map;

Errorable::MessageTables::MessageTables()
{
    static const bool made = [] {
        new (&errorMessages.map) QMap<ErrorableCode, QString>;
        new (&overriddenErrorMessages.map) QMap<ErrorableCode, QString>;
        return true;
    }();
    Q_UNUSED(made);
}

Errorable::Errorable()
    : d(std::make_shared<ErrorablePrivate>(this))
{ }

Errorable::~Errorable() = default;

// Building the tree

void Errorable::_addErrorableChild(Errorable& child, const char* file, int line)
{
    auto* const childObject = dynamic_cast<QObject*>(&child);
    if (!childObject) {
        ORVAUTILS_LOG_CRITICAL() << "###Try to had Errorable that is not QObject!!###";
        return;
    }
    d->children.append(Link(childObject, child.d));
    child.d->parent = Link(dynamic_cast<QObject*>(this), d);
    child.d->location = locationText(file, line);
}

// Raising

ErrorableCode Errorable::raisedAt(const ErrorableCode& code, const char* file, int line)
{
    ErrorableCode raised = code;
    raised.addCallStep(locationText(file, line));
    return raised;
}

void Errorable::_setError(const ErrorableCode& code)
{
    if (d->error.isValid()) {
        ORVAUTILS_LOG_CRITICAL() << "###Deja une erreur de declenchee, merci de mieux gerez "
                                    "l'interruption du parent";
        return;
    }
    d->error = code;
    propagateError(d->error); // the stored error itself, so that it collects the steps, too
}

void Errorable::propagateError(ErrorableCode& code)
{
    if (Errorable* const parent = d->parent.target()) {
        code.addCallStep(d->location);
        parent->propagateError(code);
    } else if (auto* const self = dynamic_cast<QObject*>(this)) {
        code.addCallStepsNE(WidgetUtils::parentsList(self));
    }
    d->stack.prepend(code); // on the way back: the steps are complete
}

// Querying errors

bool Errorable::hasErrorSelfError() const
{
    return d->error.isValid();
}

ErrorableCode Errorable::error() const
{
    if (d->error.isValid())
        return d->error;
    return d->stack.isEmpty() ? ErrorableCode() : d->stack.first();
}

QVector<ErrorableCode> Errorable::errorStack() const
{
    return d->stack;
}

QStringList Errorable::errorLines() const
{
    QStringList lines;
    for (const ErrorableCode& code : asConst(d->stack)) {
        QString message = code.overriddenErrorMessage();
        if (!message.contains(code.details))
            message += QStringLiteral(" (") + code.details + QLatin1Char(')');
        lines += message.split(QLatin1Char('\n'));
        for (const QString& step : code.callSteps)
            lines += QStringLiteral("  ") + step;
    }
    return lines;
}

QString Errorable::errorMessage() const
{
    return errorMessage(error());
}

QString Errorable::errorMessage(const ErrorableCode& code)
{
    const auto message = sErrorMessages.constFind(code);
    if (message != sErrorMessages.constEnd())
        return *message;
    return code.enumText().isEmpty() ? code.toString(false) : code.enumText();
}

QString Errorable::overriddenErrorMessage(const ErrorableCode& code)
{
    const auto message = sOverriddenErrorMessage.constFind(code);
    return message != sOverriddenErrorMessage.constEnd() ? *message : errorMessage(code);
}

// Clearing

void Errorable::clearError()
{
    clearSelfErrorPrivate();
    clearParentsErrorPrivate();
    clearChildrenErrorPrivate();
}

void Errorable::clearSelfErrorPrivate()
{
    d->error = ErrorableCode();
    d->stack.clear();
}

void Errorable::clearParentsErrorPrivate()
{
    for (Errorable* parent = d->parent.target(); parent; parent = parent->d->parent.target())
        parent->clearSelfErrorPrivate();
}

void Errorable::clearChildrenErrorPrivate()
{
    for (const Link& link : asConst(d->children)) {
        Errorable* const child = link.target();
        if (!child)
            continue;
        child->clearSelfErrorPrivate();
        child->clearChildrenErrorPrivate();
    }
}
