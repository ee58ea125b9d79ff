// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "OrdinaryUser.h"

#include "SystemCalls.h"

namespace {

const uid_t nobody = 65534;

void becomeOrDie(uid_t user)
{
    // A test that continued with the wrong permissions would prove nothing.
    if (seteuid(user) != 0)
        qFatal("OrdinaryUser: cannot become user %u", unsigned(user));
}

} // namespace

OrdinaryUser::OrdinaryUser()
    : mWasRoot(geteuid() == 0)
{
    if (mWasRoot)
        becomeOrDie(nobody);
}

OrdinaryUser::~OrdinaryUser()
{
    if (mWasRoot)
        becomeOrDie(0);
}
