// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// GoogleFontFile: one catalogue of web fonts, parsed.

#ifndef ORVAUTILS_GOOGLEFONTFILE_H
#define ORVAUTILS_GOOGLEFONTFILE_H

#include "GoogleFontItem.h"
#include "orvautils_export.h"

#include <QByteArray>
#include <QDate>
#include <QJsonDocument>
#include <QList>
#include <QSharedDataPointer>
#include <QString>

namespace OrvaUtilsPrivate {
class GoogleFontFilePrivate;
} // namespace OrvaUtilsPrivate

/// A parsed catalogue: a value that is cheap to copy, empty and invalid until something is loaded.
///
/// The document is the font service's own list: a JSON object whose array "items" contains one
/// object per family. Nothing else in the document is used.
///
/// \code
/// GoogleFontFile catalogue;
/// if (catalogue.loadJsonGFontFromFilePath(path))
///     offer(catalogue.items());
/// \endcode
///
/// Thread: as for any Qt value class; reading one object from several threads is safe.
class ORVAUTILS_EXPORT GoogleFontFile
{
public:
    /// An empty and invalid catalogue.
    GoogleFontFile();
    /// The same catalogue as \a other, whose data it shares.
    GoogleFontFile(const GoogleFontFile& other);
    /// Becomes the same catalogue as \a other, whose data it shares.
    GoogleFontFile& operator=(const GoogleFontFile& other);
    /// Releases the data, which other copies may still share.
    ~GoogleFontFile();

    /// Clears the catalogue: it is empty and invalid again.
    void clear();

    /// Loads the file at \a path in place of what was loaded before, and returns whether this
    /// succeeded. After a failure the catalogue is empty and invalid.
    ///
    /// A file that does not exist is not logged; one that cannot be opened is logged with LogType 2
    /// as "GFonts file opening error". Content fails and is logged as by
    /// loadJsonGFontFromBynaryDatas().
    bool loadJsonGFontFromFilePath(const QString& path);

    /// Loads \a data, JSON text in UTF-8, in place of what was loaded before.
    ///
    /// Only text that is not JSON fails: false is returned, the catalogue is empty and invalid, and
    /// "GFonts file parsing error:" with the parser's message is logged with LogType 2. A document
    /// without "items" is a valid catalogue without families.
    bool loadJsonGFontFromBynaryDatas(const QByteArray& data);

    /// Whether the last load succeeded.
    bool isValid() const;

    /// The number of families.
    int count() const;

    /// The families in the order of the document.
    QList<GoogleFontItem> items() const;

    /// The position in items() of the first family whose name, as it is or without its spaces,
    /// equals \a name in any case; -1 when there is none.
    ///
    /// The lookup uses an index that is built with the catalogue: its cost does not depend on the
    /// number of families.
    int indexOf(const QString& name) const;

    /// The latest day on which one of the families was changed; families without a readable date do
    /// not count. An invalid date when there is none.
    QDate lastModification() const;

    /// The document as it was parsed; null when nothing is loaded.
    QJsonDocument doc() const;

private:
    QSharedDataPointer<OrvaUtilsPrivate::GoogleFontFilePrivate> d;
};

#endif // ORVAUTILS_GOOGLEFONTFILE_H
