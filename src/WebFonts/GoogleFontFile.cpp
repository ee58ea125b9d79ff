// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "GoogleFontFile.h"

#include "ascii_p.h"
#include "logrecord_p.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QVector>

#include <algorithm>

using namespace OrvaUtilsPrivate;

class OrvaUtilsPrivate::GoogleFontFilePrivate : public QSharedData
{
public:
    QJsonDocument document;
    QList<GoogleFontItem> items;
    /// For each family, the hash of its name in the upper half and its position in the lower half,
    /// in ascending order.
    QVector<quint64> index;
    QDate lastModification;
    bool valid = false;
};

namespace {

/// A hash of \a name that ignores case and spaces, so that all names that may find a family have
/// the same hash as its own name. Case is folded as by Qt::CaseInsensitive: character by character.
quint32 hashOfName(const QString& name)
{
    quint32 hash = 2166136261u; // FNV-1a, character by character
    for (int i = 0; i < name.size(); ++i) {
        uint character = name.at(i).unicode();
        if (character == ' ')
            continue;
        if (character < 0x80) {
            character = toAsciiLower(QChar(character)).unicode();
        } else {
            if (QChar::isHighSurrogate(character) && i + 1 < name.size()
                && name.at(i + 1).isLowSurrogate())
                character = QChar::surrogateToUcs4(ushort(character), name.at(++i).unicode());
            character = QChar::toCaseFolded(character);
        }
        hash = (hash ^ character) * 16777619u;
    }
    return hash;
}

} // namespace

GoogleFontFile::GoogleFontFile()
    : d(new GoogleFontFilePrivate)
{ }

GoogleFontFile::GoogleFontFile(const GoogleFontFile& other) = default;

GoogleFontFile& GoogleFontFile::operator=(const GoogleFontFile& other) = default;

GoogleFontFile::~GoogleFontFile() = default;

void GoogleFontFile::clear()
{
    *this = GoogleFontFile();
}

bool GoogleFontFile::loadJsonGFontFromFilePath(const QString& path)
{
    clear();
    QFile file(path);
    if (!file.exists())
        return false;
    if (!file.open(QIODevice::ReadOnly)) {
        ORVAUTILS_LOG_WARNING() << "GFonts file opening error";
        return false;
    }
    return loadJsonGFontFromBynaryDatas(file.readAll());
}

bool GoogleFontFile::loadJsonGFontFromBynaryDatas(const QByteArray& data)
{
    clear();
    QJsonParseError error = {};
    GoogleFontFilePrivate& catalogue = *d;
    catalogue.document = QJsonDocument::fromJson(data, &error);
    if (error.error != QJsonParseError::NoError) {
        ORVAUTILS_LOG_WARNING() << "GFonts file parsing error:" << error.errorString();
        return false;
    }
    const QJsonArray families = catalogue.document.object().value(QLatin1String("items")).toArray();
    catalogue.items.reserve(families.size());
    catalogue.index.reserve(families.size());
    for (const QJsonValue& family : families) {
        const GoogleFontItem item(family.toObject());
        // Invalid dates are earlier than any other.
        catalogue.lastModification = qMax(catalogue.lastModification, item.lastModified());
        catalogue.index +=
            quint64(hashOfName(item.family())) << 32 | quint32(catalogue.items.size());
        catalogue.items += item;
    }
    std::sort(catalogue.index.begin(), catalogue.index.end());
    catalogue.valid = true;
    return true;
}

bool GoogleFontFile::isValid() const
{
    return d->valid;
}

int GoogleFontFile::count() const
{
    return int(d->items.size());
}

QList<GoogleFontItem> GoogleFontFile::items() const
{
    return d->items;
}

int GoogleFontFile::indexOf(const QString& name) const
{
    const quint32 hash = hashOfName(name);
    // Families with the same hash are adjacent, in the order of the document.
    auto entry = std::lower_bound(d->index.cbegin(), d->index.cend(), quint64(hash) << 32);
    for (; entry != d->index.cend() && *entry >> 32 == hash; ++entry) {
        const int position = int(*entry & 0xffffffffu);
        const QString family = d->items.at(position).family();
        if (family.compare(name, Qt::CaseInsensitive) == 0
            || d->items.at(position).compressedFamily().compare(name, Qt::CaseInsensitive) == 0)
            return position;
    }
    return -1;
}

QDate GoogleFontFile::lastModification() const
{
    return d->lastModification;
}

QJsonDocument GoogleFontFile::doc() const
{
    return d->document;
}
