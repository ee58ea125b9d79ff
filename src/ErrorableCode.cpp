// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ErrorableCode.h"

#include "Errorable.h"

#include <QDebug>

namespace {

QString sortKey(const ErrorableCode& code)
{
    return code.context + QString::number(code.code);
}

} // namespace

ErrorableCode::ErrorableCode() = default;

bool ErrorableCode::isValid() const
{
    return !(*this == ErrorableCode());
}

bool ErrorableCode::operator==(const ErrorableCode& other) const
{
    return code == other.code && context == other.context;
}

bool ErrorableCode::operator<(const ErrorableCode& other) const
{
    return sortKey(*this) < sortKey(other);
}

void ErrorableCode::addCallStep(const QString& step)
{
    callSteps.append(step);
}

void ErrorableCode::addCallStepsNE(const QStringList& steps)
{
    for (const QString& step : steps)
        addCallStep(step + QLatin1String(" (NE)"));
}

QString ErrorableCode::enumText() const
{
    return mEnumText;
}

QString ErrorableCode::toString(bool withCallStack) const
{
    // All four in one call, so that a "%2" in one of them is not replaced.
    QString text =
        QStringLiteral("%1:%2 (#%3) (%4)").arg(context, mEnumText, QString::number(code), details);
    if (!withCallStack)
        return text;

    text += QLatin1String("\n#Call Stack");
    if (callSteps.isEmpty())
        return text + QLatin1String(" empty");
    const QString newStep = QStringLiteral("\n=>");
    return text + newStep + callSteps.join(newStep);
}

QString ErrorableCode::errorMessage() const
{
    return Errorable::errorMessage(*this);
}

QString ErrorableCode::overriddenErrorMessage() const
{
    return Errorable::overriddenErrorMessage(*this);
}

QDebug operator<<(QDebug debug, const ErrorableCode& code)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "ErrorableCode(";
    if (code.isValid()) {
        debug << code.toString(false);
        // Step by step, because Qt 6 writes a whole list differently from Qt 5.
        const char* before = ", (";
        for (const QString& step : code.callSteps) {
            debug << before << step;
            before = ", ";
        }
        if (!code.callSteps.isEmpty())
            debug << ')';
    }
    debug << ')';
    return debug;
}
