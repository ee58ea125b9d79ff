// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "filesystem_p.h"

#include <QByteArray>

#include <cerrno>
#include <cstring>
#include <sys/xattr.h>
#include <vector>

namespace OrvaUtilsPrivate {

namespace {

using Names = std::vector<char>; // NUL-terminated, one after the other

bool readNames(int file, Names& names)
{
    const ssize_t size = flistxattr(file, nullptr, 0);
    if (size < 0)
        return errno == ENOTSUP;
    names.resize(size_t(size));
    return size == 0 || flistxattr(file, names.data(), names.size()) == size;
}

bool readValue(int file, const char* name, QByteArray& value)
{
    const ssize_t size = fgetxattr(file, name, nullptr, 0);
    if (size < 0)
        return false;
    value.resize(int(size));
    return fgetxattr(file, name, value.data(), size_t(size)) == size;
}

} // namespace

bool takeExtendedAttributes(int from, int to)
{
    Names wanted;
    Names given;
    if (!readNames(from, wanted) || !readNames(to, given))
        return false;
    QByteArray value;
    for (const char* name = given.data(); name != given.data() + given.size();
         name += std::strlen(name) + 1) {
        if (!readValue(from, name, value) && fremovexattr(to, name) != 0)
            return false; // GCOVR_EXCL_LINE: the creator of the copy may change it
    }
    QByteArray own;
    for (const char* name = wanted.data(); name != wanted.data() + wanted.size();
         name += std::strlen(name) + 1) {
        if (!readValue(from, name, value))
            return false;
        const bool isThere = readValue(to, name, own) && own == value;
        if (!isThere && fsetxattr(to, name, value.constData(), size_t(value.size()), 0) != 0)
            return false;
    }
    return true;
}

} // namespace OrvaUtilsPrivate
