// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "filesystem_p.h"

#include <copyfile.h>

namespace OrvaUtilsPrivate {

bool takeExtendedAttributes(int from, int to)
{
    return fcopyfile(from, to, nullptr, COPYFILE_ACL | COPYFILE_XATTR) == 0;
}

} // namespace OrvaUtilsPrivate
