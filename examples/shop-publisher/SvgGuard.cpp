// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "PictureCheck.h"

#include <QHash>
#include <QPair>
#include <QSet>
#include <QStringList>
#include <QVector>
#include <QXmlStreamReader>

namespace {

const QLatin1String svgNamespace("http://www.w3.org/2000/svg");

/// \a text in lower case without blanks and control characters, which browsers ignore in the scheme
/// of an address.
QString squeezed(const QString& text)
{
    QString result;
    for (const QChar character : text) {
        if (!character.isSpace() && character.category() != QChar::Other_Control)
            result += character.toLower();
    }
    return result;
}

/// Whether the address \a squeezed stays in the picture: a part of it, or a picture or font that
/// the address itself contains.
bool staysInside(const QString& squeezed)
{
    if (squeezed.isEmpty() || squeezed.startsWith(QLatin1Char('#')))
        return true;
    for (const char* data :
         {"data:image/png", "data:image/jpeg", "data:image/jpg", "data:image/gif",
          "data:image/webp", "data:font/", "data:application/font", "data:application/x-font"}) {
        if (squeezed.startsWith(QLatin1String(data)))
            return true;
    }
    return false;
}

/// Elements that run, embed or follow something, in any namespace.
bool isActive(const QString& element)
{
    static const QSet<QString> active{
        QStringLiteral("script"), QStringLiteral("foreignobject"), QStringLiteral("iframe"),
        QStringLiteral("embed"),  QStringLiteral("object"),        QStringLiteral("audio"),
        QStringLiteral("video"),  QStringLiteral("handler"),       QStringLiteral("listener")};
    return active.contains(element);
}

/// Encodings that Qt and every browser read the same way. Another one could hide a script from one
/// of them.
bool isCommonEncoding(const QString& name)
{
    const QString encoding = name.toLower();
    return encoding.isEmpty() || encoding == QLatin1String("utf-8")
        || encoding == QLatin1String("us-ascii") || encoding == QLatin1String("iso-8859-1");
}

QString styleReason(const QString& css)
{
    const QString text = squeezed(css);
    // An escape sequence could spell anything that is searched for.
    for (const char* refused : {"@import", "\\", "image-set(", "expression("}) {
        if (text.contains(QLatin1String(refused)))
            return SvgGuard::tr("has a style with \"%1\"").arg(QString::fromLatin1(refused));
    }
    const QString url = QStringLiteral("url(");
    for (int at = int(text.indexOf(url)); at >= 0; at = int(text.indexOf(url, at + 1))) {
        QString address = text.mid(at + url.size());
        if (address.startsWith(QLatin1Char('"')) || address.startsWith(QLatin1Char('\'')))
            address.remove(0, 1);
        if (!staysInside(address))
            return SvgGuard::tr("has a style that refers to \"%1\"")
                .arg(address.section(QLatin1Char(')'), 0, 0).left(80));
    }
    return QString();
}

QString attributeReason(const QXmlStreamAttribute& attribute)
{
    const QString name = attribute.name().toString().toLower();
    const QString value = squeezed(attribute.value().toString());
    if (name.startsWith(QLatin1String("on")))
        return SvgGuard::tr("holds an attribute \"%1\"").arg(attribute.qualifiedName().toString());
    // An animation could set another attribute to a value that is refused here.
    if (name == QLatin1String("attributename")
        && (value.startsWith(QLatin1String("on")) || value.endsWith(QLatin1String("href"))))
        return SvgGuard::tr("animates the attribute \"%1\"").arg(attribute.value().toString());
    if (value.contains(QLatin1String("javascript:")) || value.contains(QLatin1String("vbscript:")))
        return SvgGuard::tr("holds a script in an attribute \"%1\"")
            .arg(attribute.qualifiedName().toString());
    const bool isAddress = name == QLatin1String("href") || name == QLatin1String("src")
        || name == QLatin1String("ping") || attribute.qualifiedName() == QLatin1String("xml:base");
    if (isAddress && !staysInside(value))
        return SvgGuard::tr("refers to \"%1\"").arg(attribute.value().toString().left(80));
    // The values of most attributes are CSS, in which a function may be spelled with escapes.
    const bool isCss = name == QLatin1String("style") || value.contains(QLatin1String("url("))
        || (attribute.namespaceUri().isEmpty() && value.contains(QLatin1Char('(')));
    return isCss ? styleReason(attribute.value().toString()) : QString();
}

/// Counts how often parts of a picture are drawn. A part that uses another one twice, which uses
/// another one twice, and so on: a small file can ask for more than any program can draw.
class Copies
{
public:
    static const int limit = 100000;

    void begin(const QXmlStreamReader& xml)
    {
        const QString outer = mOpen.isEmpty() ? QString() : mOpen.last();
        const QXmlStreamAttributes attributes = xml.attributes();
        const QString id = attributes.value(QLatin1String("id")).toString();
        mOpen.append(id.isEmpty() ? outer : id);
        if (mOpen.last() != outer)
            mParts[outer].append({id, 0});
        for (const QXmlStreamAttribute& attribute : attributes) {
            if (xml.name() == QLatin1String("use") && attribute.name() == QLatin1String("href"))
                mParts[mOpen.last()].append({attribute.value().toString().trimmed().mid(1), 1});
        }
    }

    void end() { mOpen.removeLast(); }

    bool areTooMany() { return countOf(QString(), 0) > limit; }

private:
    int countOf(const QString& id, int depth)
    {
        const int deepest = 500; // deeper than any drawing; a part that uses itself is endless
        if (depth > deepest)
            return limit + 1;
        const auto known = mCounts.constFind(id);
        if (known != mCounts.constEnd())
            return known.value();
        int count = 0;
        const QVector<QPair<QString, int>> parts = mParts.value(id);
        for (int i = 0; i < parts.size() && count <= limit; ++i)
            count += parts.at(i).second + countOf(parts.at(i).first, depth + 1);
        mCounts.insert(id, count);
        return count;
    }

    QStringList mOpen; ///< for each open element the nearest id
    QHash<QString, QVector<QPair<QString, int>>> mParts; ///< by id: inside it (0), or used (1)
    QHash<QString, int> mCounts;
};

/// Why an element or its attributes are refused, as the end of a sentence; empty if they are fine.
/// A browser leaves out an element in a style sheet and joins what stands around it.
QString elementReason(const QXmlStreamReader& xml, bool inStyle)
{
    const QString name = xml.name().toString().toLower();
    if (inStyle || isActive(name)
        || xml.namespaceUri() == QLatin1String("http://www.w3.org/1999/xhtml"))
        return SvgGuard::tr("holds an element \"%1\"").arg(xml.name().toString());
    const QXmlStreamAttributes attributes = xml.attributes();
    for (const QXmlStreamAttribute& attribute : attributes) {
        QString reason = attributeReason(attribute);
        if (!reason.isEmpty())
            return reason;
    }
    return QString();
}

} // namespace

Defect SvgGuard::defectOf(QIODevice* device)
{
    QXmlStreamReader xml(device);
    bool isFirst = true;
    bool inStyle = false;
    QString css;
    Copies copies;
    while (!xml.atEnd()) {
        QString reason;
        switch (xml.readNext()) {
        case QXmlStreamReader::StartDocument:
            if (!isCommonEncoding(xml.documentEncoding().toString()))
                reason = tr("has the encoding %1").arg(xml.documentEncoding().toString());
            break;
        case QXmlStreamReader::DTD:
            reason = tr("has a document type (DTD)");
            break;
        case QXmlStreamReader::ProcessingInstruction:
            if (xml.processingInstructionTarget() == QLatin1String("xml-stylesheet"))
                reason = tr("refers to a style sheet elsewhere");
            break;
        case QXmlStreamReader::StartElement:
            if (isFirst
                && (xml.name() != QLatin1String("svg") || xml.namespaceUri() != svgNamespace))
                return {WorkItem::Unsuitable,
                        tr("is not an SVG picture: its first element is not svg in the SVG "
                           "namespace")};
            isFirst = false;
            copies.begin(xml);
            reason = elementReason(xml, inStyle);
            inStyle = xml.name().compare(QLatin1String("style"), Qt::CaseInsensitive) == 0;
            css.clear();
            break;
        case QXmlStreamReader::Characters:
            if (inStyle)
                css += xml.text();
            break;
        case QXmlStreamReader::EndElement:
            copies.end();
            if (inStyle)
                reason = styleReason(css);
            inStyle = false;
            break;
        default:
            break;
        }
        if (!reason.isEmpty())
            return {WorkItem::Unsuitable,
                    tr("is not published, because it %1 (line %2)")
                        .arg(reason, QString::number(xml.lineNumber()))};
    }
    if (xml.hasError())
        return {WorkItem::Undecodable,
                tr("is not a well-formed SVG picture (line %1: %2)")
                    .arg(QString::number(xml.lineNumber()), xml.errorString())};
    if (copies.areTooMany())
        return {WorkItem::Unsuitable, tr("uses its own parts too often")};
    return {};
}
