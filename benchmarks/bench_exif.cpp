// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// EXIF of 1,000 small camera files, compared with libexif and exiv2.
//
// The files are generated, in memory (/dev/shm if it exists), and resemble those of a camera: 12
// tags in IFD0, 33 in the Exif sub-IFD with a maker note of 6 kB, GPS, an interoperability IFD and
// a thumbnail. Each benchmark is one pass over all files. Before anything is measured, the
// contenders are checked to give the same results.
//
// compare_exif.py runs it with the contenders in turn and prints the ratios. With "--files FOLDER"
// it only writes the files, for contenders that are programs.

#include "Benchmarks.h"
#include "ExifEditor.h"
#include "ExifUtils.h"
#include "QExifImageHeader.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <exiv2/exiv2.hpp>
#include <libexif/exif-data.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <random>
#include <string>
#include <vector>

namespace {

const int fileCount = 1000;

// The files

/// A little-endian IFD under construction: entries, and the data that they refer to.
class Directory
{
public:
    void shortValue(quint16 tag, quint16 value) { add(tag, 3, 1, u16(value)); }
    void longValue(quint16 tag, quint32 value) { add(tag, 4, 1, u32(value)); }
    void text(quint16 tag, const QByteArray& value)
    {
        add(tag, 2, quint32(value.size() + 1), value + '\0');
    }
    void bytes(quint16 tag, quint16 type, const QByteArray& value)
    {
        add(tag, type, quint32(value.size()), value);
    }
    void rationals(quint16 tag, quint16 type, const std::vector<quint32>& numbers)
    {
        QByteArray data;
        for (const quint32 number : numbers)
            data += u32(number);
        add(tag, type, quint32(numbers.size() / 2), data);
    }
    int size() const { return int(mEntries.size()) * 12 + 6 + dataSize(); }

    /// The bytes of the directory if it begins at the given offset of the block.
    QByteArray at(quint32 offset, quint32 next = 0) const
    {
        QByteArray head = u16(quint16(mEntries.size()));
        QByteArray data;
        const quint32 dataOffset = offset + quint32(mEntries.size()) * 12 + 6;
        for (const Entry& entry : mEntries) {
            head += u16(entry.tag) + u16(entry.type) + u32(entry.count);
            if (entry.data.size() <= 4) {
                head += entry.data.leftJustified(4, '\0');
            } else {
                head += u32(dataOffset + quint32(data.size()));
                data += even(entry.data);
            }
        }
        return head + u32(next) + data;
    }

    static QByteArray u16(quint16 number)
    {
        return QByteArray().append(char(number & 0xFF)).append(char(number >> 8));
    }
    static QByteArray u32(quint32 number)
    {
        return u16(quint16(number & 0xFFFF)) + u16(quint16(number >> 16));
    }

private:
    struct Entry
    {
        quint16 tag;
        quint16 type;
        quint32 count;
        QByteArray data;
    };

    static QByteArray even(const QByteArray& data) { return data.size() % 2 ? data + '\0' : data; }
    int dataSize() const
    {
        int size = 0;
        for (const Entry& entry : mEntries) {
            if (entry.data.size() > 4)
                size += even(entry.data).size();
        }
        return size;
    }
    void add(quint16 tag, quint16 type, quint32 count, const QByteArray& data)
    {
        mEntries.push_back({tag, type, count, data});
    }

    std::vector<Entry> mEntries;
};

QByteArray jpegOf(const QSize& size, unsigned seed)
{
    std::mt19937 random(seed);
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const int noise = int(random() % 24);
            image.setPixel(x, y, qRgb((x + noise) & 255, (y * 2 + noise) & 255, (x ^ y) & 255));
        }
    }
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPG", 60);
    return jpeg;
}

Directory exifDirectory(const QByteArray& date, const QByteArray& makerNote,
                        quint32 interoperabilityAt)
{
    Directory exif;
    exif.rationals(0x829A, 5, {1, 250});
    exif.rationals(0x829D, 5, {28, 10});
    exif.shortValue(0x8822, 2);
    exif.shortValue(0x8827, 200);
    exif.bytes(0x9000, 7, "0230");
    exif.text(0x9003, date);
    exif.text(0x9004, date);
    exif.bytes(0x9101, 7, QByteArray("\1\2\3\0", 4));
    exif.rationals(0x9102, 5, {4, 1});
    exif.rationals(0x9201, 10, {797, 100});
    exif.rationals(0x9202, 5, {297, 100});
    exif.rationals(0x9204, 10, {0, 3});
    exif.rationals(0x9205, 5, {297, 100});
    exif.shortValue(0x9207, 5);
    exif.shortValue(0x9208, 0);
    exif.shortValue(0x9209, 16);
    exif.rationals(0x920A, 5, {350, 10});
    exif.bytes(0x927C, 7, makerNote);
    exif.bytes(0x9286, 7, QByteArray("ASCII\0\0\0", 8) + "a comment");
    exif.text(0x9291, "42");
    exif.text(0x9292, "42");
    exif.bytes(0xA000, 7, "0100");
    exif.shortValue(0xA001, 1);
    exif.longValue(0xA002, 640);
    exif.longValue(0xA003, 480);
    exif.longValue(0xA005, interoperabilityAt);
    exif.shortValue(0xA217, 2);
    exif.bytes(0xA300, 7, QByteArray(1, '\3'));
    exif.bytes(0xA301, 7, QByteArray(1, '\1'));
    exif.shortValue(0xA401, 0);
    exif.shortValue(0xA402, 0);
    exif.shortValue(0xA403, 0);
    exif.shortValue(0xA406, 0);
    exif.text(0xA434, "ORVA 35mm F2.8");
    return exif;
}

QByteArray cameraBlock(int index, const QByteArray& thumbnail)
{
    std::mt19937 random(static_cast<unsigned>(index));
    const QByteArray date = "2019:07:14 18:" + QByteArray::number(10 + index % 50) + ":33";

    Directory interoperability;
    interoperability.text(0x0001, "R98");
    interoperability.bytes(0x0002, 7, "0100");

    Directory gps;
    gps.bytes(0x0000, 1, QByteArray("\2\3\0\0", 4));
    gps.text(0x0001, "N");
    gps.rationals(0x0002, 5, {47, 1, 30, 1, quint32(index), 100});
    gps.text(0x0003, "E");
    gps.rationals(0x0004, 5, {8, 1, 12, 1, quint32(index), 50});
    gps.bytes(0x0005, 1, QByteArray(1, '\0'));
    gps.rationals(0x0006, 5, {4120, 10});
    gps.rationals(0x0007, 5, {16, 1, 10, 1, 33, 1});
    gps.text(0x0012, "WGS-84");
    gps.text(0x001D, "2019:07:14");

    QByteArray makerNote("ORVACAM\0", 8);
    while (makerNote.size() < 6000)
        makerNote += char(random() & 0xFF);

    Directory image;
    image.text(0x010E, "A picture of a series, number " + QByteArray::number(index));
    image.text(0x010F, "Orva Optics");
    image.text(0x0110, "Orva 1000 Digital");
    image.shortValue(0x0112, quint16(1 + index % 8));
    image.rationals(0x011A, 5, {300, 1});
    image.rationals(0x011B, 5, {300, 1});
    image.shortValue(0x0128, 2);
    image.text(0x0131, "Firmware 1.02");
    image.text(0x0132, date);
    image.text(0x013B, "A. Person");
    image.shortValue(0x0213, 2);
    image.text(0x8298, "Copyright A. Person");

    // IFD0 with two more pointers, then the sub-IFDs, IFD1 and the thumbnail.
    const quint32 exifAt = quint32(8 + image.size() + 2 * 12);
    const quint32 interoperabilityAt = exifAt + quint32(exifDirectory(date, makerNote, 0).size());
    const Directory exif = exifDirectory(date, makerNote, interoperabilityAt);
    const quint32 gpsAt = interoperabilityAt + quint32(interoperability.size());
    const quint32 thumbnailIfdAt = gpsAt + quint32(gps.size());
    image.longValue(0x8769, exifAt);
    image.longValue(0x8825, gpsAt);

    Directory thumbnailIfd;
    thumbnailIfd.shortValue(0x0103, 6);
    thumbnailIfd.rationals(0x011A, 5, {72, 1});
    thumbnailIfd.rationals(0x011B, 5, {72, 1});
    thumbnailIfd.shortValue(0x0128, 2);
    const quint32 thumbnailAt = thumbnailIfdAt + quint32(thumbnailIfd.size() + 2 * 12);
    thumbnailIfd.longValue(0x0201, thumbnailAt);
    thumbnailIfd.longValue(0x0202, quint32(thumbnail.size()));

    return QByteArray("II*\0\x08\0\0\0", 8) + image.at(8, thumbnailIfdAt) + exif.at(exifAt)
        + interoperability.at(interoperabilityAt) + gps.at(gpsAt) + thumbnailIfd.at(thumbnailIfdAt)
        + thumbnail;
}

QByteArray cameraFile(int index, const QByteArray& picture, const QByteArray& thumbnail)
{
    const QByteArray payload = QByteArray("Exif\0\0", 6) + cameraBlock(index, thumbnail);
    const int length = payload.size() + 2;
    QByteArray head = QByteArray::fromHex("FFD8FFE1");
    head.append(char(length >> 8)).append(char(length & 0xFF));
    const int jfif = 2 + 18; // the picture's SOI and JFIF segment, which a camera does not write
    return head + payload + picture.mid(jfif);
}

struct File
{
    QString name;
    QByteArray encodedName;
    QByteArray content;
};

std::vector<File> files;

void makeFiles(const QString& folder)
{
    const QByteArray picture = jpegOf(QSize(640, 480), 1);
    const QByteArray thumbnail = jpegOf(QSize(160, 120), 2);
    for (int i = 0; i < fileCount; ++i) {
        const QString name = folder + QStringLiteral("/DSC%1.JPG").arg(i, 5, 10, QLatin1Char('0'));
        files.push_back({name, QFile::encodeName(name), cameraFile(i, picture, thumbnail)});
    }
}

void restoreFiles()
{
    for (const File& file : files) {
        QFile device(file.name);
        if (!device.open(QIODevice::WriteOnly) || device.write(file.content) != file.content.size())
            std::abort();
    }
}

// The contenders. Each processes one file.

int rotationOf(int orientation)
{
    const int angles[] = {0, 0, 0, 180, 0, 0, 90, 0, -90};
    return orientation > 0 && orientation < 9 ? angles[orientation] : 0;
}

const char artist[] = "Somebody with a camera";

/// The argument of setOrientation(): a different orientation than that of the file.
int nextOrientation(const File& file)
{
    return 1 + (int(&file - files.data()) + 1) % 8;
}

/// The result for all tags: their number, and the number of their elements.
struct Tags
{
    quint64 tags = 0;
    quint64 elements = 0;
    bool operator==(const Tags& other) const
    {
        return tags == other.tags && elements == other.elements;
    }
};

struct OrvaUtils
{
    static int rotation(const File& file) { return ExifUtils::imageExifRotation(file.name); }

    static Tags allTags(const File& file)
    {
        Tags sum;
        const QExifImageHeader header(file.name);
        const auto add = [&sum, &header](const auto& tags) {
            for (const auto tag : tags) {
                ++sum.tags;
                sum.elements += header.value(tag).count();
            }
        };
        add(header.imageTags());
        add(header.extendedTags());
        add(header.gpsTags());
        return sum;
    }

    static bool clearRotation(const File& file) { return ExifUtils::clearRotation(file.name); }

    static int orientation(const File& file) { return ExifUtils::imageExifOrientation(file.name); }

    static bool setOrientation(const File& file)
    {
        return ExifUtils::setOrientation(file.name, nextOrientation(file));
    }

    static bool setArtist(const File& file)
    {
        ExifEditor editor;
        if (!editor.load(file.name))
            return false;
        editor.setValue(QExifImageHeader::Artist, QExifValue(QString::fromLatin1(artist)));
        return editor.save(file.name);
    }
};

/// How a program that uses libexif writes the new block into the file.
enum class Splice {
    IntoFile, ///< a kill leaves a part of the photograph
    Beside ///< into a new file, which replaces the old one when it is complete
};

template <Splice way>
struct LibExifWith
{
    static int rotation(const File& file) { return rotationOf(orientation(file)); }

    static int orientation(const File& file)
    {
        ExifData* const data = exif_data_new_from_file(file.encodedName.constData());
        const ExifEntry* const entry =
            exif_content_get_entry(data->ifd[EXIF_IFD_0], EXIF_TAG_ORIENTATION);
        const int orientation =
            entry ? exif_get_short(entry->data, exif_data_get_byte_order(data)) : 0;
        exif_data_unref(data);
        return orientation;
    }

    static Tags allTags(const File& file)
    {
        Tags sum;
        ExifData* const data = exif_data_new_from_file(file.encodedName.constData());
        for (const ExifIfd ifd : {EXIF_IFD_0, EXIF_IFD_EXIF, EXIF_IFD_GPS}) {
            const ExifContent* const content = data->ifd[ifd];
            for (unsigned i = 0; i < content->count; ++i) {
                ++sum.tags;
                sum.elements += content->entries[i]->components;
            }
        }
        exif_data_unref(data);
        return sum;
    }

    static bool clearRotation(const File& file) { return saveOrientation(file, 0); }

    static bool setOrientation(const File& file)
    {
        return saveOrientation(file, nextOrientation(file));
    }

    static bool setArtist(const File& file)
    {
        ExifData* const data = exif_data_new_from_file(file.encodedName.constData());
        ExifContent* const content = data->ifd[EXIF_IFD_0];
        if (ExifEntry* const old = exif_content_get_entry(content, EXIF_TAG_ARTIST))
            exif_content_remove_entry(content, old);
        ExifEntry* const entry = exif_entry_new();
        exif_content_add_entry(content, entry);
        entry->tag = EXIF_TAG_ARTIST;
        entry->format = EXIF_FORMAT_ASCII;
        entry->components = sizeof artist;
        entry->size = sizeof artist;
        entry->data = static_cast<unsigned char*>(std::malloc(sizeof artist));
        std::memcpy(entry->data, artist, sizeof artist);
        exif_entry_unref(entry);
        return save(file, data);
    }

private:
    static bool saveOrientation(const File& file, int orientation)
    {
        ExifData* const data = exif_data_new_from_file(file.encodedName.constData());
        ExifEntry* const entry =
            exif_content_get_entry(data->ifd[EXIF_IFD_0], EXIF_TAG_ORIENTATION);
        exif_set_short(entry->data, exif_data_get_byte_order(data), ExifShort(orientation));
        return save(file, data);
    }

    /// The library makes the new block; writing it to the file is up to its user.
    static bool save(const File& file, ExifData* data)
    {
        unsigned char* payload = nullptr;
        unsigned payloadSize = 0;
        exif_data_save_data(data, &payload, &payloadSize);
        exif_data_unref(data);
        const bool spliced = splice(file.encodedName.constData(), payload, payloadSize);
        std::free(payload);
        return spliced;
    }

    static bool splice(const char* name, const unsigned char* payload, unsigned payloadSize)
    {
        std::FILE* const input = std::fopen(name, "rb");
        if (!input)
            return false;
        std::fseek(input, 0, SEEK_END);
        std::vector<unsigned char> old(static_cast<std::size_t>(std::ftell(input)));
        std::rewind(input);
        const bool whole = std::fread(old.data(), 1, old.size(), input) == old.size();
        std::fclose(input);
        if (!whole || old[2] != 0xFF || old[3] != 0xE1)
            return false;
        const std::size_t rest = 4u + (unsigned(old[4]) << 8 | old[5]);
        const unsigned length = payloadSize + 2;
        const unsigned char head[] = {0xFF,
                                      0xD8,
                                      0xFF,
                                      0xE1,
                                      static_cast<unsigned char>(length >> 8),
                                      static_cast<unsigned char>(length & 0xFF)};
        const std::string target = way == Splice::Beside ? std::string(name) + ".new" : name;
        std::FILE* const output = std::fopen(target.c_str(), "wb");
        if (!output)
            return false;
        const bool written = std::fwrite(head, 1, sizeof head, output) == sizeof head
            && std::fwrite(payload, 1, payloadSize, output) == payloadSize
            && std::fwrite(old.data() + rest, 1, old.size() - rest, output) == old.size() - rest;
        return std::fclose(output) == 0 && written
            && (way == Splice::IntoFile || std::rename(target.c_str(), name) == 0);
    }
};

using LibExif = LibExifWith<Splice::IntoFile>;
using LibExifBeside = LibExifWith<Splice::Beside>;

struct Exiv2Library
{
    static int rotation(const File& file) { return rotationOf(orientation(file)); }

    static int orientation(const File& file)
    {
        const auto image = Exiv2::ImageFactory::open(file.encodedName.constData());
        image->readMetadata();
        const Exiv2::ExifData& data = image->exifData();
        const auto found = data.findKey(Exiv2::ExifKey("Exif.Image.Orientation"));
        return found == data.end() ? 0 : int(found->toLong());
    }

    static Tags allTags(const File& file)
    {
        Tags sum;
        const auto image = Exiv2::ImageFactory::open(file.encodedName.constData());
        image->readMetadata();
        for (const Exiv2::Exifdatum& datum : image->exifData()) {
            const std::string group = datum.groupName();
            const bool isPointer =
                datum.tag() == 0x8769 || datum.tag() == 0x8825 || datum.tag() == 0xA005;
            if (isPointer || (group != "Image" && group != "Photo" && group != "GPSInfo"))
                continue;
            ++sum.tags;
            sum.elements += quint64(datum.count());
        }
        return sum;
    }

    static bool clearRotation(const File& file)
    {
        return save(file, "Exif.Image.Orientation", uint16_t(0));
    }

    static bool setOrientation(const File& file)
    {
        return save(file, "Exif.Image.Orientation", uint16_t(nextOrientation(file)));
    }

    static bool setArtist(const File& file)
    {
        return save(file, "Exif.Image.Artist", std::string(artist));
    }

private:
    template <typename Value>
    static bool save(const File& file, const char* key, const Value& value)
    {
        const auto image = Exiv2::ImageFactory::open(file.encodedName.constData());
        image->readMetadata();
        image->exifData()[key] = value;
        image->writeMetadata();
        return true;
    }
};

// The measurement

/// One pass of a job that reads all files.
template <typename Job>
void read(benchmark::State& state, const Job& job)
{
    for (auto _ : state) {
        for (const File& file : files)
            benchmark::DoNotOptimize(job(file));
    }
}

/// One pass of a job that changes all files, which are restored before.
template <typename Job>
void change(benchmark::State& state, const Job& job)
{
    for (auto _ : state) {
        restoreFiles(); // not measured
        const std::clock_t start = std::clock();
        for (const File& file : files) {
            if (!job(file))
                state.SkipWithError("refused");
        }
        state.SetIterationTime(double(std::clock() - start) / CLOCKS_PER_SEC);
    }
    restoreFiles();
}

void addBenchmarks()
{
    const auto reading = [](const std::string& name, auto job) {
        benchmark::RegisterBenchmark(name.c_str(), [job](benchmark::State& state) {
            read(state, job);
        })->Unit(benchmark::kMillisecond);
    };
    const auto changing = [](const std::string& name, auto job) {
        benchmark::RegisterBenchmark(name.c_str(),
                                     [job](benchmark::State& state) { change(state, job); })
            ->Unit(benchmark::kMillisecond)
            ->UseManualTime();
    };
    // The same job of all three, one right after the other.
    const auto add = [](const std::string& name, const auto& kind, auto ours, auto libExif,
                        auto exiv2) {
        kind(name + "<OrvaUtils>", ours);
        kind(name + "<LibExif>", libExif);
        kind(name + "<Exiv2Library>", exiv2);
    };
    using Ours = OrvaUtils;
    using Exiv = Exiv2Library;
    add("rotation", reading, Ours::rotation, LibExif::rotation, Exiv::rotation);
    add("allTags", reading, Ours::allTags, LibExif::allTags, Exiv::allTags);
    add("clearRotation", changing, Ours::clearRotation, LibExif::clearRotation,
        Exiv::clearRotation);
    add("orientation", reading, Ours::orientation, LibExif::orientation, Exiv::orientation);
    add("setOrientation", changing, Ours::setOrientation, LibExif::setOrientation,
        Exiv::setOrientation);
    add("setArtist", changing, Ours::setArtist, LibExif::setArtist, Exiv::setArtist);
    changing("setArtist<LibExifBeside>", LibExifBeside::setArtist);
}

/// Whether a file's orientation reads 0 everywhere, and the bytes after the EXIF segment are
/// unchanged.
bool isCleared(const File& file)
{
    QFile device(file.name);
    if (!device.open(QIODevice::ReadOnly))
        return false;
    const QByteArray content = device.readAll();
    const auto rest = [](const QByteArray& jpeg) {
        return jpeg.mid(4 + (uchar(jpeg[4]) << 8 | uchar(jpeg[5])));
    };
    const auto image = Exiv2::ImageFactory::open(file.encodedName.constData());
    image->readMetadata();
    return rest(content) == rest(file.content)
        && image->exifData()["Exif.Image.Orientation"].toLong() == 0
        && ExifUtils::imageExifRotation(file.name) == 0;
}

template <typename Contender>
bool clearsAsTold()
{
    restoreFiles();
    for (const File& file : files) {
        if (!Contender::clearRotation(file) || !isCleared(file))
            return false;
    }
    return true;
}

template <typename Contender>
bool setsAsTold()
{
    restoreFiles();
    for (const File& file : files) {
        if (!Contender::setOrientation(file) || !Contender::setArtist(file)
            || Exiv2Library::orientation(file) != nextOrientation(file)
            || OrvaUtils::orientation(file) != nextOrientation(file))
            return false;
        ExifEditor editor;
        if (!editor.load(file.name)
            || editor.value(QExifImageHeader::Artist).toString() != QLatin1String(artist))
            return false;
    }
    return true;
}

bool contendersAgree()
{
    for (std::size_t i = 0; i < files.size(); ++i) {
        const File& file = files[i];
        const int angle = rotationOf(int(1 + i % 8));
        if (OrvaUtils::rotation(file) != angle || LibExif::rotation(file) != angle
            || Exiv2Library::rotation(file) != angle) {
            std::fprintf(stderr, "the rotations of %s differ\n", file.encodedName.constData());
            return false;
        }
        const Tags ours = OrvaUtils::allTags(file);
        if (!(ours == LibExif::allTags(file)) || !(ours == Exiv2Library::allTags(file))) {
            std::fprintf(stderr, "the tags of %s differ: %llu/%llu %llu/%llu %llu/%llu\n",
                         file.encodedName.constData(), ours.tags, ours.elements,
                         LibExif::allTags(file).tags, LibExif::allTags(file).elements,
                         Exiv2Library::allTags(file).tags, Exiv2Library::allTags(file).elements);
            return false;
        }
    }
    const bool cleared =
        clearsAsTold<OrvaUtils>() && clearsAsTold<LibExif>() && clearsAsTold<Exiv2Library>();
    if (!cleared)
        std::fputs("the cleared files differ\n", stderr);
    const bool set = setsAsTold<OrvaUtils>() && setsAsTold<LibExif>() && setsAsTold<LibExifBeside>()
        && setsAsTold<Exiv2Library>();
    if (!set)
        std::fputs("the changed files differ\n", stderr);
    restoreFiles();
    return cleared && set;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 3 && std::strcmp(argv[1], "--files") == 0) {
        makeFiles(QFile::decodeName(argv[2]));
        restoreFiles();
        return 0;
    }
    const QDir memory(QStringLiteral("/dev/shm"));
    const QString parent = memory.exists() ? memory.path() : QDir::tempPath();
    const QTemporaryDir folder(parent + QStringLiteral("/orvautils-exif-XXXXXX"));
    makeFiles(folder.path());
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
    restoreFiles();
    if (!contendersAgree())
        return 1;
    std::fprintf(stderr, "%d files of %d bytes each\n", fileCount, files.front().content.size());
    addBenchmarks();
    return runBenchmarks(argc, argv);
}
