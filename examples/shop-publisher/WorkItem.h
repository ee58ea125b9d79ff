// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// WorkItem: one thing that the program works on and that can fail: a picture, a folder, a page.
//
// Each has a place in the tree of errors, so that a failure reaches whoever is responsible above
// it, with the places in the code that it came through.

#ifndef WORKITEM_H
#define WORKITEM_H

#include <Errorable.h>

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
        Unreadable = 1, ///< it is there and cannot be read
        Missing = 2, ///< it, or a part of it, is not there
        Unsuitable = 3, ///< it is something that the program does not take
        Undecodable = 4, ///< its content is broken
        Unwritable = 5 ///< the site does not take it
    };
    Q_ENUM(Failure)

    /// \a name is what a person knows it by: "bowls/blue bowl.jpg". \a parent owns it; its place in
    /// the tree of errors is given with ORVAUTILS_ADD_ERRORABLE_CHILD.
    WorkItem(Kind kind, const QString& name, QObject* parent);

    QString name() const { return mName; }

    /// The error to be raised with ORVAUTILS_SET_ERROR. Its details are the name and \a reason,
    /// which is read after it: "blue bowl.jpg: is empty".
    ErrorableCode failure(Failure failure, const QString& reason) const;

private:
    Kind mKind;
    QString mName;
};

#endif // WORKITEM_H
