// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// OrdinaryUser: permissions as a person meets them, also where the tests run as root.

#ifndef ORDINARYUSER_H
#define ORDINARYUSER_H

#include <QtGlobal>

/// While it lives, the calling process has no more rights on files than an ordinary user: a test
/// that takes away a permission sees the refusal even when root runs it. Does nothing for a process
/// that is not root. Folders that the test made before are root's; give them mode 0777 where the
/// code under test is to write into them.
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
