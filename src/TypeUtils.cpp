// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "TypeUtils.h"

#ifdef __GNUG__
#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#endif

QString TypeUtils::demangle(const char* name)
{
#ifdef __GNUG__
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> demangled(
        abi::__cxa_demangle(name, nullptr, nullptr, &status), &std::free);
    if (status == 0 && demangled)
        return QString::fromUtf8(demangled.get());
#endif
    return QString::fromUtf8(name);
}

QString TypeUtils::name(const char* typeName)
{
    return demangle(typeName);
}
