// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// GoogleFontLoader: the web fonts that the user can choose from, loaded on first use.

#ifndef ORVAUTILS_GOOGLEFONTLOADER_H
#define ORVAUTILS_GOOGLEFONTLOADER_H

#include "GoogleFontItem.h"
#include "orvautils_export.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

namespace OrvaUtilsPrivate {
class GoogleFontLoaderPrivate;
} // namespace OrvaUtilsPrivate

/// The shared catalogue of web fonts and its queries.
///
/// The library contains a snapshot of the font service's list. A newer copy of the list, put into
/// the application's settings folder as "google.json", replaces it.
///
/// \code
/// GoogleFontLoader fonts;
/// const QString name = fonts.validName(QStringLiteral("opensans")); // "Open Sans"
/// \endcode
///
/// All instances share one catalogue; each one keeps track of whether it has loaded it. The queries
/// load it if this instance has not done so yet. If nothing can be loaded, they return what is
/// described below, and the next one tries again.
///
/// Thread: the GUI thread. The shared catalogue is unprotected; once it is loaded, it may be read
/// from several threads as long as no new instance loads.
class ORVAUTILS_EXPORT GoogleFontLoader : public QObject
{
    Q_OBJECT

public:
    /// The name of a catalogue file, "google.json".
    static const QString GOOGLE_DEFINITION_FILENAME;

    /// Constructs a loader, owned by \a parent. Nothing is loaded yet.
    explicit GoogleFontLoader(QObject* parent = nullptr);
    /// The shared catalogue stays, for other instances and later ones.
    ~GoogleFontLoader() override;

    /// Loads the catalogue, unless this instance has done so, and returns whether it is loaded.
    ///
    /// The custom list is used if it can be loaded and its last modification is later than that of
    /// the built-in list; a list that is as old or older is ignored. The choice becomes the
    /// catalogue of all instances. Another instance thus finds a custom list that was put into
    /// place after the first one loaded.
    ///
    /// The built-in list is parsed once in the lifetime of the program, and a custom file once as
    /// long as its path, size and modification time do not change, whether it could be parsed or
    /// not. A file that was changed within the last two seconds is parsed again by the next load,
    /// because another change might leave its time as it is. A custom list that is missing or
    /// cannot be used is not an error; GoogleFontFile logs what is wrong with it when it reads it.
    bool load();

    /// Whether this instance has loaded the catalogue.
    bool isLoaded() const;

    /// The built-in list: ":/orvautils/google.json".
    static QString builinGoogleJsonFilePath();

    /// The custom list: "google.json" in ApplicationUtils::pathApplicationSettings().
    static QString customFilepath_JsonGoogleFont();

    /// The names of all families in the order of the catalogue. Empty when nothing can be loaded.
    QStringList fontNames();

    /// Sets \a item to the first family whose name, as it is or without its spaces, equals \a name
    /// in any case, and returns true: "opensans" finds "Open Sans". Returns false and leaves
    /// \a item untouched when there is none. \a name is not trimmed.
    bool findItemByName(const QString& name, GoogleFontItem& item);

    /// The catalogue's spelling of the family that findItemByName() finds for the trimmed \a name:
    /// " opensans" gives "Open Sans". Empty when there is none.
    QString validName(const QString& name);

    /// What is loaded, in words translated in the context "GoogleFontLoader": "1365 google font
    /// available", a line break, and "(Last update : 2022-02-25)"; or "No google font available !".
    QString stringInformations();

private:
    const std::unique_ptr<OrvaUtilsPrivate::GoogleFontLoaderPrivate> d;
};

#endif // ORVAUTILS_GOOGLEFONTLOADER_H
