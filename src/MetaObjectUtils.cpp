// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "MetaObjectUtils.h"

#include "logrecord_p.h"

#include <QMetaMethod>
#include <QMetaObject>
#include <QObject>

namespace {

// The signature without spaces and without the code that SLOT() and SIGNAL() put in front of it.
QString plainSignature(const QString& method)
{
    QString signature = method.simplified();
    signature.remove(QLatin1Char(' '));
    if (signature.startsWith(QLatin1Char('1')) || signature.startsWith(QLatin1Char('2')))
        signature.remove(0, 1);
    return signature;
}

QString bareName(const QString& method)
{
    return plainSignature(method).remove(QStringLiteral("()"));
}

// LogStream does not accept pointers.
QString address(const QObject* object)
{
    return QStringLiteral("0x") + QString::number(reinterpret_cast<quintptr>(object), 16);
}

} // namespace

bool MetaObjectUtils::invokeSignalOrSlot(QObject* object, const char* method)
{
    return invokeSignalOrSlot(object, QString::fromUtf8(method));
}

bool MetaObjectUtils::invokeSignalOrSlot(QObject* object, const QString& method)
{
    const QString name = bareName(method);
    if (QMetaObject::invokeMethod(object, name.toUtf8().constData(), Qt::AutoConnection))
        return true;
    ORVAUTILS_LOG_CRITICAL() << "Impossible dinvoquer " << name << " sur " << address(object);
    return false;
}

bool MetaObjectUtils::hasMethod(QObject* object, const char* method)
{
    const QByteArray signature = plainSignature(QString::fromUtf8(method)).toUtf8();
    const QMetaObject* metaObject = object->metaObject();
    for (int i = 0; i < metaObject->methodCount(); ++i) {
        if (metaObject->method(i).methodSignature() == signature)
            return true;
    }
    return false;
}

bool MetaObjectUtils::invokeSlotReturningBoolean(QObject* object, const QString& method,
                                                 bool& result)
{
    const QString name = bareName(method);
    // An automatic connection is direct in the object's own thread and fails in any other, instead
    // of running the slot in the wrong one.
    if (QMetaObject::invokeMethod(object, name.toUtf8().constData(), Qt::AutoConnection,
                                  Q_RETURN_ARG(bool, result)))
        return true;
    ORVAUTILS_LOG_CRITICAL() << "Impossible dinvoquer " << name << " sur " << address(object);
    return false;
}
