// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Html: how text and addresses stand in the pages.

#ifndef HTML_H
#define HTML_H

#include <QString>

class Html
{
public:
    /// Text as it may stand in HTML, in attributes too. Control characters, which a file name can
    /// hold and a page must not, become U+FFFD.
    static QString escaped(const QString& text);

    /// A path of the site as a relative address.
    static QString address(const QString& place);
};

#endif // HTML_H
