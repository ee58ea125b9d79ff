// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Errorable.h"

#include "WidgetUtils.h"
#include "asconst_p.h"
#include "logrecord_p.h"

using namespace OrvaUtilsPrivate;

namespace {

// Only objects that are both are ever linked into a tree.
Errorable* asErrorable(QObject* object)
{
    return dynamic_cast<Errorable*>(object);
}

QString locationText(const char* file, int line)
{
    return QStringLiteral("%1:%2").arg(QString::fromUtf8(file), QString::number(line));
}

} // namespace

QMap<ErrorableCode, QString> Errorable::sErrorMessages;
QMap<ErrorableCode, QString> Errorable::sOverriddenErrorMessage;

Errorable::Errorable() = default;

Errorable::~Errorable() = default;

// Building the tree

void Errorable::_addErrorableChild(Errorable& child, const char* file, int line)
{
    auto* const childObject = dynamic_cast<QObject*>(&child);
    if (!childObject) {
        ORVAUTILS_LOG_CRITICAL() << "###Try to had Errorable that is not QObject!!###";
        return;
    }
    mChildren.append(childObject);
    child.mParent = dynamic_cast<QObject*>(this);
    child.mLocation = locationText(file, line);
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
    if (mError.isValid()) {
        ORVAUTILS_LOG_CRITICAL() << "###Deja une erreur de declenchee, merci de mieux gerez "
                                    "l'interruption du parent";
        return;
    }
    mError = code;
    propagateError(mError); // the own error itself, so that it collects the steps, too
}

void Errorable::propagateError(ErrorableCode& code)
{
    if (mParent) {
        code.addCallStep(mLocation);
        asErrorable(mParent)->propagateError(code);
    } else if (auto* const self = dynamic_cast<QObject*>(this)) {
        code.addCallStepsNE(WidgetUtils::parentsList(self));
    }
    mErrorStack.prepend(code); // on the way back: the steps are complete
}

// Looking at errors

bool Errorable::hasErrorSelfError() const
{
    return mError.isValid();
}

ErrorableCode Errorable::error() const
{
    if (mError.isValid())
        return mError;
    return mErrorStack.isEmpty() ? ErrorableCode() : mErrorStack.first();
}

QVector<ErrorableCode> Errorable::errorStack() const
{
    return mErrorStack;
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
    mError = ErrorableCode();
    mErrorStack.clear();
}

void Errorable::clearParentsErrorPrivate()
{
    const Errorable* node = this;
    while (node->mParent) {
        Errorable* const parent = asErrorable(node->mParent);
        parent->clearSelfErrorPrivate();
        node = parent;
    }
}

void Errorable::clearChildrenErrorPrivate()
{
    for (const QPointer<QObject>& childObject : asConst(mChildren)) {
        if (!childObject)
            continue;
        Errorable* const child = asErrorable(childObject);
        child->clearSelfErrorPrivate();
        child->clearChildrenErrorPrivate();
    }
}
