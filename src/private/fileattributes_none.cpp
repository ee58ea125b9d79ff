// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "filesystem_p.h"

namespace OrvaUtilsPrivate {

bool takeExtendedAttributes(int, int)
{
    return true;
}

} // namespace OrvaUtilsPrivate
