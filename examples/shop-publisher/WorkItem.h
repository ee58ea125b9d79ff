// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// WorkItem: one thing that the program works on and that can fail: a picture, a folder, a page.
//
// Each has a place in the error tree, so that a failure reaches the responsible objects above it,
// with the places in the source that it passed through.

#ifndef WORKITEM_H
#define WORKITEM_H

#include <Errorable.h>

#include <QMetaEnum>
#include <QObject>
#include <QString>

class WorkItem : public QObject, public Errorable
{
    Q_OBJECT

public:
    /// What it is: the context of its errors.
    enum Kind { Folder, Picture, ShopDescription, Product, ShopValue, SitePage, StaticFiles };
    Q_ENUM(Kind)

    /// What can happen to it: the code of its errors.
    enum Failure {
        Unreadable = 1, ///< it exists and cannot be read
        Missing = 2, ///< it, or a part of it, does not exist
        Unsuitable = 3, ///< it is something that the program does not accept
        Undecodable = 4, ///< its content is broken
        Unwritable = 5 ///< it cannot be written to the site
    };
    Q_ENUM(Failure)

    /// \a name is how a person refers to it: "bowls/blue bowl.jpg". \a parent owns it; its place in
    /// the error tree is set with ORVAUTILS_ADD_ERRORABLE_CHILD.
    WorkItem(Kind kind, const QString& name, QObject* parent)
        : QObject(parent)
        , mKind(kind)
        , mName(name)
    { }

    QString name() const { return mName; }

    /// The error to be raised with ORVAUTILS_SET_ERROR. Its details are the name and \a reason,
    /// which is read after it: "blue bowl.jpg: is empty".
    ErrorableCode failure(Failure failure, const QString& reason) const
    {
        ErrorableCode code;
        code.context = keyOf(mKind);
        code.code = failure;
        code.mEnumText = keyOf(failure);
        code.details = mName + QLatin1String(": ") + reason;
        return code;
    }

private:
    template <typename Enum>
    static QString keyOf(Enum value)
    {
        return QString::fromLatin1(QMetaEnum::fromType<Enum>().valueToKey(value));
    }

    const Kind mKind;
    const QString mName;
};

#endif // WORKITEM_H
