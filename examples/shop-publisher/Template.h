// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Template: fills in the pages, which are files in the resources of the program.
//
//   {{name}}                  a value, escaped for HTML
//   {{{name}}}                a value unchanged: code that was escaped when it was generated
//   {{#name}} … {{/name}}     for each value of a list, once for any other but false or no value
//   {{^name}} … {{/name}}     if there is none
//   {{> file}}                another file of the resources
//
// Names are looked up in the current value of a list, if that is a map, then in the enclosing ones.
// What is filled in is never expanded again.

#ifndef TEMPLATE_H
#define TEMPLATE_H

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <initializer_list>
#include <utility>

struct Template
{
    /// Values by name, for fill().
    static QVariantMap values(std::initializer_list<std::pair<const char*, QVariant>> values);

    /// \a values with \a more, which take precedence over those of the same name.
    static QVariantMap with(QVariantMap values, const QVariantMap& more);

    /// The file \a name of the resources with \a values filled in, in UTF-8.
    static QByteArray fill(const QString& name, const QVariantMap& values);

    /// A path of the site as a relative address.
    static QString address(const QString& place);
};

#endif // TEMPLATE_H
