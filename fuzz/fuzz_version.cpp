// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// StringUtils::compareVersion() compared with a second implementation.

#include "Fuzz.h"
#include "StringUtils.h"

#include <QStringList>

namespace {

bool isNumber(const QString& component)
{
    bool ok = false;
    component.simplified().toInt(&ok);
    return ok;
}

bool isVersion(const QStringList& components)
{
    return std::all_of(components.begin(), components.end(), isNumber);
}

/// The number before the first character that is not a digit.
bool leadingNumber(const QString& component, int* number)
{
    int length = 0;
    while (length < component.size() && component.at(length) >= QLatin1Char('0')
           && component.at(length) <= QLatin1Char('9'))
        ++length;
    bool ok = false;
    *number = component.left(length).toInt(&ok);
    return ok;
}

bool compared(const QString& a, const QString& b, int* result)
{
    *result = 0;
    const QStringList as = a.split(QLatin1Char('.'));
    const QStringList bs = b.split(QLatin1Char('.'));
    if (!isVersion(as) || !isVersion(bs))
        return false;
    for (int i = 0; i < as.size(); ++i) {
        int inA = 0;
        int inB = 0;
        if (i >= bs.size() || !leadingNumber(as.at(i), &inA) || !leadingNumber(bs.at(i), &inB))
            return false;
        if (inA != inB) {
            *result = inA > inB ? 1 : -1;
            return true;
        }
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const QString a = textOf(input.ConsumeRandomLengthString(200));
    const QString b = textOf(input.ConsumeRandomLengthString(200));
    int expected = 0;
    int result = 7;
    FUZZ_PROMISE(StringUtils::compareVersion(a, b, result) == compared(a, b, &expected));
    FUZZ_PROMISE(result == expected);

    int reverse = 7;
    const bool isReverse = StringUtils::compareVersion(b, a, reverse);
    if (isReverse && result != 0)
        FUZZ_PROMISE(reverse == -result);
    int itself = 7;
    StringUtils::compareVersion(a, a, itself);
    FUZZ_PROMISE(itself == 0);
    return 0;
}
