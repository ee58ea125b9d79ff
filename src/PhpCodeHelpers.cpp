// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "PhpCodeHelpers.h"

#include "literalwriter_p.h"

using namespace OrvaUtilsPrivate;

namespace {

/// Writes a declaration, with the literal that \a writeLiteral writes.
template <typename Function>
void declareConstant(LiteralWriter& php, const QString& name, const QString& comment,
                     Function writeLiteral)
{
    php.writeRaw("const ");
    php.writeRaw(name);
    php.writeRaw("=");
    writeLiteral();
    php.writeRaw(";");
    if (!comment.isEmpty()) {
        php.writeRaw(" // ");
        php.writeRaw(comment);
    }
    php.writeRaw("\n");
}

template <typename List>
void declareArray(QTextStream* stream, const QString& name, const List& list)
{
    LiteralWriter php(stream, phpSyntax);
    declareConstant(php, name, QString(), [&] { php.writeList(list); });
}

} // namespace

// Literals

void PhpCodeHelpers::formatVariantValue(QTextStream* stream, const QVariant& v)
{
    LiteralWriter(stream, phpSyntax).write(v);
}

void PhpCodeHelpers::formatPhpArray(QTextStream* stream, const QStringList& list)
{
    LiteralWriter(stream, phpSyntax).writeList(list);
}

void PhpCodeHelpers::formatPhpArray(QTextStream* stream, const QList<int>& list)
{
    LiteralWriter(stream, phpSyntax).writeList(list);
}

void PhpCodeHelpers::formatPhpArray(QTextStream* stream, const QList<QVariant>& list)
{
    LiteralWriter(stream, phpSyntax).writeList(list);
}

void PhpCodeHelpers::formatPhpMap(QTextStream* stream, const QMap<QString, QVariant>& map)
{
    LiteralWriter(stream, phpSyntax).writeMap(map);
}

void PhpCodeHelpers::formatPhpMap(QTextStream* stream, const QHash<QString, QVariant>& hash)
{
    LiteralWriter(stream, phpSyntax).writeMap(hash);
}

// Declarations

void PhpCodeHelpers::writeConstant(QTextStream* stream, const QString& name, const QVariant& value,
                                   const QString& comment)
{
    LiteralWriter php(stream, phpSyntax);
    declareConstant(php, name, comment, [&] { php.write(value); });
}

void PhpCodeHelpers::writePhpArray(QTextStream* stream, const QString& name, const QList<int>& list)
{
    declareArray(stream, name, list);
}

void PhpCodeHelpers::writePhpArray(QTextStream* stream, const QString& name,
                                   const QStringList& list)
{
    declareArray(stream, name, list);
}

void PhpCodeHelpers::writePhpArray(QTextStream* stream, const QString& name,
                                   const QList<QVariant>& list)
{
    declareArray(stream, name, list);
}

void PhpCodeHelpers::writePhpMap(QTextStream* stream, const QString& name,
                                 const QMap<QString, QVariant>& map)
{
    LiteralWriter php(stream, phpSyntax);
    declareConstant(php, name, QString(), [&] { php.writeMap(map); });
}

void PhpCodeHelpers::writePhpMapAsClassOfConstants(QTextStream* stream, const QString& className,
                                                   const QMap<QString, QVariant>& map)
{
    LiteralWriter php(stream, phpSyntax);
    php.writeRaw("\nclass ");
    php.writeRaw(className);
    php.writeRaw("\n{\n");
    for (auto entry = map.constBegin(); entry != map.constEnd(); ++entry)
        declareConstant(php, entry.key(), QString(), [&] { php.write(entry.value()); });
    php.writeRaw("}\n");
}
