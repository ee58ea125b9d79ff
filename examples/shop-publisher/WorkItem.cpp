// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "WorkItem.h"

#include <QMetaEnum>

namespace {

template <typename Enum>
QString nameOf(Enum value)
{
    return QString::fromLatin1(QMetaEnum::fromType<Enum>().valueToKey(value));
}

} // namespace

WorkItem::WorkItem(Kind kind, const QString& name, QObject* parent)
    : QObject(parent)
    , mKind(kind)
    , mName(name)
{ }

ErrorableCode WorkItem::failure(Failure failure, const QString& reason) const
{
    ErrorableCode code;
    code.context = nameOf(mKind);
    code.code = failure;
    code.mEnumText = nameOf(failure);
    code.details = mName + QLatin1String(": ") + reason;
    return code;
}
