// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "FlagsUtils.h"

void FlagsUtils::setFlag(QFlags<Qt::ItemFlag>& flags, Qt::ItemFlag flag, bool on)
{
    if (on)
        flags |= flag;
    else
        flags &= ~Qt::ItemFlags(flag);
}
