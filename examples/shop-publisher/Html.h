// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Html: how addresses stand in the pages.

#ifndef HTML_H
#define HTML_H

#include <QString>

class Html
{
public:
    /// A path of the site as a relative address.
    static QString address(const QString& place);
};

#endif // HTML_H
