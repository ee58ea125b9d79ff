// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// GoogleFontFile on any bytes: JSON is loaded, and the index finds the same as a linear search.

#include "Fuzz.h"
#include "GoogleFontFile.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

int searched(const QList<GoogleFontItem>& items, const QString& name)
{
    for (int i = 0; i < items.size(); ++i) {
        QString withoutBlanks = items.at(i).family();
        withoutBlanks.remove(QLatin1Char(' '));
        if (items.at(i).family().compare(name, Qt::CaseInsensitive) == 0
            || withoutBlanks.compare(name, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), int(size));
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);

    GoogleFontFile catalogue;
    const bool loaded = catalogue.loadJsonGFontFromBynaryDatas(bytes);
    FUZZ_PROMISE(loaded == (error.error == QJsonParseError::NoError));
    FUZZ_PROMISE(catalogue.isValid() == loaded);
    FUZZ_PROMISE(catalogue.doc() == document);
    const QList<GoogleFontItem> items = catalogue.items();
    FUZZ_PROMISE(items.size() == catalogue.count());
    FUZZ_PROMISE(items.size() == document.object().value(QLatin1String("items")).toArray().size());

    QDate latest;
    for (const GoogleFontItem& item : items) {
        const QString family = item.family();
        FUZZ_PROMISE(catalogue.indexOf(family) == searched(items, family));
        FUZZ_PROMISE(catalogue.indexOf(family.toUpper()) == searched(items, family.toUpper()));
        FUZZ_PROMISE(catalogue.indexOf(item.compressedFamily())
                     == searched(items, item.compressedFamily()));
        for (const QString& variant : item.commonVariants())
            FUZZ_PROMISE(item.allVariants().contains(variant));
        item.availableWeights();
        if (item.lastModified().isValid() && (!latest.isValid() || latest < item.lastModified()))
            latest = item.lastModified();
    }
    FUZZ_PROMISE(catalogue.lastModification() == latest);
    FUZZ_PROMISE(catalogue.indexOf(QString::fromUtf8(bytes))
                 == searched(items, QString::fromUtf8(bytes)));
    return 0;
}
