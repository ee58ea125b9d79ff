// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// StringUtils: byteArrayToString() and hexaStringToByteArray() in every base.

#include "Fuzz.h"
#include "StringUtils.h"

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const int base = input.ConsumeIntegral<qint8>();
    const QByteArray bytes = QByteArray::fromStdString(input.ConsumeRandomLengthString(200));
    const QString text = remainingText(input);

    const QString digits = StringUtils::byteArrayToString(bytes, base);
    FUZZ_PROMISE(digits.size() >= 2 * bytes.size());
    if (base < 2 || base > 36)
        FUZZ_PROMISE(digits == StringUtils::byteArrayToString(bytes, 10));
    // From 16 on, two digits hold a byte.
    if (base >= 16 && base <= 36) {
        FUZZ_PROMISE(digits.size() == 2 * bytes.size());
        FUZZ_PROMISE(StringUtils::hexaStringToByteArray(digits, base) == bytes);
    }
    if (base == 16) {
        FUZZ_PROMISE(digits == QString::fromLatin1(bytes.toHex()));
        FUZZ_PROMISE(StringUtils::hexaStringToByteArray(digits.toUpper(), base) == bytes);
    }

    QByteArray expected;
    for (int i = 0; base >= 2 && i < text.size(); i += 2) {
        bool ok = false;
        const ushort value = text.mid(i, 2).toUShort(&ok, qMin(base, 36));
        if (ok)
            expected += char(value & 0xff);
    }
    const QByteArray read = StringUtils::hexaStringToByteArray(text, base);
    FUZZ_PROMISE(read.size() <= (text.size() + 1) / 2);
    if (base >= 2)
        FUZZ_PROMISE(read == expected);
    return 0;
}
