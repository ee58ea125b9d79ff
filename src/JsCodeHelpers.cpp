// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "JsCodeHelpers.h"

#include "literalwriter_p.h"

using namespace OrvaUtilsPrivate;

void JsCodeHelpers::formatJavascriptObject(QTextStream* stream, const QMap<QString, QVariant>& map)
{
    LiteralWriter(stream, javascriptSyntax).writeMap(map);
}

void JsCodeHelpers::formatJavascriptArray(QTextStream* stream, const QList<QVariant>& list)
{
    LiteralWriter(stream, javascriptSyntax).writeList(list);
}

void JsCodeHelpers::formatJavascriptArray(QTextStream* stream, const QStringList& list)
{
    LiteralWriter(stream, javascriptSyntax).writeList(list);
}

void JsCodeHelpers::formatJavascriptArray(QTextStream* stream, const QList<int>& list)
{
    LiteralWriter(stream, javascriptSyntax).writeList(list);
}

void JsCodeHelpers::formatVariantValue(QTextStream* stream, const QVariant& v)
{
    LiteralWriter(stream, javascriptSyntax).write(v);
}
