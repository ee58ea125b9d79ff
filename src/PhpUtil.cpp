// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "PhpUtil.h"

#include "StringUtils.h"

QString PhpUtil::formatPhpString(const QString& s)
{
    return QLatin1Char('"') + StringUtils::escapeQuotes(s) + QLatin1Char('"');
}

QString PhpUtil::escapeAndQuotedPhpStringVariable(const QString& s)
{
    return formatPhpString(s);
}

QString PhpUtil::formatPhpSimplifiedString(const QString& s)
{
    return formatPhpString(s.simplified());
}
