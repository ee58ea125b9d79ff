// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// OrdinaryUser: permissions as an ordinary user meets them, even if the tests run as root.

#ifndef ORDINARYUSER_H
#define ORDINARYUSER_H

#include <QtGlobal>

/// As long as the object lives, the calling process has the file permissions of an ordinary user: a
/// test that removes a permission sees the refusal even if root runs it. Does nothing in a process
/// that is not root. Folders that the test made before belong to root; give them mode 0777 if the
/// code under test has to write to them.
class OrdinaryUser
{
public:
    OrdinaryUser();
    ~OrdinaryUser();

private:
    Q_DISABLE_COPY(OrdinaryUser)

    bool mWasRoot;
};

#endif // ORDINARYUSER_H
