// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ExifEditor judged by other readers: after a change exiftool, exiv2 and libexif read every tag
// that was not meant to change as before, in photographs and in blocks of every kind.

#include "ExifEditor.h"

#include "Columns.h"
#include "JpegParts.h"
#include "Photographs.h"
#include "Sandbox.h"
#include "Text.h"
#include "TiffBuilder.h"
#include "TiffWalk.h"

#include <QMap>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QtTest>

#include <algorithm>
#include <functional>

#ifdef ORVAUTILS_HAS_LIBEXIF
#include <libexif/exif-data.h>
#endif

using Header = QExifImageHeader;
using Lines = QList<QByteArray>;
using Change = std::function<void(ExifEditor*)>;

Q_DECLARE_METATYPE(Change)

namespace {

// Blocks

/// The variations of a block that has nearly everything.
struct Kind
{
    bool sharesValues = false;
    bool overlapsValues = false;
    bool hasMakerNoteData = false; ///< outside of the note, at absolute offsets
};

/// IFD0 with texts, Exif with a maker note, an interoperability IFD, GPS, IFD1 with a thumbnail.
QByteArray richBlock(QDataStream::ByteOrder order, const Kind& kind)
{
    const quint32 makeAt = 350;
    const quint32 modelAt = kind.sharesValues ? makeAt : kind.overlapsValues ? makeAt + 4 : 360;
    QByteArray note("ORVACAM\0", 8);
    note += TiffBuilder(order).u16(1).entry(0x0001, 2, 12, kind.hasMakerNoteData ? 470 : 26).u32(0);
    TiffBuilder block(order);
    block.tiff();
    block
        .u16(7) // 8
        .entry(0x010E, 2, 3, 0x61620063) // a text that happens to lack its NUL in one byte order
        .entry(0x010F, 2, 10, makeAt)
        .entry(0x0110, 2, 6, modelAt)
        .shorts(0x0112, 1, 6)
        .entry(0x8769, 4, 1, 98)
        .entry(0x8825, 4, 1, 212)
        .entry(0xC000, 99, 1, 0x01020304) // a type that does not exist
        .u32(266); // 94
    block
        .u16(5) // 98
        .entry(0x829A, 5, 1, 370)
        .entry(0x9003, 2, 20, 378)
        .entry(0x927C, 7, quint32(note.size()), 398)
        .entry(0x9101, 7, 4, 0x01020300)
        .entry(0xA005, 4, 1, 164)
        .u32(0); // 160
    block.u16(1).bytes(0x0001, 2, 4, QByteArray("R98\0", 4)).u32(0); // 164
    block.raw(QByteArray(212 - block.size(), '\0'));
    block
        .u16(3) // 212
        .bytes(0x0001, 2, 2, QByteArray("N\0\0\0", 4))
        .entry(0x0002, 5, 3, 440)
        .bytes(0x0005, 1, 1, QByteArray(4, '\0'))
        .u32(0);
    block.raw(QByteArray(266 - block.size(), '\0'));
    block
        .u16(4) // 266
        .shorts(0x0103, 1, 6)
        .shorts(0x0128, 1, 2)
        .entry(0x0201, 4, 1, 490)
        .entry(0x0202, 4, 1, 20)
        .u32(0);
    block.raw(QByteArray(350 - block.size(), '\0'));
    block.raw(QByteArray("OrvaCorp1\0", 10)).raw(QByteArray("Mod12\0\0\0\0\0", 10)); // 350, 360
    block.u32(1).u32(125).raw(QByteArray("2020:01:02 03:04:05\0", 20)); // 370, 378
    block.raw(note); // 398
    block.raw(QByteArray(440 - block.size(), '\0'));
    block.u32(48).u32(1).u32(8).u32(1).u32(30).u32(1); // 440
    block.raw(QByteArray(470 - block.size(), '\0'));
    block.raw(QByteArray("absolutely\0\0", 12)); // 470
    block.raw(QByteArray(490 - block.size(), '\0'));
    block.raw(hex("FFD8FFE000104A46494600010100000100010000")); // 490
    return block;
}

QMap<QString, QByteArray> madeFiles()
{
    QMap<QString, QByteArray> files;
    const QByteArray rest = dqt() + scan();
    const QByteArray icc = segment(0xFFE2, QByteArray("ICC_PROFILE\0\1\1....", 18));
    for (const auto order : {little, big}) {
        const QString name = order == little ? text("ii-%1.jpg") : text("mm-%1.jpg");
        const auto add = [&](const char* what, const QByteArray& file) {
            files.insert(name.arg(text(what)), file);
        };
        Kind shares;
        shares.sharesValues = true;
        Kind overlaps;
        overlaps.overlapsValues = true;
        Kind absolute;
        absolute.hasMakerNoteData = true;
        add("plain", soi() + exifSegment(richBlock(order, {})) + rest);
        add("shared", soi() + exifSegment(richBlock(order, shares)) + rest);
        add("overlapping", soi() + exifSegment(richBlock(order, overlaps)) + rest);
        add("absolute-note", soi() + exifSegment(richBlock(order, absolute)) + rest);
        add("behind-xmp-icc",
            soi() + jfif() + xmp() + icc + exifSegment(richBlock(order, {})) + rest);
        const QByteArray large = richBlock(order, {}) + QByteArray(64500, 'x');
        add("nearly-64-kib", soi() + exifSegment(large) + rest);
    }
    return files;
}

// Readers

Lines sortedLines(const QByteArray& output)
{
    Lines lines = output.split('\n');
    std::sort(lines.begin(), lines.end());
    return lines;
}

#ifdef ORVAUTILS_HAS_LIBEXIF
QByteArray readByLibexif(const QString& path)
{
    QByteArray lines;
    ExifData* const data = exif_data_new_from_file(QFile::encodeName(path).constData());
    if (!data)
        return lines;
    for (int ifd = 0; ifd < EXIF_IFD_COUNT; ++ifd) {
        const ExifContent* const content = data->ifd[ifd];
        for (unsigned i = 0; i < content->count; ++i) {
            const ExifEntry* const entry = content->entries[i];
            const QByteArray bytes(reinterpret_cast<const char*>(entry->data), int(entry->size));
            lines += QFileInfo(path).fileName().toUtf8() + ": "
                + exif_ifd_get_name(static_cast<ExifIfd>(ifd)) + " 0x"
                + QByteArray::number(entry->tag, 16).rightJustified(4, '0') + ' '
                + QByteArray::number(entry->format) + ' ' + bytes.toHex() + '\n';
        }
    }
    lines += QFileInfo(path).fileName().toUtf8() + ": thumbnail "
        + QByteArray(reinterpret_cast<const char*>(data->data), int(data->size)).toHex() + '\n';
    exif_data_unref(data);
    return lines;
}
#endif

/// The output of each reader for the files of a folder, one line for each tag. Offsets of
/// thumbnails are relative to the beginning of the file, which the caller does not change.
QMap<QString, Lines> readByAll(const QString& folder)
{
    QMap<QString, Lines> read;
    const QStringList names = QDir(folder).entryList({text("*.jpg")}, QDir::Files, QDir::Name);
    const QString exiftool = QStandardPaths::findExecutable(text("exiftool"));
    const QString exiv2 = QStandardPaths::findExecutable(text("exiv2"));
    if (!exiftool.isEmpty()) {
        const QByteArray all =
            outputOf(exiftool,
                     {text("-a"), text("-u"), text("-n"), text("-m"), text("-D"), text("-G1"),
                      text("-s"), text("-EXIF:all"), text("-MakerNotes:all"), text("-XMP:all"),
                      text("-ICC_Profile:all"), text("-JFIF:all"), text("-Interop:all"), folder});
        Lines lines;
        QByteArray file;
        for (const QByteArray& line : all.split('\n')) {
            if (line.startsWith("========"))
                file = line.mid(line.lastIndexOf('/') + 1);
            else
                lines.append(file + ": " + line);
        }
        std::sort(lines.begin(), lines.end());
        read[text("exiftool")] = lines;
    }
    if (!exiv2.isEmpty()) {
        QStringList arguments{text("-q"), text("-u"), text("-PEkxycv")};
        for (const QString& name : names)
            arguments.append(folder + QLatin1Char('/') + name);
        read[text("exiv2")] =
            sortedLines(outputOf(exiv2, arguments).replace(folder.toUtf8() + '/', QByteArray()));
    }
#ifdef ORVAUTILS_HAS_LIBEXIF
    QByteArray output;
    for (const QString& name : names)
        output += readByLibexif(folder + QLatin1Char('/') + name);
    read[text("libexif")] = sortedLines(output);
#endif
    return read;
}

Lines without(const Lines& lines, const QString& pattern)
{
    const QRegularExpression changed(pattern, QRegularExpression::CaseInsensitiveOption);
    Lines kept;
    for (const QByteArray& line : lines) {
        if (!changed.match(QString::fromLatin1(line)).hasMatch())
            kept.append(line);
    }
    return kept;
}

} // namespace

class tst_ExifEditorReaders : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void seeTheChangeAlone_data();
    void seeTheChangeAlone();

private:
    const Sandbox mSandbox;
    QString mOriginals;
    QStringList mNames; // of the files that can be edited
    QMap<QString, Lines> mBefore;
};

void tst_ExifEditorReaders::initTestCase()
{
    mOriginals = mSandbox.folder(text("originals"));
    QMap<QString, QByteArray> files = madeFiles();
    for (const QString& name : expectedPhotos().keys()) {
        // The readers give up at different places in a damaged file.
        if (name.endsWith(text(".jpg")) && !name.startsWith(text("broken")))
            files.insert(name, contentOf(photosFolder() + QLatin1Char('/') + name));
    }
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        writeFile(mOriginals + QLatin1Char('/') + file.key(), file.value());
        mNames.append(file.key());
    }
    mBefore = readByAll(mOriginals);
    for (const Lines& lines : mBefore)
        QVERIFY(lines.size() > 100);
}

void tst_ExifEditorReaders::seeTheChangeAlone_data()
{
    const auto table = columns<Change, QString>(
        "change", "changed"); // lines about the tags that were meant to change
    const auto row = [&](const char* name, const char* changed, const Change& change) {
        table(name, change, text(changed));
    };
    row("orientation", "IFD0.*Orientation|Image.Orientation|: 0 0x0112", [](ExifEditor* editor) {
        if (editor->contains(Header::Orientation))
            editor->setOrientation(3);
    });
    row("artist", "Artist|: 0 0x013b", [](ExifEditor* editor) {
        editor->setValue(Header::Artist, QExifValue(text("Somebody with a long name")));
    });
    row("software removed", "\\bSoftware *:|Image.Software\\b|: 0 0x0131",
        [](ExifEditor* editor) { editor->remove(Header::Software); });
    row("description longer", "ImageDescription|: 0 0x010e", [](ExifEditor* editor) {
        editor->setValue(Header::ImageDescription,
                         QExifValue(text("A description that is longer than most of them")));
    });
    row("comment and lens", "UserComment|0x9286|LensModel|0xa434", [](ExifEditor* editor) {
        editor->setValue(Header::UserComment,
                         QExifValue(text("Seen from afar"), QExifValue::UnicodeEncoding));
        editor->setValue(Header::LensModel, QExifValue(text("35 mm")));
    });
    row("GPS removed", "GPS|EXIF_IFD_GPS|0x8825", [](ExifEditor* editor) { editor->removeGps(); });
    row("thumbnail removed", "IFD1|Thumbnail|: 1 0x",
        [](ExifEditor* editor) { editor->removeThumbnail(); });
}

void tst_ExifEditorReaders::seeTheChangeAlone()
{
    QFETCH(Change, change);
    QFETCH(QString, changed);
    if (mBefore.isEmpty())
        QSKIP("none of the readers is there; ExifEditor's own test reads by itself");
    const QString folder = mSandbox.folder(text(QTest::currentDataTag()));
    for (const QString& name : qAsConst(mNames)) {
        const QString path = folder + QLatin1Char('/') + name;
        writeFile(path, contentOf(mOriginals + QLatin1Char('/') + name));
        ExifEditor editor;
        QString error;
        QVERIFY2(editor.load(path, &error), qPrintable(name + text(": ") + error));
        if (editor.isEmpty())
            continue;
        change(&editor);
        const bool isSaved = editor.save(path, &error);
        const bool mayGrow = !name.contains(text("two-exif")); // whose block goes on in the second
        QVERIFY2(isSaved || !mayGrow, qPrintable(name + text(": ") + error));
    }
    const QMap<QString, Lines> after = readByAll(folder);
    for (const QString& reader : mBefore.keys()) {
        // Offsets are not tags; a directory that moves takes its data along.
        const QString ignored = changed + text("|Image.ExifTag|Image.GPSTag");
        const Lines before = without(mBefore[reader], ignored);
        const Lines now = without(after[reader], ignored);
        for (int i = 0; i < qMin(before.size(), now.size()); ++i)
            QVERIFY2(before[i] == now[i],
                     (reader.toUtf8() + "\n  before " + before[i].left(300) + "\n  after  "
                      + now[i].left(300))
                         .constData());
        QCOMPARE(now.size(), before.size());
    }
}

QTEST_GUILESS_MAIN(tst_ExifEditorReaders)
#include "tst_ExifEditorReaders.moc"
