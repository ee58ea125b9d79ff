// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// PhpCodeHelpers: Qt values as PHP literals, constants and classes of constants.

#ifndef ORVAUTILS_PHPCODEHELPERS_H
#define ORVAUTILS_PHPCODEHELPERS_H

#include "orvautils_export.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QStringList>
#include <QVariant>

class QTextStream;

/// Writes Qt values as PHP code.
///
/// \code
/// QTextStream stream(&file);
/// stream << "<?php\n";
/// PhpCodeHelpers::writeConstant(&stream, "TITLE", QStringLiteral("L'été"), "the page's title");
/// // const TITLE='L\'été'; // the page's title
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
class ORVAUTILS_EXPORT PhpCodeHelpers
{
public:
    PhpCodeHelpers() = delete;

    // Literals

    /// Writes the literal of \a v.
    ///
    /// \code
    /// PhpCodeHelpers::formatVariantValue(&stream, QStringLiteral("it's")); // 'it\'s'
    /// PhpCodeHelpers::formatVariantValue(&stream, true); // 1
    /// PhpCodeHelpers::formatVariantValue(&stream, QVariantList {1, 2.5}); // [1,2.5] and "\n"
    /// \endcode
    ///
    /// - QByteArray: its text (UTF-8) as it is, without quotes, so that raw code can be passed
    ///   through. It ends at the first NUL; a QString does not
    /// - QString: in single quotes
    /// - bool: 1 or 0
    /// - double: with at most six significant digits (0.1, 3, 1.23457e+06)
    /// - int and long long: in decimal
    /// - QStringList: formatPhpArray()
    /// - `QMap<QString, QVariant>`: formatPhpMap()
    /// - `QList<QVariant>`: the literals in brackets, then a line break
    /// - anything else (unsigned numbers, characters, dates …): the result of QVariant::toString()
    ///   like a QString, which is '' for an invalid value or a hash
    ///
    /// Deliberate, because readers of existing files rely on it: a double quote in a text becomes
    /// an escaped single one. Backslashes are not escaped, so that PHP reads two of them as one,
    /// and one at the end of a text escapes the closing quote. Each list of variants inside a value
    /// is followed by a line break.
    static void formatVariantValue(QTextStream* stream, const QVariant& v);

    /// Writes \a list as an array of texts.
    ///
    /// \code
    /// PhpCodeHelpers::formatPhpArray(&stream, QStringList {"a", "b"}); // ['a','b']
    /// \endcode
    static void formatPhpArray(QTextStream* stream, const QStringList& list);
    /// Writes \a list as an array of numbers.
    static void formatPhpArray(QTextStream* stream, const QList<int>& list);
    /// Writes \a list as an array of the literals of formatVariantValue(), without a line break
    /// after it.
    static void formatPhpArray(QTextStream* stream, const QList<QVariant>& list);

    /// Writes \a map as an array with keys, in the order of the keys.
    ///
    /// \code
    /// PhpCodeHelpers::formatPhpMap(&stream, QVariantMap {{"b", 2}, {"a", "x"}, {"10", true}});
    /// // [
    /// // 10=>1,'a'=>'x','b'=>2
    /// // ]
    /// \endcode
    ///
    /// Keys sort as texts. One that is a whole number in decimal, as QString::toLongLong() reads
    /// it, is written as that number, any other as a quoted text.
    static void formatPhpMap(QTextStream* stream, const QMap<QString, QVariant>& map);
    /// The same in the iteration order of \a hash, which may differ from run to run.
    static void formatPhpMap(QTextStream* stream, const QHash<QString, QVariant>& hash);

    // Declarations

    /// Writes the line "const NAME=LITERAL;" with the literal of \a value, followed by " //
    /// COMMENT" if \a comment is not empty. Neither \a name nor \a comment is checked: a line break
    /// in one of them ends the line.
    ///
    /// \code
    /// PhpCodeHelpers::writeConstant(&stream, "MAX", 3, "per order"); // const MAX=3; // per order
    /// \endcode
    static void writeConstant(QTextStream* stream, const QString& name, const QVariant& value,
                              const QString& comment = QString());

    /// Writes the line "const NAME=ARRAY;" with \a name and the array of formatPhpArray().
    static void writePhpArray(QTextStream* stream, const QString& name, const QList<int>& list);
    /// The same for a \a list of texts.
    static void writePhpArray(QTextStream* stream, const QString& name, const QStringList& list);
    /// The same for a \a list of any values.
    static void writePhpArray(QTextStream* stream, const QString& name,
                              const QList<QVariant>& list);

    /// Writes "const NAME=MAP;" and a line break, with \a name and \a map as by formatPhpMap().
    static void writePhpMap(QTextStream* stream, const QString& name,
                            const QMap<QString, QVariant>& map);

    /// Writes the class \a className whose constants are the entries of \a map, in the order of the
    /// keys.
    ///
    /// \code
    /// PhpCodeHelpers::writePhpMapAsClassOfConstants(&stream, "Config", {{"A", 1}, {"B", "x"}});
    /// //
    /// // class Config
    /// // {
    /// // const A=1;
    /// // const B='x';
    /// // }
    /// \endcode
    ///
    /// An empty line precedes it. The keys are not checked: the caller makes sure that they are
    /// valid names of constants.
    static void writePhpMapAsClassOfConstants(QTextStream* stream, const QString& className,
                                              const QMap<QString, QVariant>& map);
};

#endif // ORVAUTILS_PHPCODEHELPERS_H
