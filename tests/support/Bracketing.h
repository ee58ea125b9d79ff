// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Bracketing: a translator that puts the context and the source text of what it translates in
// brackets.

#ifndef BRACKETING_H
#define BRACKETING_H

#include <QString>
#include <QTranslator>

/// Translates "text" in the context "Class" as "[Class: text]".
class Bracketing : public QTranslator
{
public:
    QString translate(const char* context, const char* source, const char*, int) const override
    {
        return QStringLiteral("[%1: ").arg(QLatin1String(context)) + QLatin1String(source)
            + QLatin1Char(']');
    }
    bool isEmpty() const override { return false; }
};

#endif // BRACKETING_H
