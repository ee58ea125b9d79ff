// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ShopFile: reads shop.json and reports everything that is wrong in it.

#ifndef SHOPFILE_H
#define SHOPFILE_H

#include "Project.h"
#include "Shop.h"
#include "WorkItem.h"

#include <GoogleFontLoader.h>

#include <QVector>

/// The file itself in the error tree. Each wrong value is an item of its own, named by the file,
/// the product and the key; those of a product are below the product's item.
class ShopFile : public WorkItem
{
    Q_OBJECT

public:
    /// To be constructed on the main thread: it loads what the whole program shares, the catalogue
    /// of fonts and the rates of value-added tax.
    ShopFile(const Project& project, QObject* parent);
    ~ShopFile() override;

    /// Whether the project has such a file.
    bool exists() const;

    /// Reads the file and checks it against \a photographs, those of the project. Returns false if
    /// anything is wrong: \a shop is unusable then, and the errors are in the tree.
    bool read(const QVector<Photograph>& photographs, Shop* shop);

private:
    class Reader;

    const Project mProject;
    GoogleFontLoader mFonts;
};

#endif // SHOPFILE_H
