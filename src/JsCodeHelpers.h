// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// JsCodeHelpers: Qt values as JavaScript literals.

#ifndef ORVAUTILS_JSCODEHELPERS_H
#define ORVAUTILS_JSCODEHELPERS_H

#include "orvautils_export.h"

#include <QList>
#include <QMap>
#include <QStringList>
#include <QVariant>

class QTextStream;

/// Writes Qt values as JavaScript literals.
///
/// \code
/// QTextStream stream(&file);
/// stream << "const products = ";
/// JsCodeHelpers::formatJavascriptObject(&stream, {{"name", "Été"}, {"price", 2.5}});
/// stream << ";\n";
/// // const products = {
/// // 'name':'Été','price':2.5
/// // };
/// \endcode
///
/// All functions write to \a stream, which must not be null, in blocks of fixed size: a document of
/// any size needs no additional memory. Texts are encoded with the codec of the stream. Neither its
/// field width nor, if it is a TextStreamUTF8, its indentation applies. The stream's status() tells
/// whether writing succeeded.
///
/// Lists and maps may be nested to any depth: writing needs no more of the thread's stack for it.
///
/// All functions are static and keep no state. Each may be called from any thread that may use the
/// stream. Nothing is logged.
class ORVAUTILS_EXPORT JsCodeHelpers
{
public:
    JsCodeHelpers() = delete;

    /// Writes \a map as an object, in the order of the keys.
    ///
    /// \code
    /// JsCodeHelpers::formatJavascriptObject(&stream, {{"b", 2}, {"a", "x"}, {"10", true}});
    /// // {
    /// // 10:1,'a':'x','b':2
    /// // }
    /// \endcode
    ///
    /// Keys sort as texts. One that is a whole number in decimal, as QString::toLongLong() reads
    /// it, is written as that number, any other as a quoted text. The keys are not checked:
    /// JavaScript does not allow a negative number as a key.
    static void formatJavascriptObject(QTextStream* stream, const QMap<QString, QVariant>& map);

    /// Writes \a list as an array of the literals of formatVariantValue(), without a line break
    /// after it.
    static void formatJavascriptArray(QTextStream* stream, const QList<QVariant>& list);
    /// Writes \a list as an array of texts.
    ///
    /// \code
    /// JsCodeHelpers::formatJavascriptArray(&stream, QStringList {"a", "b"}); // ['a','b']
    /// \endcode
    static void formatJavascriptArray(QTextStream* stream, const QStringList& list);
    /// Writes \a list as an array of numbers.
    static void formatJavascriptArray(QTextStream* stream, const QList<int>& list);

    /// Writes the literal of \a v. It is that of PhpCodeHelpers::formatVariantValue() for every
    /// type except maps, which are written by formatJavascriptObject().
    ///
    /// \code
    /// JsCodeHelpers::formatVariantValue(&stream, QStringLiteral("it's")); // 'it\'s'
    /// JsCodeHelpers::formatVariantValue(&stream, true); // 1
    /// JsCodeHelpers::formatVariantValue(&stream, QVariantList {1, 2.5}); // [1,2.5] and "\n"
    /// \endcode
    ///
    /// Deliberate, as in PhpCodeHelpers: a double quote becomes an escaped single one, true and
    /// false become 1 and 0, and backslashes are not escaped. JavaScript reads a backslash and the
    /// character after it as an escape sequence and does not allow a line break in a text: encode
    /// such texts with HTMLUtils::encodeToJavascriptText() first. Raw code given as a QByteArray
    /// ends at the first NUL.
    static void formatVariantValue(QTextStream* stream, const QVariant& v);
};

#endif // ORVAUTILS_JSCODEHELPERS_H
