// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// DurationText: builds a short text of numbers and units, such as "1h 2mn 3s ".
//
// The text is built in a fixed buffer. A QString for each number, and one that grows, would take up
// three quarters of the time.

#ifndef ORVAUTILS_DURATIONTEXT_P_H
#define ORVAUTILS_DURATIONTEXT_P_H

#include <QString>

#include <algorithm>
#include <array>

namespace OrvaUtilsPrivate {

// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): only what was added is read
class DurationText
{
public:
    DurationText() = default; // NOLINT(cppcoreguidelines-pro-type-member-init): likewise

    /// Appends \a number, in decimal, and \a unit. There is room for six pieces with units of at
    /// most four characters.
    void add(quint64 number, const char* unit)
    {
        ushort* const start = mEnd;
        do {
            *mEnd++ = ushort('0' + number % 10);
            number /= 10;
        } while (number != 0);
        std::reverse(start, mEnd);
        while (*unit)
            *mEnd++ = uchar(*unit++);
    }

    QString toString() const
    {
        return QString(reinterpret_cast<const QChar*>(mText.data()), int(mEnd - mText.data()));
    }

private:
    Q_DISABLE_COPY(DurationText)

    std::array<ushort, std::size_t(6) * (20 + 4)> mText; // 2^64 has twenty digits
    ushort* mEnd = mText.data();
};

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_DURATIONTEXT_P_H
