// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "QExifImageHeader.h"

#include "LogCapture.h"
#include "OrdinaryUser.h"

#include <QBuffer>
#include <QColor>
#include <QCryptographicHash>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <array>
#include <functional>
#include <memory>
#include <random>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utime.h>
#endif
#ifdef Q_OS_LINUX
#include <cerrno>
#include <sys/xattr.h>
#endif

using Header = QExifImageHeader;
using UnsignedPair = QPair<quint32, quint32>;
using SignedPair = QPair<qint32, qint32>;
using Longs = QVector<quint32>;

Q_DECLARE_METATYPE(QExifValue)
Q_DECLARE_METATYPE(QDataStream::ByteOrder)

namespace {

const QDataStream::ByteOrder little = QDataStream::LittleEndian;
const QDataStream::ByteOrder big = QDataStream::BigEndian;

/// Bytes written as hexadecimal digits; blanks are for reading.
QByteArray hex(const char* digits)
{
    return QByteArray::fromHex(digits);
}

/// A block laid out by hand, number by number.
class Laid
{
public:
    explicit Laid(QDataStream::ByteOrder order)
        : mOrder(order)
    { }

    Laid& raw(const QByteArray& bytes)
    {
        mBytes += bytes;
        return *this;
    }
    Laid& u16(unsigned number)
    {
        const char low = static_cast<char>(number & 0xFF);
        const char high = static_cast<char>(number >> 8 & 0xFF);
        mBytes += mOrder == little ? low : high;
        mBytes += mOrder == little ? high : low;
        return *this;
    }
    Laid& u32(quint32 number)
    {
        return mOrder == little ? u16(number & 0xFFFF).u16(number >> 16)
                                : u16(number >> 16).u16(number & 0xFFFF);
    }
    /// "II" or "MM", 42 and the offset of IFD0.
    Laid& tiff(quint32 ifd0 = 8) { return raw(mOrder == little ? "II" : "MM").u16(42).u32(ifd0); }
    /// An entry with a 32-bit value or offset.
    Laid& entry(unsigned tag, unsigned type, quint32 count, quint32 value)
    {
        return u16(tag).u16(type).u32(count).u32(value);
    }
    /// An entry with two 16-bit values.
    Laid& shorts(unsigned tag, quint32 count, unsigned first, unsigned second = 0)
    {
        return u16(tag).u16(3).u32(count).u16(first).u16(second);
    }
    /// An entry with four bytes in it.
    Laid& bytes(unsigned tag, unsigned type, quint32 count, const QByteArray& four)
    {
        return u16(tag).u16(type).u32(count).raw(four);
    }

    operator QByteArray() const { return mBytes; }
    QByteArray all() const { return mBytes; }
    int size() const { return mBytes.size(); }

private:
    const QDataStream::ByteOrder mOrder;
    QByteArray mBytes;
};

/// Opens the protected helpers.
class OpenHeader : public QExifImageHeader
{
public:
    using QExifImageHeader::QExifImageHeader;
    using QExifImageHeader::readIfdHeaders;
    using QExifImageHeader::readIfdValue;
    using QExifImageHeader::sizeOf;
    using QExifImageHeader::writeExifHeader;
    using QExifImageHeader::writeExifValue;
};

/// A device that only goes forward.
class SequentialDevice : public QIODevice
{
public:
    QByteArray content;

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override
    {
        return content.size() - mRead + QIODevice::bytesAvailable();
    }

protected:
    qint64 readData(char* data, qint64 size) override
    {
        const QByteArray part = content.mid(mRead, int(size));
        std::copy(part.begin(), part.end(), data);
        mRead += part.size();
        return part.size();
    }
    qint64 writeData(const char* data, qint64 size) override
    {
        content.append(data, int(size));
        return size;
    }

private:
    int mRead = 0;
};

/// A buffer that notes where it is written to, and that fails after a number of bytes.
class WatchedBuffer : public QBuffer
{
public:
    using QBuffer::QBuffer;

    QVector<QPair<qint64, qint64>> writes; // position, size
    qint64 capacity = -1; // bytes that it still takes; without end when negative
    bool failsOnce = false; // takes everything again after it has failed

protected:
    qint64 writeData(const char* data, qint64 size) override
    {
        writes.append({pos(), size});
        if (capacity < 0)
            return QBuffer::writeData(data, size);
        const qint64 taken = qMin(size, capacity);
        capacity -= taken;
        const bool fails = taken < size;
        if (fails && failsOnce)
            capacity = -1;
        if (taken == 0)
            return -1;
        return QBuffer::writeData(data, taken);
    }
};

/// A buffer that fails once, when it is read or moved for a certain time.
class FaultyBuffer : public QBuffer
{
public:
    FaultyBuffer(const QByteArray& content, int failing)
    {
        setData(content);
        open(QIODevice::ReadWrite);
        mCalls = 0;
        mFailing = failing;
    }

    bool hasFailed() const { return mCalls > mFailing; }

    bool seek(qint64 position) override { return !failsNow() && QBuffer::seek(position); }

protected:
    qint64 readData(char* data, qint64 size) override
    {
        return failsNow() ? -1 : QBuffer::readData(data, size);
    }

private:
    bool failsNow() { return mCalls++ == mFailing; }

    int mCalls = 0;
    int mFailing = -1;
};

bool readBlock(Header* header, const QByteArray& block)
{
    QBuffer buffer;
    buffer.setData(block);
    buffer.open(QIODevice::ReadOnly);
    return header->read(&buffer);
}

QByteArray written(const Header& header)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    const int size = header.write(&buffer);
    if (size != buffer.data().size())
        return QByteArray("not what it returned");
    return buffer.data();
}

QByteArray segment(unsigned marker, const QByteArray& payload)
{
    return Laid(big).u16(marker).u16(static_cast<unsigned>(payload.size() + 2)).raw(payload);
}

QByteArray exifPayload(const QByteArray& block)
{
    return QByteArray("Exif\0\0", 6) + block;
}

QByteArray exifSegment(const QByteArray& block)
{
    return segment(0xFFE1, exifPayload(block));
}

QByteArray soi()
{
    return hex("FFD8");
}

QByteArray jfif()
{
    return segment(0xFFE0, QByteArray("JFIF\0\1\1\0\0\1\0\1\0\0", 14));
}

QByteArray xmp()
{
    return segment(0xFFE1, QByteArray("http://ns.adobe.com/xap/1.0/\0<x/>", 33));
}

QByteArray dqt()
{
    return segment(0xFFDB, QByteArray(65, '\1'));
}

/// A start of scan, some coded data and the end of the image.
QByteArray scan()
{
    return segment(0xFFDA, QByteArray("\1\1\0\0\77\0", 6)) + hex("123456FF00789A FFD9");
}

/// A header with the single tag Orientation = Short 6.
void fillWithOrientation(Header* header)
{
    header->setValue(Header::Orientation, QExifValue(quint16(6)));
}

/// What such a header looks like in a file, 40 bytes.
QByteArray orientationBlock()
{
    return hex("4949 2A00 08000000" // little endian, 42, IFD0 at 8
               "0200" // two entries
               "1201 0300 01000000 06000000" // Orientation, Short, 1, the number 6
               "6987 0400 01000000 26000000" // ExifIfdPointer, Long, 1, 38
               "00000000" // no IFD1
               "0000"); // at 38: an Exif sub-IFD without entries
}

/// A block with everything in it, in either byte order; 278 bytes.
QByteArray fullBlock(QDataStream::ByteOrder order)
{
    Laid laid(order);
    laid.tiff(8);
    // 8: IFD0, 5 entries
    laid.u16(5)
        .entry(0x010F, 2, 5, 74) // Make
        .shorts(0x0112, 1, 6) // Orientation
        .entry(0x011A, 5, 1, 80) // XResolution
        .entry(0x8769, 4, 1, 88) // the Exif sub-IFD
        .entry(0x8825, 4, 1, 138) // the GPS sub-IFD
        .u32(192); // 70: IFD1
    laid.raw(QByteArray("Orva\0\0", 6)); // 74: Make and a byte to fill up
    laid.u32(72).u32(1); // 80: XResolution
    // 88: Exif sub-IFD, 3 entries, no next one
    laid.u16(3)
        .bytes(0x9000, 7, 4, "0230") // ExifVersion
        .entry(0x9204, 10, 1, 130) // ExposureBiasValue
        .entry(0xA005, 4, 1, 8) // the interoperability IFD
        .u32(0);
    laid.u32(quint32(-1)).u32(3); // 130: ExposureBiasValue
    // 138: GPS sub-IFD, 2 entries, no next one
    laid.u16(2)
        .bytes(0x0000, 1, 4, hex("02030000")) // GPSVersionID
        .entry(0x0002, 5, 3, 168) // GPSLatitude
        .u32(0);
    laid.u32(47).u32(1).u32(30).u32(1).u32(5).u32(2); // 168: GPSLatitude
    // 192: IFD1, 5 entries, no next one
    laid.u16(5)
        .shorts(0x0112, 1, 8) // Orientation
        .entry(0x011A, 5, 1, 258) // XResolution
        .shorts(0x0128, 1, 3) // ResolutionUnit
        .entry(0x0201, 4, 1, 266) // JPEGInterchangeFormat
        .entry(0x0202, 4, 1, 12) // JPEGInterchangeFormatLength
        .u32(0);
    laid.u32(300).u32(1); // 258: XResolution
    laid.raw("not a JPEG!!"); // 266: the thumbnail
    return laid;
}

/// The thumbnail that a header carries, as it stands at the end of what it writes.
QByteArray thumbnailBytes(const Header& header, int size)
{
    return written(header).right(size);
}

QString photosFolder()
{
    return QStringLiteral(ORVAUTILS_PHOTOS_DIR);
}

QByteArray contentOf(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool makeFile(const QString& fileName, const QByteArray& content)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

/// A JPEG file cut into its segments, up to and with the first start of scan, and what follows.
struct JpegParts
{
    struct Part
    {
        unsigned marker;
        QByteArray bytes; // marker and length included
        bool isJfif() const { return marker == 0xFFE0 && bytes.mid(4, 4) == "JFIF"; }
        bool isExif() const { return marker == 0xFFE1 && bytes.mid(4, 4) == "Exif"; }
    };
    QVector<Part> parts;
    QByteArray rest;

    explicit JpegParts(const QByteArray& file)
    {
        int at = 2;
        unsigned marker = 0;
        while (at + 4 <= file.size() && marker != 0xFFDA) {
            const auto byteAt = [&file](int i) { return unsigned(uchar(file.at(i))); };
            marker = byteAt(at) << 8 | byteAt(at + 1);
            const int length = int(byteAt(at + 2) << 8 | byteAt(at + 3));
            parts.append({marker, file.mid(at, 2 + length)});
            at += 2 + length;
        }
        rest = file.mid(at);
    }

    int exifCount() const
    {
        int count = 0;
        for (const Part& part : parts)
            count += part.isExif() ? 1 : 0;
        return count;
    }

    /// The place of an EXIF segment that is replaced, -1 where there is none.
    int replaced() const
    {
        const int candidate = !parts.isEmpty() && parts.first().isJfif() ? 1 : 0;
        return candidate < parts.size() && parts[candidate].isExif() ? candidate : -1;
    }

    /// The first APP1 segment, whatever it is.
    QByteArray firstApp1() const
    {
        for (const Part& part : parts) {
            if (part.marker == 0xFFE1)
                return part.bytes;
        }
        return QByteArray();
    }
};

/// The standard output of a program that must succeed.
QByteArray outputOf(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(60000))
        return QByteArray();
    return process.readAllStandardOutput();
}

#ifdef Q_OS_UNIX
/// While it lives, no file grows beyond a size: writes fail as on a full disk.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(qint64 size)
    {
        getrlimit(RLIMIT_FSIZE, &mBefore);
        mHandler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit = mBefore;
        limit.rlim_cur = static_cast<rlim_t>(size);
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &mBefore);
        std::signal(SIGXFSZ, mHandler);
    }

private:
    Q_DISABLE_COPY(FileSizeLimit)

    rlimit mBefore;
    void (*mHandler)(int);
};
#endif

} // namespace

class tst_QExifImageHeader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void newHeader();
    void tagNumbers_data();
    void tagNumbers();
    void tags();
    void anyNumberIsATag();

    void ifdHeader_data();
    void ifdHeader();
    void ifdHeaderCutShort();
    void ifdHeaders_data();
    void ifdHeaders();
    void ifdValue_data();
    void ifdValue();
    void ifdValueCutShort_data();
    void ifdValueCutShort();
    void ifdValueOfUnknownType_data();
    void ifdValueOfUnknownType();

    void readFull_data();
    void readFull();
    void readFails_data();
    void readFails();
    void readFailsOnDevice();
    void readFailsMidway_data();
    void readFailsMidway();
    void readReplacesEverything();
    void readCutShort_data();
    void readCutShort();
    void entryCountBeyondTheEnd();
    void pointerKinds_data();
    void pointerKinds();
    void pointersOutside_data();
    void pointersOutside();
    void thumbnailPointers_data();
    void thumbnailPointers();
    void linksInCircles();
    void repeatedTag();
    void unknownTypeIsKept();
    void overlappingValuesStayBounded();
    void readLeavesDeviceAlone();

    void sizeOf_data();
    void sizeOf();
    void writeEntry_data();
    void writeEntry();
    void writeEmpty();
    void writeImageTags();
    void writeSubIfdOffsets();
    void writeGps();
    void writeGpsTwice();
    void writeGpsOverOldPointer();
    void writeThumbnail();
    void writeThumbnailDefaults();
    void writeAtPosition();
    void writeFails();
    void sizePredicted();
    void sizeCached();
    void rereadAfterWrite_data();
    void rereadAfterWrite();

    void extractExif_data();
    void extractExif();
    void extractExifSequential_data();
    void extractExifSequential();
    void extractExifFromPosition();
    void extractExifFromBadDevice();
    void loadFromJpeg();
    void loadFails_data();
    void loadFails();

    void save_data();
    void save();
    void savePadsInPlace_data();
    void savePadsInPlace();
    void saveRefuses_data();
    void saveRefuses();
    void saveRefusesDevice();
    void saveRefusesLargeBlock();
    void saveTakesLargestBlock();
    void saveFileErrors();
    void saveFailedWrite_data();
    void saveFailedWrite();
    void saveFailedRead_data();
    void saveFailedRead();
    void saveOnFullDisk();
    void saveIgnoresPosition();
#ifdef Q_OS_UNIX
    void saveReplacesFile_data();
    void saveReplacesFile();
    void saveLeavesSameFile();
    void saveFollowsLink();
    void saveKeepsNames();
    void saveKeepsPermissions_data();
    void saveKeepsPermissions();
    void saveKeepsOwner();
    void saveInForeignFolder();
    void saveOfForeignFile();
    void saveOfLongName();
#endif
#ifdef Q_OS_LINUX
    void saveKeepsAttributes();
    void saveKeepsAccessList();
#endif

    void thumbnailOrientation_data();
    void thumbnailOrientation();
    void thumbnailOrientationOfOtherKind_data();
    void thumbnailOrientationOfOtherKind();
    void setThumbnail();
    void thumbnailThatCannotBe();

    void mutations_data();
    void mutations();

    void readers();
    void photoTags_data();
    void photoTags();
    void photoSaved_data();
    void photoSaved();
    void photosSavedForReaders();

private:
    QJsonObject mExpected;
};

void tst_QExifImageHeader::initTestCase()
{
    const QByteArray json = contentOf(photosFolder() + QStringLiteral("/expected.json"));
    mExpected = QJsonDocument::fromJson(json).object()[QStringLiteral("files")].toObject();
}

void tst_QExifImageHeader::newHeader()
{
    const Header header;
    QCOMPARE(header.byteOrder(), little);
    QVERIFY(header.imageTags().isEmpty());
    QVERIFY(header.extendedTags().isEmpty());
    QVERIFY(header.gpsTags().isEmpty());
    QVERIFY(header.thumbnail().isNull());
    QVERIFY(header.value(Header::Orientation).isNull());
    QVERIFY(header.value(Header::ExposureTime).isNull());
    QVERIFY(header.value(Header::GPSLatitude).isNull());
    QCOMPARE(header.size(), 28);
    static_assert(std::has_virtual_destructor<Header>::value, "made to be derived from");
    static_assert(!std::is_copy_constructible<Header>::value, "the state belongs to one header");
    QCOMPARE(int(big), 0);
    QCOMPARE(int(little), 1);
}

void tst_QExifImageHeader::tagNumbers_data()
{
    QTest::addColumn<int>("tag");
    QTest::addColumn<int>("number");
    // Decimal, as the published tables give them.
    QTest::newRow("ExifIfdPointer") << int(Header::ExifIfdPointer) << 34665;
    QTest::newRow("GpsInfoIfdPointer") << int(Header::GpsInfoIfdPointer) << 34853;
    QTest::newRow("InteroperabilityIfdPointer") << int(Header::InteroperabilityIfdPointer) << 40965;
    QTest::newRow("Orientation") << int(Header::Orientation) << 274;
    QTest::newRow("Compression") << int(Header::Compression) << 259;
    QTest::newRow("XResolution") << int(Header::XResolution) << 282;
    QTest::newRow("YResolution") << int(Header::YResolution) << 283;
    QTest::newRow("ResolutionUnit") << int(Header::ResolutionUnit) << 296;
    QTest::newRow("JPEGInterchangeFormat") << int(Header::JPEGInterchangeFormat) << 513;
    QTest::newRow("JPEGInterchangeFormatLength") << int(Header::JPEGInterchangeFormatLength) << 514;
    QTest::newRow("ImageWidth") << int(Header::ImageWidth) << 256;
    QTest::newRow("ImageDescription") << int(Header::ImageDescription) << 270;
    QTest::newRow("Make") << int(Header::Make) << 271;
    QTest::newRow("Model") << int(Header::Model) << 272;
    QTest::newRow("Software") << int(Header::Software) << 305;
    QTest::newRow("DateTime") << int(Header::DateTime) << 306;
    QTest::newRow("Artist") << int(Header::Artist) << 315;
    QTest::newRow("YCbCrPositioning") << int(Header::YCbCrPositioning) << 531;
    QTest::newRow("Copyright") << int(Header::Copyright) << 33432;
    QTest::newRow("ExposureTime") << int(Header::ExposureTime) << 33434;
    QTest::newRow("FNumber") << int(Header::FNumber) << 33437;
    QTest::newRow("PhotographicSensitivity") << int(Header::PhotographicSensitivity) << 34855;
    QTest::newRow("ExifVersion") << int(Header::ExifVersion) << 36864;
    QTest::newRow("DateTimeOriginal") << int(Header::DateTimeOriginal) << 36867;
    QTest::newRow("DateTimeDigitized") << int(Header::DateTimeDigitized) << 36868;
    QTest::newRow("ExposureBiasValue") << int(Header::ExposureBiasValue) << 37380;
    QTest::newRow("Flash") << int(Header::Flash) << 37385;
    QTest::newRow("FocalLength") << int(Header::FocalLength) << 37386;
    QTest::newRow("MakerNote") << int(Header::MakerNote) << 37500;
    QTest::newRow("UserComment") << int(Header::UserComment) << 37510;
    QTest::newRow("ColorSpace") << int(Header::ColorSpace) << 40961;
    QTest::newRow("PixelXDimension") << int(Header::PixelXDimension) << 40962;
    QTest::newRow("PixelYDimension") << int(Header::PixelYDimension) << 40963;
    QTest::newRow("FileSource") << int(Header::FileSource) << 41728;
    QTest::newRow("SubjectDistanceRange") << int(Header::SubjectDistanceRange) << 41996;
    QTest::newRow("ImageUniqueID") << int(Header::ImageUniqueID) << 42016;
    QTest::newRow("LensModel") << int(Header::LensModel) << 42036;
    QTest::newRow("Gamma") << int(Header::Gamma) << 42240;
    QTest::newRow("GPSVersionID") << int(Header::GPSVersionID) << 0;
    QTest::newRow("GPSLatitude") << int(Header::GPSLatitude) << 2;
    QTest::newRow("GPSLongitude") << int(Header::GPSLongitude) << 4;
    QTest::newRow("GPSAltitude") << int(Header::GPSAltitude) << 6;
    QTest::newRow("GPSMapDatum") << int(Header::GPSMapDatum) << 18;
    QTest::newRow("GPSDateStamp") << int(Header::GPSDateStamp) << 29;
    QTest::newRow("GPSHPositioningError") << int(Header::GPSHPositioningError) << 31;
}

void tst_QExifImageHeader::tagNumbers()
{
    QFETCH(int, tag);
    QFETCH(int, number);
    QCOMPARE(tag, number);
}

void tst_QExifImageHeader::tags()
{
    Header header;
    const QExifValue make(QStringLiteral("Orva"));
    header.setValue(Header::YResolution, QExifValue(UnsignedPair(72, 1)));
    header.setValue(Header::Make, make);
    header.setValue(Header::Orientation, QExifValue(quint16(1)));
    header.setValue(Header::FNumber, QExifValue(UnsignedPair(28, 10)));
    header.setValue(Header::ExposureTime, QExifValue(UnsignedPair(1, 60)));
    header.setValue(Header::GPSLatitude, QExifValue(UnsignedPair(1, 1)));
    header.setValue(Header::GPSVersionID, QExifValue(QVector<quint8>{2, 3, 0, 0}));

    QCOMPARE(header.imageTags(),
             QList<Header::ImageTag>({Header::Make, Header::Orientation, Header::YResolution}));
    QCOMPARE(header.extendedTags(),
             QList<Header::ExifExtendedTag>({Header::ExposureTime, Header::FNumber}));
    QCOMPARE(header.gpsTags(), QList<Header::GpsTag>({Header::GPSVersionID, Header::GPSLatitude}));
    QVERIFY(header.contains(Header::Make));
    QVERIFY(!header.contains(Header::Model));
    QVERIFY(header.contains(Header::FNumber));
    QVERIFY(!header.contains(Header::Flash));
    QVERIFY(header.contains(Header::GPSLatitude));
    QVERIFY(!header.contains(Header::GPSLongitude));
    QVERIFY(header.value(Header::Make) == make);
    QVERIFY(header.value(Header::Model).isNull());
    QVERIFY(header.value(Header::Flash).isNull());
    QVERIFY(header.value(Header::GPSLongitude).isNull());
    QCOMPARE(header.value(Header::FNumber).toRational(), UnsignedPair(28, 10));
    QCOMPARE(header.value(Header::GPSLatitude).toRational(), UnsignedPair(1, 1));

    header.setValue(Header::Orientation, QExifValue(quint16(8)));
    QCOMPARE(header.value(Header::Orientation).toShort(), quint16(8));
    QCOMPARE(header.imageTags().size(), 3);

    header.remove(Header::Make);
    header.remove(Header::Model);
    header.remove(Header::FNumber);
    header.remove(Header::Flash);
    header.remove(Header::GPSLatitude);
    header.remove(Header::GPSLongitude);
    QCOMPARE(header.imageTags(),
             QList<Header::ImageTag>({Header::Orientation, Header::YResolution}));
    QCOMPARE(header.extendedTags(), QList<Header::ExifExtendedTag>({Header::ExposureTime}));
    QCOMPARE(header.gpsTags(), QList<Header::GpsTag>({Header::GPSVersionID}));

    header.setValue(Header::Model, QExifValue());
    QVERIFY(header.contains(Header::Model));
    QVERIFY(header.value(Header::Model).isNull());

    header.clear();
    QVERIFY(header.imageTags().isEmpty());
    QVERIFY(header.extendedTags().isEmpty());
    QVERIFY(header.gpsTags().isEmpty());
}

// A number of one space does not show up in another one.
void tst_QExifImageHeader::anyNumberIsATag()
{
    Header header;
    const auto image = static_cast<Header::ImageTag>(0xFFFF);
    const auto extended = static_cast<Header::ExifExtendedTag>(0x0112);
    const auto gps = static_cast<Header::GpsTag>(0xFFFE);
    header.setValue(image, QExifValue(quint8(1)));
    header.setValue(extended, QExifValue(quint8(2)));
    header.setValue(gps, QExifValue(quint8(3)));
    QCOMPARE(header.imageTags(), QList<Header::ImageTag>({image}));
    QCOMPARE(header.extendedTags(), QList<Header::ExifExtendedTag>({extended}));
    QCOMPARE(header.gpsTags(), QList<Header::GpsTag>({gps}));
    QVERIFY(!header.contains(Header::Orientation));
}

void tst_QExifImageHeader::ifdHeader_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QDataStream::ByteOrder>("order");
    QTest::addColumn<int>("type");
    QTest::addColumn<quint32>("count");
    QTest::addColumn<QByteArray>("inlineBytes");
    QTest::addColumn<int>("firstShort");
    QTest::addColumn<int>("secondShort");
    QTest::addColumn<quint32>("offset");

    const QByteArray none(4, '\0');
    const QByteArray four = hex("01020304");
    // The field 01 02 03 04, read as what type and count make of it.
    struct Case
    {
        const char* name;
        int type;
        quint32 count;
        char reading; // b: bytes, s: shorts, o: offset
    };
    const Case cases[] = {
        {"no byte", 1, 0, 'b'},
        {"4 bytes", 1, 4, 'b'},
        {"5 bytes", 1, 5, 'o'},
        {"no character", 2, 0, 'b'},
        {"4 characters", 2, 4, 'b'},
        {"5 characters", 2, 5, 'o'},
        {"no short", 3, 0, 's'},
        {"1 short", 3, 1, 's'},
        {"2 shorts", 3, 2, 's'},
        {"3 shorts", 3, 3, 'o'},
        {"1 long", 4, 1, 'o'},
        {"2 longs", 4, 2, 'o'},
        {"rational", 5, 1, 'o'},
        {"1 raw byte", 7, 1, 'o'},
        {"4 raw bytes", 7, 4, 'o'},
        {"5 raw bytes", 7, 5, 'o'},
        {"1 signed long", 9, 1, 'o'},
        {"signed rational", 10, 1, 'o'},
        {"unknown type 6", 6, 1, 'o'},
        {"unknown type 65535", 65535, 1, 'o'},
        {"largest count", 1, 4294967295u, 'o'},
    };
    for (const QDataStream::ByteOrder order : {little, big}) {
        for (const Case& c : cases) {
            const bool isLittle = order == little;
            const QByteArray bytes =
                Laid(order).u16(0x9286).u16(static_cast<unsigned>(c.type)).u32(c.count).raw(four);
            QTest::newRow(
                qPrintable(QLatin1String(c.name) + QLatin1String(isLittle ? ", II" : ", MM")))
                << bytes << order << c.type << c.count << (c.reading == 'b' ? four : none)
                << (c.reading == 's' ? (isLittle ? 0x0201 : 0x0102) : 0)
                << (c.reading == 's' ? (isLittle ? 0x0403 : 0x0304) : 0)
                << (c.reading == 'o' ? (isLittle ? 0x04030201u : 0x01020304u) : 0u);
        }
    }
}

void tst_QExifImageHeader::ifdHeader()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QDataStream::ByteOrder, order);
    QFETCH(int, type);
    QFETCH(quint32, count);
    QFETCH(QByteArray, inlineBytes);
    QFETCH(int, firstShort);
    QFETCH(int, secondShort);
    QFETCH(quint32, offset);
    QDataStream stream(bytes);
    stream.setByteOrder(order);
    ExifIfdHeader header;
    stream >> header;
    QCOMPARE(stream.status(), QDataStream::Ok);
    QVERIFY(stream.atEnd());
    QCOMPARE(int(header.tag), 0x9286);
    QCOMPARE(int(header.type), type);
    QCOMPARE(header.count, count);
    for (int i = 0; i < 4; ++i)
        QCOMPARE(int(header.inlineBytes[size_t(i)]), int(inlineBytes[i]));
    QCOMPARE(int(header.inlineShorts[0]), firstShort);
    QCOMPARE(int(header.inlineShorts[1]), secondShort);
    QCOMPARE(header.offset, offset);
}

void tst_QExifImageHeader::ifdHeaderCutShort()
{
    const QByteArray bytes = hex("8692 0700 05000000 010203");
    QDataStream stream(bytes);
    stream.setByteOrder(little);
    ExifIfdHeader header;
    header.tag = 1;
    stream >> header;
    QCOMPARE(stream.status(), QDataStream::ReadPastEnd);
    QCOMPARE(int(header.tag), 0);
    QCOMPARE(header.count, 0u);
}

void tst_QExifImageHeader::ifdHeaders_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("entries");
    const QByteArray entry = hex("0F01 0200 05000000 4A000000");
    QTest::newRow("none") << hex("0000") << 0;
    QTest::newRow("one") << hex("0100") + entry << 1;
    QTest::newRow("two, and more behind") << hex("0200") + entry + entry + entry << 2;
    QTest::newRow("65535 claimed, two there") << hex("FFFF") + entry + entry << 2;
    QTest::newRow("second one cut short") << hex("0200") + entry + entry.left(11) << 1;
    QTest::newRow("nothing behind the count") << hex("0500") << 0;
    QTest::newRow("half a count") << hex("05") << 0;
    QTest::newRow("no count") << QByteArray() << 0;
}

void tst_QExifImageHeader::ifdHeaders()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, entries);
    QDataStream stream(bytes);
    stream.setByteOrder(little);
    const QList<ExifIfdHeader> headers = OpenHeader().readIfdHeaders(stream);
    QCOMPARE(headers.size(), entries);
    for (const ExifIfdHeader& header : headers) {
        QCOMPARE(int(header.tag), 0x010F);
        QCOMPARE(int(header.type), 2);
        QCOMPARE(header.count, 5u);
        QCOMPARE(header.offset, 74u);
    }
}

/// What a value holds, as a text that names everything that can be asked of it.
static QString described(const QExifValue& value)
{
    QString text = QStringLiteral("%1 x %2:").arg(value.type()).arg(value.count());
    const auto add = [&text](const QString& item) { text += QLatin1Char(' ') + item; };
    switch (value.type()) {
    case QExifValue::Byte:
        for (const quint8 item : value.toByteVector())
            add(QString::number(item));
        break;
    case QExifValue::Ascii:
        add(QString::fromLatin1(value.toString().toLatin1().toHex()));
        break;
    case QExifValue::Short:
        for (const quint16 item : value.toShortVector())
            add(QString::number(item));
        break;
    case QExifValue::Long:
        for (const quint32 item : value.toLongVector())
            add(QString::number(item));
        break;
    case QExifValue::SignedLong:
        for (const qint32 item : value.toSignedLongVector())
            add(QString::number(item));
        break;
    case QExifValue::Rational:
        for (const UnsignedPair& item : value.toRationalVector())
            add(QStringLiteral("%1/%2").arg(item.first).arg(item.second));
        break;
    case QExifValue::SignedRational:
        for (const SignedPair& item : value.toSignedRationalVector())
            add(QStringLiteral("%1/%2").arg(item.first).arg(item.second));
        break;
    case QExifValue::Undefined:
        add(QString::fromLatin1(value.toByteArray().toHex()));
        break;
    }
    return text;
}

void tst_QExifImageHeader::ifdValue_data()
{
    QTest::addColumn<QDataStream::ByteOrder>("order");
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<QByteArray>("data"); // at offset 16 of a block that begins at 3
    QTest::addColumn<QString>("expected");

    for (const QDataStream::ByteOrder order : {little, big}) {
        const auto row = [order](const char* name, const Laid& entry, const Laid& data,
                                 const char* expected) {
            QTest::newRow(
                qPrintable(QLatin1String(name) + QLatin1String(order == little ? ", II" : ", MM")))
                << order << entry.all() << data.all() << QString::fromLatin1(expected);
        };
        const Laid none(order);
        const auto inlined = [order](unsigned type, quint32 count, const char* bytes) {
            return Laid(order).bytes(1, type, count, hex(bytes));
        };
        const auto number = [order](unsigned type, quint32 count, quint32 value) {
            return Laid(order).entry(1, type, count, value);
        };
        row("no byte", inlined(1, 0, "01020304"), none, "1 x 0:");
        row("one byte", inlined(1, 1, "FF020304"), none, "1 x 1: 255");
        row("four bytes", inlined(1, 4, "01020304"), none, "1 x 4: 1 2 3 4");
        row("five bytes", number(1, 5, 16), Laid(order).raw("ABCDEF"), "1 x 5: 65 66 67 68 69");
        row("text, count 0", inlined(2, 0, "41420043"), none, "2 x 3: 4142");
        row("text, count 0, no NUL", inlined(2, 0, "41424344"), none, "2 x 5: 41424344");
        row("text, count 0, at once a NUL", inlined(2, 0, "00424344"), none, "2 x 1: ");
        row("text, count 1", inlined(2, 1, "41420043"), none, "2 x 1: ");
        row("text, count 2", inlined(2, 2, "4E000000"), none, "2 x 2: 4e");
        row("text, count 4", inlined(2, 4, "41424300"), none, "2 x 4: 414243");
        row("text, count 4, not ended by a NUL", inlined(2, 4, "41424344"), none, "2 x 4: 414243");
        row("text, count 4, NUL inside", inlined(2, 4, "41004300"), none, "2 x 4: 410043");
        row("text, count 5", number(2, 5, 16), Laid(order).raw("Orva!"), "2 x 5: 4f727661");
        row("text, NULs kept", number(2, 6, 16), Laid(order).raw(QByteArray("a\0b\0\0\0", 6)),
            "2 x 6: 6100620000");
        row("text in Latin-1", number(2, 5, 16), Laid(order).raw("\xe9\xff-\x80"),
            "2 x 5: e9ff2d80");
        row("no short", Laid(order).shorts(1, 0, 7, 8), none, "3 x 0:");
        row("one short", Laid(order).shorts(1, 1, 0x1234, 9), none, "3 x 1: 4660");
        row("two shorts", Laid(order).shorts(1, 2, 0x1234, 9), none, "3 x 2: 4660 9");
        row("three shorts", number(3, 3, 16), Laid(order).u16(1).u16(2).u16(0xFFFF).u16(4),
            "3 x 3: 1 2 65535");
        row("no long", number(4, 0, 16), Laid(order).u32(1), "4 x 0:");
        row("one long", number(4, 1, 0xFFFFFFFE), none, "4 x 1: 4294967294");
        row("two longs", number(4, 2, 16), Laid(order).u32(1).u32(0xFFFFFFFF),
            "4 x 2: 1 4294967295");
        row("no signed long", number(9, 0, 16), Laid(order).u32(1), "9 x 0:");
        row("one signed long", number(9, 1, 0xFFFFFFFE), none, "9 x 1: -2");
        row("two signed longs", number(9, 2, 16), Laid(order).u32(1).u32(0x80000000),
            "9 x 2: 1 -2147483648");
        row("no rational", number(5, 0, 16), Laid(order).u32(1).u32(2), "5 x 0:");
        row("one rational", number(5, 1, 16), Laid(order).u32(1).u32(0xFFFFFFFF),
            "5 x 1: 1/4294967295");
        row("two rationals", number(5, 2, 16), Laid(order).u32(1).u32(2).u32(3).u32(4),
            "5 x 2: 1/2 3/4");
        row("no signed rational", number(10, 0, 16), Laid(order).u32(1).u32(2), "10 x 0:");
        row("one signed rational", number(10, 1, 16), Laid(order).u32(quint32(-1)).u32(3),
            "10 x 1: -1/3");
        row("two signed rationals", number(10, 2, 16),
            Laid(order).u32(1).u32(quint32(-2)).u32(3).u32(4), "10 x 2: 1/-2 3/4");
        row("no raw byte", inlined(7, 0, "01020304"), none, "7 x 0: ");
        row("five raw bytes", number(7, 5, 16), Laid(order).raw(hex("0001020304")),
            "7 x 5: 0001020304");
        row("beyond the end", number(7, 5, 4000), none, "7 x 0: ");
        row("offset 0xFFFFFFFF", number(4, 5, 0xFFFFFFFF), none, "4 x 0:");
    }
    // Small raw values: in file order in one byte order, reversed in the other.
    const auto raw = [](const char* name, QDataStream::ByteOrder order, quint32 count,
                        const char* expected) {
        QTest::newRow(name) << order << Laid(order).bytes(1, 7, count, hex("01020304")).all()
                            << QByteArray() << QString::fromLatin1(expected);
    };
    raw("one raw byte, II", little, 1, "7 x 1: 01");
    raw("three raw bytes, II", little, 3, "7 x 3: 010203");
    raw("four raw bytes, II", little, 4, "7 x 4: 01020304");
    raw("one raw byte, MM", big, 1, "7 x 1: 04");
    raw("three raw bytes, MM", big, 3, "7 x 3: 040302");
    raw("four raw bytes, MM", big, 4, "7 x 4: 04030201");
}

void tst_QExifImageHeader::ifdValue()
{
    QFETCH(QDataStream::ByteOrder, order);
    QFETCH(QByteArray, entry);
    QFETCH(QByteArray, data);
    QFETCH(QString, expected);
    LogCapture log;
    const QByteArray bytes = "abc" + entry + QByteArray(4, 'x') + data;
    QDataStream stream(bytes);
    stream.setByteOrder(order);
    stream.skipRawData(3);
    ExifIfdHeader header;
    stream >> header;
    const QExifValue value = OpenHeader().readIfdValue(stream, 3, header);
    QCOMPARE(described(value), expected);
    QVERIFY(!value.isNull());
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeader::ifdValueCutShort_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<quint32>("count");
    QTest::addColumn<QString>("expected");

    // What is there from the offset on: 41 42 43 44 45 46 47 48 49 4A.
    const quint32 counts[] = {11,         1000,       65536,      0x10000000, 0x20000001,
                              0x40000000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
    for (const quint32 count : counts) {
        const auto row = [count](int type, const char* expected) {
            QTest::newRow(qPrintable(QStringLiteral("type %1, count %2").arg(type).arg(count)))
                << type << count << QString::fromLatin1(expected);
        };
        row(1, "1 x 10: 65 66 67 68 69 70 71 72 73 74");
        row(2, "2 x 11: 4142434445464748494a"); // its last byte is not what ends it
        row(3, "3 x 5: 16961 17475 17989 18503 19017");
        row(4, "4 x 2: 1145258561 1212630597");
        row(5, "5 x 1: 1145258561/1212630597");
        row(7, "7 x 10: 4142434445464748494a");
        row(9, "9 x 2: 1145258561 1212630597");
        row(10, "10 x 1: 1145258561/1212630597");
    }
}

void tst_QExifImageHeader::ifdValueCutShort()
{
    QFETCH(int, type);
    QFETCH(quint32, count);
    QFETCH(QString, expected);
    LogCapture log;
    const QByteArray bytes =
        Laid(little).entry(1, static_cast<unsigned>(type), count, 12).raw("ABCDEFGHIJ");
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadWrite);
    QDataStream stream(&buffer);
    stream.setByteOrder(little);
    ExifIfdHeader header;
    stream >> header;
    const QExifValue value = OpenHeader().readIfdValue(stream, 0, header);
    QCOMPARE(described(value), expected);
    QVERIFY(value.toByteVector().capacity() < 100);
    QVERIFY(value.toByteArray().capacity() < 100);
    QCOMPARE(buffer.data(), bytes);
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeader::ifdValueOfUnknownType_data()
{
    QTest::addColumn<int>("type");
    for (const int type : {0, 6, 8, 11, 12, 13, 255, 256, 65535})
        QTest::newRow(qPrintable(QString::number(type))) << type;
}

void tst_QExifImageHeader::ifdValueOfUnknownType()
{
    QFETCH(int, type);
    const QByteArray bytes = Laid(big).entry(1, static_cast<unsigned>(type), 1, 0);
    QDataStream stream(bytes);
    ExifIfdHeader header;
    stream >> header;
    LogCapture log;
    QVERIFY(OpenHeader().readIfdValue(stream, 0, header).isNull());
    QCOMPARE(log.lines(),
             QStringList(QStringLiteral("warning default: Invalid Ifd Type %1").arg(type)));
}

void tst_QExifImageHeader::readFull_data()
{
    QTest::addColumn<QDataStream::ByteOrder>("order");
    QTest::addColumn<int>("position");
    QTest::newRow("II") << little << 0;
    QTest::newRow("MM") << big << 0;
    QTest::newRow("II, not at the beginning") << little << 1001;
    QTest::newRow("MM, not at the beginning") << big << 1001;
}

void tst_QExifImageHeader::readFull()
{
    QFETCH(QDataStream::ByteOrder, order);
    QFETCH(int, position);
    LogCapture log;
    QBuffer buffer;
    buffer.setData(QByteArray(position, 'x') + fullBlock(order));
    buffer.open(QIODevice::ReadOnly);
    buffer.seek(position);
    Header header;
    QVERIFY(header.read(&buffer));
    QCOMPARE(header.byteOrder(), order);
    QCOMPARE(header.imageTags(),
             QList<Header::ImageTag>({Header::Make, Header::Orientation, Header::XResolution}));
    QCOMPARE(header.extendedTags(),
             QList<Header::ExifExtendedTag>({Header::ExifVersion, Header::ExposureBiasValue}));
    QCOMPARE(header.gpsTags(), QList<Header::GpsTag>({Header::GPSVersionID, Header::GPSLatitude}));
    QCOMPARE(described(header.value(Header::Make)), QStringLiteral("2 x 5: 4f727661"));
    QCOMPARE(described(header.value(Header::Orientation)), QStringLiteral("3 x 1: 6"));
    QCOMPARE(described(header.value(Header::XResolution)), QStringLiteral("5 x 1: 72/1"));
    QCOMPARE(described(header.value(Header::ExifVersion)),
             order == little ? QStringLiteral("7 x 4: 30323330")
                             : QStringLiteral("7 x 4: 30333230"));
    QCOMPARE(described(header.value(Header::ExposureBiasValue)), QStringLiteral("10 x 1: -1/3"));
    QCOMPARE(described(header.value(Header::GPSVersionID)), QStringLiteral("1 x 4: 2 3 0 0"));
    QCOMPARE(described(header.value(Header::GPSLatitude)), QStringLiteral("5 x 3: 47/1 30/1 5/2"));
    QCOMPARE(thumbnailBytes(header, 12), QByteArray("not a JPEG!!"));
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeader::readFails_data()
{
    QTest::addColumn<QByteArray>("block");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("one byte") << QByteArray("I");
    QTest::newRow("the mark alone") << QByteArray("II");
    QTest::newRow("cut short before 42") << hex("4949 2A");
    QTest::newRow("cut short before the offset") << hex("4949 2A00");
    QTest::newRow("cut short in the offset") << hex("4949 2A00 080000");
    QTest::newRow("no such mark") << hex("4A4A 2A00 08000000 0000 00000000");
    QTest::newRow("mixed mark") << hex("494D 2A00 08000000 0000 00000000");
    QTest::newRow("lower case") << hex("6969 2A00 08000000 0000 00000000");
    QTest::newRow("43 instead of 42") << hex("4949 2B00 08000000 0000 00000000");
    QTest::newRow("42 in the other order, II") << hex("4949 002A 08000000 0000 00000000");
    QTest::newRow("42 in the other order, MM") << hex("4D4D 2A00 00000008 0000 00000000");
    QTest::newRow("IFD0 beyond the end") << hex("4949 2A00 0F000000 0000 00000000");
    QTest::newRow("IFD0 far beyond the end") << hex("4949 2A00 FFFFFFFF 0000 00000000");
}

void tst_QExifImageHeader::readFails()
{
    QFETCH(QByteArray, block);
    LogCapture log;
    Header header;
    fillWithOrientation(&header);
    QVERIFY(!readBlock(&header, block));
    QVERIFY(header.imageTags().isEmpty());
    QCOMPARE(header.size(), 28);
    // A buffer that could be extended must not be.
    QBuffer writable;
    writable.setData(block);
    writable.open(QIODevice::ReadWrite);
    QVERIFY(!header.read(&writable));
    QCOMPARE(writable.data(), block);
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeader::readFailsOnDevice()
{
    LogCapture log;
    Header header;
    QVERIFY(!header.read(nullptr));
    QByteArray block = orientationBlock();
    QBuffer closed(&block);
    QVERIFY(!header.read(&closed));
    QBuffer writeOnly;
    writeOnly.open(QIODevice::WriteOnly);
    QVERIFY(!header.read(&writeOnly));
    SequentialDevice sequential;
    sequential.content = block;
    sequential.open(QIODevice::ReadOnly);
    QVERIFY(!header.read(&sequential));
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeader::readFailsMidway_data()
{
    QTest::addColumn<bool>("isJpeg");
    QTest::newRow("block") << false;
    QTest::newRow("JPEG") << true;
}

// A device that refuses one read or one seek, whichever. What was read stays, and nothing is made
// up.
void tst_QExifImageHeader::readFailsMidway()
{
    QFETCH(bool, isJpeg);
    const QByteArray block = fullBlock(big);
    const QByteArray content = isJpeg ? soi() + jfif() + exifSegment(block) + scan() : block;
    const auto readFrom = [isJpeg](Header* header, QIODevice* device) {
        return isJpeg ? header->loadFromJpeg(device) : header->read(device);
    };
    Header whole;
    QVERIFY(readBlock(&whole, block));
    int failing = 0;
    int failures = 0;
    for (;; ++failing) {
        FaultyBuffer buffer(content, failing);
        Header header;
        fillWithOrientation(&header);
        const bool isRead = readFrom(&header, &buffer);
        failures += !isRead;
        if (!buffer.hasFailed())
            break;
        if (!isRead)
            QVERIFY(header.imageTags().isEmpty());
        for (const Header::ImageTag tag : header.imageTags())
            QVERIFY(whole.contains(tag));
        for (const Header::ExifExtendedTag tag : header.extendedTags())
            QVERIFY(whole.contains(tag));
        for (const Header::GpsTag tag : header.gpsTags())
            QVERIFY(whole.contains(tag));
        QCOMPARE(buffer.data(), content);
    }
    QVERIFY(failing > 5);
    QVERIFY(failures > 0);
    FaultyBuffer sound(content, failing);
    Header header;
    QVERIFY(readFrom(&header, &sound));
    QCOMPARE(written(header), written(whole));
}

void tst_QExifImageHeader::readReplacesEverything()
{
    Header header;
    QVERIFY(readBlock(&header, fullBlock(big)));
    QVERIFY(readBlock(&header, orientationBlock()));
    QCOMPARE(header.byteOrder(), little);
    QCOMPARE(header.imageTags(), QList<Header::ImageTag>({Header::Orientation}));
    QVERIFY(header.extendedTags().isEmpty());
    QVERIFY(header.gpsTags().isEmpty());
    QCOMPARE(written(header), orientationBlock());
    QVERIFY(readBlock(&header, fullBlock(big)));
    header.clear();
    QCOMPARE(header.byteOrder(), big);
    QCOMPARE(header.size(), 28);
}

void tst_QExifImageHeader::readCutShort_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("image");
    QTest::addColumn<int>("extended");
    QTest::addColumn<int>("gps");
    // The entries that are whole count; the two pointers of IFD0 are taken out of it.
    QTest::newRow("IFD0 without entries") << 10 << 0 << 0 << 0;
    QTest::newRow("half an entry") << 16 << 0 << 0 << 0;
    QTest::newRow("two entries and a half") << 40 << 2 << 0 << 0;
    QTest::newRow("up to the pointers") << 46 << 3 << 0 << 0;
    QTest::newRow("before the link") << 70 << 3 << 0 << 0;
    QTest::newRow("half a link") << 72 << 3 << 0 << 0;
    QTest::newRow("in the data of IFD0") << 77 << 3 << 0 << 0;
    QTest::newRow("at the Exif sub-IFD") << 88 << 3 << 0 << 0;
    QTest::newRow("in the Exif sub-IFD") << 102 << 3 << 1 << 0;
    QTest::newRow("in the GPS sub-IFD") << 152 << 3 << 2 << 1;
    QTest::newRow("in IFD1") << 210 << 3 << 2 << 2;
}

void tst_QExifImageHeader::readCutShort()
{
    QFETCH(int, length);
    QFETCH(int, image);
    QFETCH(int, extended);
    QFETCH(int, gps);
    LogCapture log;
    for (const QDataStream::ByteOrder order : {little, big}) {
        Header header;
        QVERIFY(readBlock(&header, fullBlock(order).left(length)));
        QCOMPARE(header.imageTags().size(), image);
        QCOMPARE(header.extendedTags().size(), extended);
        QCOMPARE(header.gpsTags().size(), gps);
        if (length == 77)
            QCOMPARE(header.value(Header::Make).toString(), QStringLiteral("Orv"));
        if (image == 3 && length <= 80)
            QCOMPARE(described(header.value(Header::XResolution)), QStringLiteral("5 x 0:"));
    }
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeader::entryCountBeyondTheEnd()
{
    const QByteArray block = Laid(little).tiff().u16(65535).shorts(0x0112, 1, 6).raw("behind it");
    Header header;
    QVERIFY(readBlock(&header, block));
    QCOMPARE(header.imageTags(), QList<Header::ImageTag>({Header::Orientation}));
}

void tst_QExifImageHeader::pointerKinds_data()
{
    QTest::addColumn<QByteArray>("entryRest"); // type, count, value of the pointer
    QTest::addColumn<bool>("followed");
    // The sub-IFD is at 26, little endian.
    QTest::newRow("Long") << hex("0400 01000000 1A000000") << true;
    QTest::newRow("SignedLong") << hex("0900 01000000 1A000000") << true;
    QTest::newRow("Short") << hex("0300 01000000 1A00 FFFF") << true;
    QTest::newRow("Byte") << hex("0100 01000000 1A FFFFFF") << true;
    QTest::newRow("two Longs") << hex("0400 02000000 1A000000") << false;
    QTest::newRow("no Long") << hex("0400 00000000 1A000000") << false;
    QTest::newRow("two Shorts") << hex("0300 02000000 1A00 1A00") << false;
    QTest::newRow("two Bytes") << hex("0100 02000000 1A1A0000") << false;
    QTest::newRow("Ascii") << hex("0200 02000000 1A000000") << false;
    QTest::newRow("Undefined") << hex("0700 01000000 1A000000") << false;
    QTest::newRow("Rational") << hex("0500 01000000 1A000000") << false;
    QTest::newRow("SignedRational") << hex("0A00 01000000 1A000000") << false;
    QTest::newRow("unknown type") << hex("0D00 01000000 1A000000") << false;
}

void tst_QExifImageHeader::pointerKinds()
{
    QFETCH(QByteArray, entryRest);
    QFETCH(bool, followed);
    LogCapture log; // an unknown type is warned of
    const Laid directory = Laid(little).u16(1).shorts(0x0001, 1, 7).u32(0);
    const QByteArray head = Laid(little).tiff().u16(1);
    const QByteArray link = Laid(little).u32(0);
    {
        Header header;
        QVERIFY(readBlock(&header, head + hex("6987") + entryRest + link + directory.all()));
        QVERIFY(!header.contains(Header::ExifIfdPointer));
        QCOMPARE(header.extendedTags().size(), followed ? 1 : 0);
    }
    {
        Header header;
        QVERIFY(readBlock(&header, head + hex("2588") + entryRest + link + directory.all()));
        QVERIFY(!header.contains(Header::GpsInfoIfdPointer));
        QCOMPARE(header.gpsTags().size(), followed ? 1 : 0);
    }
}

void tst_QExifImageHeader::pointersOutside_data()
{
    QTest::addColumn<quint32>("offset");
    QTest::newRow("just behind the end") << 67u;
    QTest::newRow("far") << 0x7FFFFFFFu;
    QTest::newRow("negative") << 0x80000000u;
    QTest::newRow("-1") << 0xFFFFFFFFu;
}

void tst_QExifImageHeader::pointersOutside()
{
    QFETCH(quint32, offset);
    LogCapture log;
    const QByteArray block = Laid(big)
                                 .tiff()
                                 .u16(4)
                                 .shorts(0x0112, 1, 6)
                                 .entry(0x010F, 2, 9, offset)
                                 .entry(0x8769, 4, 1, offset)
                                 .entry(0x8825, 9, 1, offset)
                                 .u32(offset)
                                 .raw("1234");
    QCOMPARE(block.size(), 66);
    QBuffer buffer;
    buffer.setData(block);
    buffer.open(QIODevice::ReadWrite); // may grow, but must not
    Header header;
    QVERIFY(header.read(&buffer));
    QCOMPARE(header.imageTags(), QList<Header::ImageTag>({Header::Make, Header::Orientation}));
    QCOMPARE(described(header.value(Header::Make)), QStringLiteral("2 x 1: "));
    QVERIFY(header.extendedTags().isEmpty());
    QVERIFY(header.gpsTags().isEmpty());
    QCOMPARE(buffer.data(), block);

    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("block"));
    QVERIFY(makeFile(fileName, block));
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(header.read(&file));
    QCOMPARE(header.value(Header::Orientation).toShort(), quint16(6));
    file.close();
    QCOMPARE(contentOf(fileName), block);
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeader::thumbnailPointers_data()
{
    QTest::addColumn<QByteArray>("entries"); // two of IFD1, at 14
    QTest::addColumn<QByteArray>("thumbnail"); // of the 8 bytes at 44
    const auto row = [](const char* name, const Laid& entries, const char* thumbnail) {
        QTest::newRow(name) << entries.all() << QByteArray(thumbnail);
    };
    const auto longs = [](quint32 offset, quint32 length) {
        return Laid(little).entry(0x0201, 4, 1, offset).entry(0x0202, 4, 1, length);
    };
    row("all", longs(44, 8), "THUMBNAL");
    row("a part", longs(46, 3), "UMB");
    row("no byte", longs(44, 0), "");
    row("longer than there is", longs(44, 9), "THUMBNAL");
    row("much longer than there is", longs(48, 0xFFFFFFFF), "BNAL");
    row("at the end", longs(52, 4), "");
    row("outside", longs(53, 4), "");
    row("far outside", longs(0xFFFFFFFF, 0xFFFFFFFF), "");
    row("as Shorts", Laid(little).shorts(0x0201, 1, 44).shorts(0x0202, 1, 5), "THUMB");
    row("offset not single", Laid(little).shorts(0x0201, 2, 44, 44).entry(0x0202, 4, 1, 8), "");
    row("length not single", Laid(little).entry(0x0201, 4, 1, 44).shorts(0x0202, 2, 8, 8), "");
    row("offset missing", Laid(little).entry(0x0200, 4, 1, 44).entry(0x0202, 4, 1, 8), "");
    row("length missing", Laid(little).entry(0x0201, 4, 1, 44).entry(0x0203, 4, 1, 8), "");
    row("length is a text", Laid(little).entry(0x0201, 4, 1, 44).bytes(0x0202, 2, 2, "8\0\0"), "");
}

void tst_QExifImageHeader::thumbnailPointers()
{
    QFETCH(QByteArray, entries);
    QFETCH(QByteArray, thumbnail);
    LogCapture log;
    // 8: IFD0 without entries, IFD1 at 14; 14: two entries, no next one.
    const QByteArray block =
        Laid(little).tiff().u16(0).u32(14).u16(2).raw(entries).u32(0).raw("THUMBNAL");
    Header header;
    QVERIFY(readBlock(&header, block));
    QCOMPARE(header.size(), thumbnail.isEmpty() ? 28 : 28 + 90 + thumbnail.size());
    QCOMPARE(thumbnailBytes(header, thumbnail.size()), thumbnail);
    QVERIFY(log.records().isEmpty());
}

// Every directory leads to IFD0 itself.
void tst_QExifImageHeader::linksInCircles()
{
    const QByteArray block = Laid(big)
                                 .tiff()
                                 .u16(3)
                                 .shorts(0x0112, 1, 6)
                                 .entry(0x8769, 4, 1, 8)
                                 .entry(0x8825, 4, 1, 8)
                                 .u32(8);
    Header header;
    QVERIFY(readBlock(&header, block));
    QCOMPARE(header.imageTags(), QList<Header::ImageTag>({Header::Orientation}));
    const auto tag = [](unsigned number) { return static_cast<Header::ExifExtendedTag>(number); };
    const auto gpsTag = [](unsigned number) { return static_cast<Header::GpsTag>(number); };
    QCOMPARE(header.extendedTags(),
             QList<Header::ExifExtendedTag>({tag(0x0112), tag(0x8769), tag(0x8825)}));
    QCOMPARE(header.gpsTags(),
             QList<Header::GpsTag>({gpsTag(0x0112), gpsTag(0x8769), gpsTag(0x8825)}));
    QVERIFY(header.thumbnail().isNull());
}

void tst_QExifImageHeader::repeatedTag()
{
    const QByteArray block = Laid(big)
                                 .tiff()
                                 .u16(3)
                                 .shorts(0x0112, 1, 6)
                                 .shorts(0x0103, 1, 1) // not in ascending order
                                 .shorts(0x0112, 1, 8)
                                 .u32(0);
    Header header;
    QVERIFY(readBlock(&header, block));
    QCOMPARE(header.imageTags(),
             QList<Header::ImageTag>({Header::Compression, Header::Orientation}));
    QCOMPARE(header.value(Header::Orientation).toShort(), quint16(8));
}

void tst_QExifImageHeader::unknownTypeIsKept()
{
    const QByteArray block = Laid(big)
                                 .tiff()
                                 .u16(3)
                                 .entry(0x010F, 6, 1, 0)
                                 .shorts(0x0112, 1, 6)
                                 .entry(0x0131, 65535, 0xFFFFFFFF, 0xFFFFFFFF)
                                 .u32(0);
    LogCapture log;
    Header header;
    QVERIFY(readBlock(&header, block));
    QCOMPARE(header.imageTags(),
             QList<Header::ImageTag>({Header::Make, Header::Orientation, Header::Software}));
    QVERIFY(header.value(Header::Make).isNull());
    QVERIFY(header.value(Header::Software).isNull());
    QCOMPARE(header.value(Header::Orientation).toShort(), quint16(6));
    QCOMPARE(log.lines(),
             QStringList({QStringLiteral("warning default: Invalid Ifd Type 6"),
                          QStringLiteral("warning default: Invalid Ifd Type 65535")}));
    // A null value is written as a Byte with count 0.
    QCOMPARE(written(header).mid(10, 12), hex("010F 0001 00000000 00000000"));
}

// 5,000 entries that each claim the whole block would make 300 MB of 60 kB.
void tst_QExifImageHeader::overlappingValuesStayBounded()
{
    const unsigned count = 5000;
    for (const unsigned type : {1u, 2u, 5u, 7u}) {
        Laid laid(little);
        laid.tiff().u16(count);
        for (unsigned i = 0; i < count; ++i)
            laid.entry(i + 1, type, 0xFFFFFFFF, 0);
        laid.u32(0);
        Header header;
        QVERIFY(readBlock(&header, laid));
        qint64 total = 0;
        for (const Header::ImageTag tag : header.imageTags()) {
            const qint64 elementSize = type == 5 ? 8 : 1;
            total += header.value(tag).count() * elementSize;
        }
        QVERIFY(header.imageTags().size() >= 16);
        QVERIFY(total <= qint64(laid.size()) * 18);

        // What lies in front of the block does not count.
        QBuffer device;
        device.setData(QByteArray(1000 * 1000, '\0') + laid);
        device.open(QIODevice::ReadOnly);
        device.seek(1000 * 1000);
        Header behindOthers;
        QVERIFY(behindOthers.read(&device));
        QCOMPARE(behindOthers.imageTags(), header.imageTags());
    }
}

void tst_QExifImageHeader::readLeavesDeviceAlone()
{
    QBuffer buffer;
    buffer.setData(fullBlock(little));
    buffer.open(QIODevice::ReadWrite);
    Header header;
    QVERIFY(header.read(&buffer));
    QVERIFY(buffer.isOpen());
    QCOMPARE(buffer.data(), fullBlock(little));
}

void tst_QExifImageHeader::sizeOf_data()
{
    QTest::addColumn<QExifValue>("value");
    QTest::addColumn<quint32>("size");
    QTest::newRow("null") << QExifValue() << 12u;
    QTest::newRow("4 bytes") << QExifValue(QVector<quint8>(4)) << 12u;
    QTest::newRow("5 bytes") << QExifValue(QVector<quint8>(5)) << 17u;
    QTest::newRow("text of 3") << QExifValue(QStringLiteral("abc")) << 12u;
    QTest::newRow("text of 4") << QExifValue(QStringLiteral("abcd")) << 17u;
    QTest::newRow("no text") << QExifValue(QString()) << 12u;
    QTest::newRow("4 raw bytes") << QExifValue(QByteArray(4, 'x')) << 12u;
    QTest::newRow("5 raw bytes") << QExifValue(QByteArray(5, 'x')) << 17u;
    QTest::newRow("no short") << QExifValue(QVector<quint16>()) << 12u;
    QTest::newRow("2 shorts") << QExifValue(QVector<quint16>(2)) << 12u;
    QTest::newRow("3 shorts") << QExifValue(QVector<quint16>(3)) << 18u;
    QTest::newRow("no long") << QExifValue(Longs()) << 12u;
    QTest::newRow("1 long") << QExifValue(quint32(1)) << 12u;
    QTest::newRow("2 longs") << QExifValue(Longs(2)) << 20u;
    QTest::newRow("1 signed long") << QExifValue(qint32(1)) << 12u;
    QTest::newRow("2 signed longs") << QExifValue(QVector<qint32>(2)) << 20u;
    QTest::newRow("no rational") << QExifValue(QVector<UnsignedPair>()) << 12u;
    QTest::newRow("1 rational") << QExifValue(UnsignedPair(1, 2)) << 20u;
    QTest::newRow("3 rationals") << QExifValue(QVector<UnsignedPair>(3)) << 36u;
    QTest::newRow("no signed rational") << QExifValue(QVector<SignedPair>()) << 12u;
    QTest::newRow("1 signed rational") << QExifValue(SignedPair(1, 2)) << 20u;
    QTest::newRow("2 signed rationals") << QExifValue(QVector<SignedPair>(2)) << 28u;
}

void tst_QExifImageHeader::sizeOf()
{
    QFETCH(QExifValue, value);
    QFETCH(quint32, size);
    QCOMPARE(OpenHeader().sizeOf(value), size);
}

void tst_QExifImageHeader::writeEntry_data()
{
    QTest::addColumn<QDataStream::ByteOrder>("order");
    QTest::addColumn<QExifValue>("value");
    QTest::addColumn<QByteArray>("entry"); // behind the tag 9286
    QTest::addColumn<quint32>("next"); // after the offset 256
    QTest::addColumn<QByteArray>("data");

    const auto row = [](const char* name, const QExifValue& value, const char* littleEntry,
                        const char* bigEntry, quint32 next, const char* littleData = "",
                        const char* bigData = "") {
        QTest::newRow(qPrintable(QLatin1String(name) + QLatin1String(", II")))
            << little << value << hex(littleEntry) << next << hex(littleData);
        QTest::newRow(qPrintable(QLatin1String(name) + QLatin1String(", MM")))
            << big << value << hex(bigEntry) << next << hex(bigData);
    };
    row("null", QExifValue(), "0100 00000000 00000000", "0001 00000000 00000000", 256);
    row("byte", QExifValue(quint8(9)), "0100 01000000 09000000", "0001 00000001 09000000", 256);
    row("4 bytes", QExifValue(QVector<quint8>{1, 2, 3, 4}), "0100 04000000 01020304",
        "0001 00000004 01020304", 256);
    row("5 bytes", QExifValue(QVector<quint8>{1, 2, 3, 4, 5}), "0100 05000000 00010000",
        "0001 00000005 00000100", 261, "0102030405", "0102030405");
    row("no text", QExifValue(QString()), "0200 01000000 00000000", "0002 00000001 00000000", 256);
    row("text of 1", QExifValue(QStringLiteral("N")), "0200 02000000 4E000000",
        "0002 00000002 4E000000", 256);
    row("text of 3", QExifValue(QStringLiteral("ab\u00e9")), "0200 04000000 6162E900",
        "0002 00000004 6162E900", 256);
    row("text of 4", QExifValue(QStringLiteral("a\u20acb\u00e9")), "0200 05000000 00010000",
        "0002 00000005 00000100", 261, "613F62E900", "613F62E900");
    row("text with NULs", QExifValue(QString::fromLatin1("a\0b\0", 4)), "0200 05000000 00010000",
        "0002 00000005 00000100", 261, "6100620000", "6100620000");
    row("no raw byte", QExifValue(QByteArray()), "0700 00000000 00000000", "0007 00000000 00000000",
        256);
    row("3 raw bytes", QExifValue(QByteArray("\1\2\3")), "0700 03000000 01020300",
        "0007 00000003 01020300", 256);
    row("5 raw bytes", QExifValue(hex("0001020304")), "0700 05000000 00010000",
        "0007 00000005 00000100", 261, "0001020304", "0001020304");
    row("no short", QExifValue(QVector<quint16>()), "0300 00000000 00000000",
        "0003 00000000 00000000", 256);
    row("1 short", QExifValue(quint16(0x1234)), "0300 01000000 34120000", "0003 00000001 12340000",
        256);
    row("2 shorts", QExifValue(QVector<quint16>{0x1234, 5}), "0300 02000000 34120500",
        "0003 00000002 12340005", 256);
    row("3 shorts", QExifValue(QVector<quint16>{0x1234, 5, 6}), "0300 03000000 00010000",
        "0003 00000003 00000100", 262, "341205000600", "123400050006");
    row("no long", QExifValue(Longs()), "0400 00000000 00000000", "0004 00000000 00000000", 256);
    row("1 long", QExifValue(quint32(0x12345678)), "0400 01000000 78563412",
        "0004 00000001 12345678", 256);
    row("2 longs", QExifValue(Longs{0x12345678, 1}), "0400 02000000 00010000",
        "0004 00000002 00000100", 264, "7856341201000000", "1234567800000001");
    row("no signed long", QExifValue(QVector<qint32>()), "0900 00000000 00000000",
        "0009 00000000 00000000", 256);
    row("1 signed long", QExifValue(qint32(-2)), "0900 01000000 FEFFFFFF", "0009 00000001 FFFFFFFE",
        256);
    row("2 signed longs", QExifValue(QVector<qint32>{-2, 1}), "0900 02000000 00010000",
        "0009 00000002 00000100", 264, "FEFFFFFF01000000", "FFFFFFFE00000001");
    row("no rational", QExifValue(QVector<UnsignedPair>()), "0500 00000000 00000000",
        "0005 00000000 00000000", 256);
    row("1 rational", QExifValue(UnsignedPair(1, 60)), "0500 01000000 00010000",
        "0005 00000001 00000100", 264, "010000003C000000", "000000010000003C");
    row("2 rationals", QExifValue(QVector<UnsignedPair>{{1, 2}, {3, 4}}), "0500 02000000 00010000",
        "0005 00000002 00000100", 272, "01000000020000000300000004000000",
        "00000001000000020000000300000004");
    row("no signed rational", QExifValue(QVector<SignedPair>()), "0A00 00000000 00000000",
        "000A 00000000 00000000", 256);
    row("1 signed rational", QExifValue(SignedPair(-1, 3)), "0A00 01000000 00010000",
        "000A 00000001 00000100", 264, "FFFFFFFF03000000", "FFFFFFFF00000003");
}

void tst_QExifImageHeader::writeEntry()
{
    QFETCH(QDataStream::ByteOrder, order);
    QFETCH(QExifValue, value);
    QFETCH(QByteArray, entry);
    QFETCH(quint32, next);
    QFETCH(QByteArray, data);
    LogCapture log;
    const OpenHeader header;
    QByteArray writtenEntry;
    {
        QDataStream stream(&writtenEntry, QIODevice::WriteOnly);
        stream.setByteOrder(order);
        QCOMPARE(header.writeExifHeader(stream, 0x9286, value, 256), next);
    }
    QCOMPARE(writtenEntry.toHex(), (Laid(order).u16(0x9286).all() + entry).toHex());
    QByteArray writtenData;
    {
        QDataStream stream(&writtenData, QIODevice::WriteOnly);
        stream.setByteOrder(order);
        header.writeExifValue(stream, value);
    }
    QCOMPARE(writtenData.toHex(), data.toHex());
    QCOMPARE(header.sizeOf(value), quint32(12 + data.size()));
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeader::writeEmpty()
{
    Header header;
    QCOMPARE(written(header),
             hex("4949 2A00 08000000" // little endian, 42, IFD0 at 8
                 "0100" // one entry
                 "6987 0400 01000000 1A000000" // ExifIfdPointer, Long, 1, 26
                 "00000000" // no IFD1
                 "0000")); // at 26: no entries
    QCOMPARE(header.size(), 28);
    QVERIFY(readBlock(&header, hex("4D4D 002A 00000008 0000 00000000")));
    QCOMPARE(written(header),
             hex("4D4D 002A 00000008 0001 8769 0004 00000001 0000001A 00000000 0000"));
}

// Ascending order, data in the same order, offsets where the data is.
void tst_QExifImageHeader::writeImageTags()
{
    Header header;
    header.setValue(Header::Copyright, QExifValue(QStringLiteral("me")));
    header.setValue(Header::XResolution, QExifValue(UnsignedPair(300, 1)));
    header.setValue(Header::Orientation, QExifValue(quint16(6)));
    header.setValue(Header::Make, QExifValue(QStringLiteral("Orva")));
    const QByteArray expected =
        hex("4949 2A00 08000000 0500"
            "0F01 0200 05000000 4A000000" // Make, 5 characters at 74 = 26 + 12 x 4
            "1201 0300 01000000 06000000" // Orientation 6
            "1A01 0500 01000000 4F000000" // XResolution, at 79
            "9882 0200 03000000 6D650000" // Copyright "me"
            "6987 0400 01000000 57000000" // ExifIfdPointer, 87
            "00000000"
            "4F72766100" // 74: "Orva"
            "2C010000 01000000" // 79: 300/1
            "0000"); // 87: no extended tags
    QCOMPARE(written(header).toHex(), expected.toHex());
    QCOMPARE(header.size(), 89);
}

void tst_QExifImageHeader::writeSubIfdOffsets()
{
    Header header;
    header.setValue(Header::ExposureTime, QExifValue(UnsignedPair(1, 60)));
    header.setValue(Header::UserComment, QExifValue(QByteArray("abcde")));
    const QByteArray expected = hex("4949 2A00 08000000 0100"
                                    "6987 0400 01000000 1A000000"
                                    "00000000"
                                    "0200" // 26: two extended tags
                                    "9A82 0500 01000000 32000000" // 50 = 26 + 12 x 2
                                    "8692 0700 05000000 3A000000" // 58
                                    "01000000 3C000000" // lands at 52
                                    "6162636465"); // lands at 60
    QCOMPARE(written(header).toHex(), expected.toHex());
}

void tst_QExifImageHeader::writeGps()
{
    Header header;
    QVERIFY(readBlock(&header, hex("4D4D 002A 00000008 0000 00000000"))); // big endian
    header.setValue(Header::GPSVersionID, QExifValue(QVector<quint8>{2, 3, 0, 0}));
    header.setValue(Header::GPSLatitude,
                    QExifValue(QVector<UnsignedPair>{{47, 1}, {30, 1}, {5, 2}}));
    header.setValue(Header::Flash, QExifValue(quint16(1)));
    QVERIFY(!header.contains(Header::GpsInfoIfdPointer));
    const QByteArray expected =
        hex("4D4D 002A 00000008 0002"
            "8769 0004 00000001 00000026" // ExifIfdPointer, 38
            "8825 0004 00000001 00000034" // GpsInfoIfdPointer, 52 = 38 + 2 + 12
            "00000000"
            "0001 9209 0003 00000001 00010000" // 38: Flash
            "0002" // 52: two GPS tags
            "0000 0001 00000004 02030000"
            "0002 0005 00000003 0000004C" // 76 = 52 + 12 x 2
            "0000002F 00000001 0000001E 00000001 00000005 00000002"); // lands at 78
    QCOMPARE(written(header).toHex(), expected.toHex());
    QCOMPARE(header.size(), 102);
    QCOMPARE(header.imageTags(), QList<Header::ImageTag>({Header::GpsInfoIfdPointer}));
    QCOMPARE(described(header.value(Header::GpsInfoIfdPointer)), QStringLiteral("4 x 1: 52"));
}

// The pointer that the first write() left behind counts among the image tags.
void tst_QExifImageHeader::writeGpsTwice()
{
    Header header;
    header.setValue(Header::GPSStatus, QExifValue(QStringLiteral("A")));
    const QByteArray first = written(header);
    QCOMPARE(first.toHex(),
             hex("4949 2A00 08000000 0200"
                 "6987 0400 01000000 26000000"
                 "2588 0400 01000000 28000000"
                 "00000000 0000"
                 "0100 0900 0200 02000000 41000000")
                 .toHex());
    const QByteArray second = written(header);
    QCOMPARE(second.toHex(),
             hex("4949 2A00 08000000 0300"
                 "2588 0400 01000000 28000000" // the one of before, 40
                 "6987 0400 01000000 32000000" // 50
                 "2588 0400 01000000 34000000" // 52
                 "00000000 0000"
                 "0100 0900 0200 02000000 41000000")
                 .toHex());
    QCOMPARE(header.size(), 66);
    QCOMPARE(described(header.value(Header::GpsInfoIfdPointer)), QStringLiteral("4 x 1: 52"));
    // The last one is right, and the one that readers take.
    Header again;
    QVERIFY(readBlock(&again, second));
    QCOMPARE(again.gpsTags(), QList<Header::GpsTag>({Header::GPSStatus}));
    QVERIFY(again.imageTags().isEmpty());
}

// Data of an entry that the new pointer takes the place of is still where the offsets say.
void tst_QExifImageHeader::writeGpsOverOldPointer()
{
    Header header;
    header.setValue(Header::GpsInfoIfdPointer, QExifValue(QStringLiteral("a text")));
    header.setValue(Header::GPSStatus, QExifValue(QStringLiteral("A")));
    const QByteArray block = written(header);
    Header again;
    QVERIFY(readBlock(&again, block));
    QCOMPARE(again.gpsTags(), QList<Header::GpsTag>({Header::GPSStatus}));
    QCOMPARE(again.value(Header::GPSStatus).toString(), QStringLiteral("A"));
    QCOMPARE(described(header.value(Header::GpsInfoIfdPointer)), QStringLiteral("4 x 1: 59"));
}

void tst_QExifImageHeader::writeThumbnail()
{
    Header header;
    QVERIFY(readBlock(&header, fullBlock(little)));
    header.remove(Header::Make);
    header.remove(Header::XResolution);
    header.remove(Header::ExifVersion);
    header.remove(Header::ExposureBiasValue);
    header.remove(Header::GPSLatitude);
    const QByteArray expected =
        hex("4949 2A00 08000000 0300"
            "1201 0300 01000000 06000000"
            "6987 0400 01000000 32000000" // 50 = 38 + 12
            "2588 0400 01000000 34000000" // 52
            "42000000" // IFD1 at 66
            "0000" // 50: no extended tags
            "0100 0000 0100 04000000 02030000" // 52: GPSVersionID
            "0700" // 66: IFD1, seven entries, no link behind them
            "0301 0300 01000000 06000000" // Compression 6
            "1A01 0500 01000000 98000000" // XResolution, 152 = 66 + 86
            "1B01 0500 01000000 A0000000" // YResolution, 160
            "2801 0300 01000000 03000000" // ResolutionUnit 3, as it was
            "1201 0300 01000000 08000000" // Orientation 8, as it was, behind ResolutionUnit
            "0102 0400 01000000 A8000000" // JPEGInterchangeFormat, 168
            "0202 0400 01000000 0C000000" // JPEGInterchangeFormatLength, 12
            "2C010000 01000000" // 300/1, as it was
            "48000000 01000000") // 72/1
        + "not a JPEG!!";
    QCOMPARE(written(header).toHex(), expected.toHex());
    QCOMPARE(header.size(), 180);
}

void tst_QExifImageHeader::writeThumbnailDefaults()
{
    QImage image(16, 8, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    QVERIFY(image.save(&buffer, "JPG"));

    Header header;
    header.setThumbnail(image);
    const QByteArray expected = hex("4949 2A00 08000000 0100"
                                    "6987 0400 01000000 1A000000"
                                    "1C000000" // IFD1 at 28
                                    "0000"
                                    "0700"
                                    "0301 0300 01000000 06000000"
                                    "1A01 0500 01000000 72000000" // 114 = 28 + 86
                                    "1B01 0500 01000000 7A000000" // 122
                                    "2801 0300 01000000 02000000"
                                    "1201 0300 01000000 00000000"
                                    "0102 0400 01000000 82000000") // 130
        + Laid(little).entry(0x0202, 4, 1, quint32(jpeg.size())).all()
        + hex("48000000 01000000 48000000 01000000") + jpeg;
    QCOMPARE(written(header).toHex(), expected.toHex());
}

void tst_QExifImageHeader::writeAtPosition()
{
    Header header;
    fillWithOrientation(&header);
    QBuffer buffer;
    buffer.setData("0123456789");
    buffer.open(QIODevice::ReadWrite);
    buffer.seek(10);
    QCOMPARE(header.write(&buffer), 40);
    QCOMPARE(buffer.data(), "0123456789" + orientationBlock());
    SequentialDevice sequential;
    sequential.open(QIODevice::WriteOnly);
    QCOMPARE(header.write(&sequential), 40);
    QCOMPARE(sequential.content, orientationBlock());
}

void tst_QExifImageHeader::writeFails()
{
    LogCapture log;
    Header header;
    fillWithOrientation(&header);
    QCOMPARE(header.write(nullptr), 0);
    QBuffer closed;
    QCOMPARE(header.write(&closed), 0);
    QBuffer readOnly;
    readOnly.open(QIODevice::ReadOnly);
    QCOMPARE(header.write(&readOnly), 0);
    WatchedBuffer full;
    full.capacity = 0;
    full.open(QIODevice::WriteOnly);
    QCOMPARE(header.write(&full), 0);
    WatchedBuffer nearlyFull;
    nearlyFull.capacity = 7;
    nearlyFull.open(QIODevice::WriteOnly);
    QCOMPARE(header.write(&nearlyFull), 7);
    QCOMPARE(header.size(), 40);
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeader::sizePredicted()
{
    Header header;
    QCOMPARE(header.size(), 28);
    header.setValue(Header::Make, QExifValue(QStringLiteral("Orva"))); // 17
    QCOMPARE(header.size(), 45);
    header.setValue(Header::ExposureTime, QExifValue(UnsignedPair(1, 60))); // 20
    QCOMPARE(header.size(), 65);
    header.setValue(Header::GPSStatus, QExifValue(QStringLiteral("A"))); // 12, and 2 + 12
    QCOMPARE(header.size(), 91);
    QCOMPARE(written(header).size(), 91);

    Header withThumbnail;
    QVERIFY(readBlock(&withThumbnail, fullBlock(big)));
    // image 2 + 17 + 12 + 20, extended 2 + 12 + 20, 24, GPS 2 + 12 + 36 + 12, thumbnail 12 + 90
    QCOMPARE(withThumbnail.size(), 273);
    QCOMPARE(written(withThumbnail).size(), 285); // 12 more
    QCOMPARE(withThumbnail.size(), 285);
    withThumbnail.remove(Header::Make);
    // The prediction again; the image tags now hold the pointer that write() left, 12.
    QCOMPARE(withThumbnail.size(), 273 - 17 + 12);
}

void tst_QExifImageHeader::sizeCached()
{
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::blue);
    Header header;
    header.setThumbnail(image);
    const int predicted = header.size();
    const int real = written(header).size();
    QCOMPARE(real, predicted + 12);

    // Each change makes it a prediction again.
    const std::function<void()> changes[] = {
        [&] { header.setValue(Header::Flash, QExifValue(quint16(0))); },
        [&] { header.remove(Header::Flash); },
        [&] { header.setValue(Header::Orientation, QExifValue(quint16(0))); },
        [&] { header.remove(Header::Orientation); },
        [&] { header.setValue(Header::GPSStatus, QExifValue(quint16(0))); },
        [&] { header.remove(Header::GPSStatus); },
        [&] { header.remove(Header::GPSDateStamp); },
        [&] { header.setThumbnail(image); },
    };
    for (const std::function<void()>& change : changes) {
        change();
        const int before = header.size();
        QCOMPARE(header.size(), before);
        QCOMPARE(written(header).size(), before + 12);
        QCOMPARE(header.size(), before + 12);
        header.remove(Header::GpsInfoIfdPointer); // what write() leaves behind
    }
    header.setThumbnail(QImage());
    QCOMPARE(header.size(), 28);
    header.clear();
    QCOMPARE(header.size(), 28);
}

void tst_QExifImageHeader::rereadAfterWrite_data()
{
    QTest::addColumn<QDataStream::ByteOrder>("order");
    QTest::newRow("II") << little;
    QTest::newRow("MM") << big;
}

// IFD0 and IFD1 come back as they were. In the sub-IFDs what is in the entries does, while data is
// looked for 2 bytes before where it is.
void tst_QExifImageHeader::rereadAfterWrite()
{
    QFETCH(QDataStream::ByteOrder, order);
    Header header;
    QVERIFY(readBlock(&header, fullBlock(order)));
    Header again;
    QVERIFY(readBlock(&again, written(header)));
    QCOMPARE(again.byteOrder(), order);
    for (const Header::ImageTag tag : {Header::Make, Header::Orientation, Header::XResolution})
        QCOMPARE(described(again.value(tag)), described(header.value(tag)));
    QCOMPARE(again.imageTags().size(), 3);
    QCOMPARE(again.extendedTags(), header.extendedTags());
    QCOMPARE(again.gpsTags(), header.gpsTags());
    QCOMPARE(described(again.value(Header::GPSVersionID)),
             described(header.value(Header::GPSVersionID)));
    QCOMPARE(thumbnailBytes(again, 12), QByteArray("not a JPEG!!"));

    // ExposureBiasValue -1/3: the last 2 bytes before it are the end of its own entry, an offset
    // below 65536.
    const SignedPair bias = again.value(Header::ExposureBiasValue).toSignedRational();
    if (order == little)
        QCOMPARE(bias, SignedPair(qint32(0xFFFF0000), 0x0003FFFF));
    else
        QCOMPARE(bias.second, qint32(0xFFFF0000));
}

void tst_QExifImageHeader::extractExif_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("block");

    const QByteArray block("the block");
    const QByteArray none;
    QTest::newRow("first") << soi() + exifSegment(block) + scan() << block;
    QTest::newRow("behind JFIF") << soi() + jfif() + exifSegment(block) + scan() << block;
    QTest::newRow("behind others")
        << soi() + jfif() + segment(0xFFE2, "ICC_PROFILE") + dqt() + exifSegment(block) + scan()
        << block;
    QTest::newRow("a segment without payload before it")
        << soi() + segment(0xFFFE, "") + exifSegment(block) << block;
    QTest::newRow("only the first of two")
        << soi() + exifSegment(block) + exifSegment("second") << block;
    QTest::newRow("the two bytes behind the name are not looked at")
        << soi() + segment(0xFFE1, "Exif!?the block") << block;
    QTest::newRow("XMP before it") << soi() + jfif() + xmp() + exifSegment(block) + scan() << none;
    QTest::newRow("lower case") << soi() + segment(0xFFE1, QByteArray("exif\0\0abc", 9)) << none;
    QTest::newRow("no APP1") << soi() + jfif() + dqt() + hex("FFD9") << none;
    QTest::newRow("not a JPEG") << QByteArray("GIF89a") << none;
    QTest::newRow("SOI swapped") << hex("D8FF") + exifSegment(block) << none;
    QTest::newRow("empty") << none << none;
    QTest::newRow("one byte") << hex("FF") << none;
    QTest::newRow("SOI alone") << soi() << none;
    QTest::newRow("half a marker") << soi() + hex("FF") << none;
    QTest::newRow("marker without a length") << soi() + hex("FFE0") << none;
    QTest::newRow("half a length") << soi() + hex("FFE0 00") << none;
    QTest::newRow("APP1 without a length") << soi() + hex("FFE1") << none;
    QTest::newRow("APP1 with half a length") << soi() + hex("FFE1 00") << none;
    QTest::newRow("APP1 without a name") << soi() + hex("FFE1 0020") << none;
    QTest::newRow("APP1 with half a name") << soi() + hex("FFE1 0020 4578") << none;
    QTest::newRow("cut short behind the name") << soi() + hex("FFE1 0020 45786966") << none;
    QTest::newRow("cut short in the NULs") << soi() + hex("FFE1 0020 45786966 00") << none;
    QTest::newRow("cut short before the block") << soi() + hex("FFE1 0020 45786966 0000") << none;
    QTest::newRow("cut short in the block")
        << soi() + hex("FFE1 0020 45786966 0000 0102") << hex("0102");
    QTest::newRow("largest length, little there")
        << soi() + hex("FFE1 FFFF 45786966 0000 0102") << hex("0102");
    for (int length = 0; length <= 8; ++length)
        QTest::newRow(qPrintable(QStringLiteral("APP1 of length %1").arg(length))) << soi()
                + Laid(big).u16(0xFFE1).u16(unsigned(length)).all()
                + QByteArray("Exif\0\0abcdef", 12) << none;
    QTest::newRow("APP1 of length 9")
        << soi() + hex("FFE1 0009 45786966 0000 01020304") << hex("01");
    QTest::newRow("segment of length 0") << soi() + hex("FFE0 0000") + exifSegment(block) << none;
    QTest::newRow("segment of length 1") << soi() + hex("FFE0 0001") + exifSegment(block) << none;
    QTest::newRow("segment that leads beyond the end")
        << soi() + hex("FFE0 FFFF") + exifSegment(block) << none;
    QTest::newRow("segment that leads to the very end") << soi() + hex("FFE0 0004 0000") << none;
    QTest::newRow("a million NULs") << soi() + QByteArray(1000000, '\0') << none;
}

void tst_QExifImageHeader::extractExif()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, block);
    LogCapture log;
    QBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadWrite); // may grow, but must not
    QCOMPARE(Header().extractExif(&buffer), block);
    QCOMPARE(buffer.data(), file);
    QVERIFY(buffer.isOpen());

    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    QVERIFY(makeFile(fileName, file));
    QFile onDisk(fileName);
    QVERIFY(onDisk.open(QIODevice::ReadWrite));
    QCOMPARE(Header().extractExif(&onDisk), block);
    onDisk.close();
    QCOMPARE(contentOf(fileName), file);
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeader::extractExifSequential_data()
{
    extractExif_data();
}

// A device that cannot seek gives the same.
void tst_QExifImageHeader::extractExifSequential()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, block);
    LogCapture log;
    SequentialDevice device;
    device.content = file;
    device.open(QIODevice::ReadOnly);
    QCOMPARE(Header().extractExif(&device), block);
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeader::extractExifFromPosition()
{
    QBuffer buffer;
    buffer.setData("prefix" + soi() + jfif() + exifSegment("block") + scan());
    buffer.open(QIODevice::ReadOnly);
    QVERIFY(Header().extractExif(&buffer).isEmpty());
    buffer.seek(6);
    QCOMPARE(Header().extractExif(&buffer), QByteArray("block"));
}

void tst_QExifImageHeader::extractExifFromBadDevice()
{
    LogCapture log;
    QVERIFY(Header().extractExif(nullptr).isEmpty());
    QBuffer buffer;
    buffer.setData(soi() + exifSegment("block"));
    QVERIFY(Header().extractExif(&buffer).isEmpty());
    buffer.open(QIODevice::WriteOnly);
    QVERIFY(Header().extractExif(&buffer).isEmpty());
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeader::loadFromJpeg()
{
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("\u00e9 1.jpg"));
    const QByteArray content = soi() + jfif() + exifSegment(fullBlock(big)) + scan();
    QVERIFY(makeFile(fileName, content));
    Header header;
    QVERIFY(header.loadFromJpeg(fileName));
    QCOMPARE(header.value(Header::Make).toString(), QStringLiteral("Orva"));
    QCOMPARE(header.byteOrder(), big);
    QCOMPARE(contentOf(fileName), content);
    QCOMPARE(Header(fileName).value(Header::Orientation).toShort(), quint16(6));

    QFile file(fileName);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(Header(&file).value(Header::Orientation).toShort(), quint16(6));
    QVERIFY(file.isOpen());

    SequentialDevice sequential;
    sequential.content = content;
    sequential.open(QIODevice::ReadOnly);
    QVERIFY(header.loadFromJpeg(&sequential));
    QCOMPARE(header.gpsTags().size(), 2);
}

void tst_QExifImageHeader::loadFails_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no EXIF") << soi() + jfif() + scan();
    QTest::newRow("XMP first") << soi() + xmp() + exifSegment(orientationBlock());
    QTest::newRow("empty block") << soi() + exifSegment(QByteArray());
    QTest::newRow("no mark") << soi() + exifSegment("not a block at all");
}

void tst_QExifImageHeader::loadFails()
{
    QFETCH(QByteArray, file);
    LogCapture log;
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    QVERIFY(makeFile(fileName, file));
    Header header;
    fillWithOrientation(&header);
    QVERIFY(!header.loadFromJpeg(fileName));
    QVERIFY(header.imageTags().isEmpty());
    fillWithOrientation(&header);
    QVERIFY(!header.loadFromJpeg(folder.filePath(QStringLiteral("missing.jpg"))));
    QVERIFY(header.imageTags().isEmpty());
    QVERIFY(!header.loadFromJpeg(folder.path()));
    QVERIFY(!header.loadFromJpeg(QString()));
    QVERIFY(!header.loadFromJpeg(static_cast<QIODevice*>(nullptr)));
    QVERIFY(!QFile::exists(folder.filePath(QStringLiteral("missing.jpg"))));
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeader::save_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");

    const QByteArray fresh = exifSegment(orientationBlock()); // payload 46 bytes
    const QByteArray small = exifSegment("a smaller one");
    const QByteArray large = exifSegment(QByteArray(100, 'x'));
    const QByteArray padded = exifSegment(orientationBlock() + QByteArray(60, '\0'));
    const QByteArray same = exifSegment(QByteArray(40, 'x'));
    const QByteArray icc = segment(0xFFE2, QByteArray("ICC_PROFILE\0\1\1", 14));

    QTest::newRow("EXIF first, grows")
        << soi() + small + dqt() + scan() << soi() + fresh + dqt() + scan();
    QTest::newRow("EXIF first, same size")
        << soi() + same + dqt() + scan() << soi() + fresh + dqt() + scan();
    QTest::newRow("EXIF first, padded")
        << soi() + large + dqt() + scan() << soi() + padded + dqt() + scan();
    QTest::newRow("EXIF first, name alone")
        << soi() + segment(0xFFE1, "Exif") + scan() << soi() + fresh + scan();
    QTest::newRow("JFIF, EXIF, grows")
        << soi() + jfif() + small + dqt() + scan() << soi() + jfif() + fresh + dqt() + scan();
    QTest::newRow("JFIF, EXIF, same size")
        << soi() + jfif() + same + dqt() + scan() << soi() + jfif() + fresh + dqt() + scan();
    QTest::newRow("JFIF, EXIF, padded")
        << soi() + jfif() + large + dqt() + scan() << soi() + jfif() + padded + dqt() + scan();
    QTest::newRow("JFIF, no EXIF")
        << soi() + jfif() + dqt() + scan() << soi() + jfif() + fresh + dqt() + scan();
    QTest::newRow("JFIF, XMP") << soi() + jfif() + xmp() + dqt() + scan()
                               << soi() + jfif() + fresh + xmp() + dqt() + scan();
    QTest::newRow("JFIF, XMP, EXIF") << soi() + jfif() + xmp() + small + scan()
                                     << soi() + jfif() + fresh + xmp() + small + scan();
    QTest::newRow("JFIF, ICC, EXIF")
        << soi() + jfif() + icc + small + scan() << soi() + jfif() + fresh + icc + small + scan();
    QTest::newRow("JFIF, EXIF, EXIF")
        << soi() + jfif() + small + small + scan() << soi() + jfif() + fresh + small + scan();
    QTest::newRow("JFIF, JFXX") << soi() + jfif() + segment(0xFFE0, "JFXX") + scan()
                                << soi() + jfif() + fresh + segment(0xFFE0, "JFXX") + scan();
    QTest::newRow("XMP first") << soi() + xmp() + dqt() + scan()
                               << soi() + fresh + xmp() + dqt() + scan();
    QTest::newRow("XMP, EXIF") << soi() + xmp() + small + scan()
                               << soi() + fresh + xmp() + small + scan();
    QTest::newRow("APP0 that is not JFIF") << soi() + segment(0xFFE0, "JFXX") + small
            + scan() << soi() + fresh + segment(0xFFE0, "JFXX") + small + scan();
    QTest::newRow("APP13, EXIF") << soi() + segment(0xFFED, "Photoshop") + small + scan()
                                 << soi() + fresh + segment(0xFFED, "Photoshop") + small + scan();
    QTest::newRow("DQT first") << soi() + dqt() + scan() << soi() + fresh + dqt() + scan();
    QTest::newRow("SOF first") << soi() + segment(0xFFC0, "frame") + scan()
                               << soi() + fresh + segment(0xFFC0, "frame") + scan();
    QTest::newRow("APP1 of length 0") << soi() + hex("FFE1 0000 45786966 0000") + scan()
                                      << soi() + fresh + hex("FFE1 0000 45786966 0000") + scan();
    QTest::newRow("APP1 whose name does not fit") << soi() + hex("FFE1 0005 45786966 0000")
            + scan() << soi() + fresh + hex("FFE1 0005 45786966 0000") + scan();
    QTest::newRow("APP0 of length 1") << soi() + hex("FFE0 0001 4A464946") + scan()
                                      << soi() + fresh + hex("FFE0 0001 4A464946") + scan();
    QTest::newRow("EXIF cut short by the end, grows")
        << soi() + hex("FFE1 1000 45786966 0000 0102") << soi() + fresh;
    QTest::newRow("EXIF cut short by the end, padded")
        << soi() + Laid(big).u16(0xFFE1).u16(4096).all() + exifPayload(QByteArray(100, 'x'))
        << soi() + padded;
    QTest::newRow("EXIF cut short by the end, same size")
        << soi() + Laid(big).u16(0xFFE1).u16(4096).all() + exifPayload(QByteArray(40, 'x'))
        << soi() + fresh;
    QTest::newRow("segment cut short by the end")
        << soi() + hex("FFDB 1000 0102") << soi() + fresh + hex("FFDB 1000 0102");
    QTest::newRow("shortest file that has a segment")
        << soi() + hex("FFFE 0002") << soi() + fresh + hex("FFFE 0002");
}

void tst_QExifImageHeader::save()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    LogCapture log;
    Header header;
    fillWithOrientation(&header);

    QBuffer buffer;
    buffer.setData(before);
    buffer.open(QIODevice::ReadWrite);
    QVERIFY(header.saveToJpeg(&buffer));
    QCOMPARE(buffer.data().toHex(), after.toHex());
    QVERIFY(buffer.isOpen());

    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    QVERIFY(makeFile(fileName, before));
    QVERIFY(header.saveToJpeg(fileName));
    QCOMPARE(contentOf(fileName).toHex(), after.toHex());

    QVERIFY(makeFile(fileName, before));
    QFile buffered(fileName);
    QVERIFY(buffered.open(QIODevice::ReadWrite));
    QVERIFY(header.saveToJpeg(&buffered));
    buffered.close();
    QCOMPARE(contentOf(fileName).toHex(), after.toHex());
    QVERIFY(log.records().isEmpty());

    // What was saved is found again where the block is the first APP1 segment.
    Header again;
    QVERIFY(again.loadFromJpeg(fileName));
    QCOMPARE(again.value(Header::Orientation).toShort(), quint16(6));
}

void tst_QExifImageHeader::savePadsInPlace_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<int>("oldBlock");
    QTest::newRow("first, same size") << soi() << 40;
    QTest::newRow("first, larger") << soi() << 5000;
    QTest::newRow("behind JFIF, same size") << soi() + jfif() << 40;
    QTest::newRow("behind JFIF, larger") << soi() + jfif() << 41;
    QTest::newRow("largest segment") << soi() << 65527;
}

// Only the payload is written.
void tst_QExifImageHeader::savePadsInPlace()
{
    QFETCH(QByteArray, head);
    QFETCH(int, oldBlock);
    WatchedBuffer buffer;
    buffer.setData(head + exifSegment(QByteArray(oldBlock, 'x')) + scan());
    buffer.open(QIODevice::ReadWrite);
    Header header;
    fillWithOrientation(&header);
    QVERIFY(header.saveToJpeg(&buffer));
    const QVector<QPair<qint64, qint64>> writes = {{head.size() + 4, oldBlock + 6}};
    QCOMPARE(buffer.writes, writes);
    QCOMPARE(buffer.data(),
             head + exifSegment(orientationBlock() + QByteArray(oldBlock - 40, '\0')) + scan());
}

void tst_QExifImageHeader::saveRefuses_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("one byte") << hex("FF");
    QTest::newRow("not a JPEG") << QByteArray("GIF89a and more");
    QTest::newRow("SOI alone") << soi();
    QTest::newRow("half a marker") << soi() + hex("FF");
    QTest::newRow("no length") << soi() + hex("FFE1");
    QTest::newRow("half a length") << soi() + hex("FFE1 00");
    QTest::newRow("SOI and EOI") << soi() + hex("FFD9");
    QTest::newRow("nothing behind JFIF") << soi() + jfif();
    QTest::newRow("half a marker behind JFIF") << soi() + jfif() + hex("FF");
    QTest::newRow("no length behind JFIF") << soi() + jfif() + hex("FFE1");
    QTest::newRow("JFIF cut short") << soi() + jfif().left(12);
}

void tst_QExifImageHeader::saveRefuses()
{
    QFETCH(QByteArray, file);
    LogCapture log;
    Header header;
    fillWithOrientation(&header);
    WatchedBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadWrite);
    QVERIFY(!header.saveToJpeg(&buffer));
    QCOMPARE(buffer.data(), file);
    QVERIFY(buffer.writes.isEmpty());
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    QVERIFY(makeFile(fileName, file));
    QVERIFY(!header.saveToJpeg(fileName));
    QCOMPARE(contentOf(fileName), file);
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeader::saveRefusesDevice()
{
    LogCapture log;
    Header header;
    fillWithOrientation(&header);
    const QByteArray file = soi() + jfif() + dqt() + scan();
    QVERIFY(!header.saveToJpeg(static_cast<QIODevice*>(nullptr)));
    SequentialDevice sequential;
    sequential.content = file;
    sequential.open(QIODevice::ReadWrite);
    QVERIFY(!header.saveToJpeg(&sequential));
    QCOMPARE(sequential.content, file);
    const QIODevice::OpenMode modes[] = {QIODevice::NotOpen, QIODevice::ReadOnly,
                                         QIODevice::ReadWrite | QIODevice::Append};
    for (const QIODevice::OpenMode mode : modes) {
        QBuffer buffer;
        buffer.setData(file);
        if (mode != QIODevice::NotOpen)
            buffer.open(mode);
        QVERIFY(!header.saveToJpeg(&buffer));
        QCOMPARE(buffer.data(), file);
    }
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    QVERIFY(makeFile(fileName, file));
    QFile writeOnly(fileName);
    QVERIFY(writeOnly.open(QIODevice::WriteOnly | QIODevice::Append));
    QVERIFY(!header.saveToJpeg(&writeOnly));
    writeOnly.close();
    QCOMPARE(contentOf(fileName), file);
    QVERIFY(log.records().isEmpty());
}

// The block of a header with one value of raw bytes: 26 + 2 + 12 and the bytes, which begin 2 bytes
// after what their offset says.
static int blockSizeWith(int rawBytes)
{
    return 40 + rawBytes;
}

void tst_QExifImageHeader::saveRefusesLargeBlock()
{
    Header header;
    const int tooMany = 65533 - 6 - blockSizeWith(0) + 1;
    header.setValue(Header::MakerNote, QExifValue(QByteArray(tooMany, 'x')));
    QCOMPARE(written(header).size(), 65528);
    for (const QByteArray& file : {soi() + exifSegment("old") + scan(), soi() + jfif() + scan(),
                                   soi() + exifSegment(QByteArray(65527, 'x')) + scan()}) {
        WatchedBuffer buffer;
        buffer.setData(file);
        buffer.open(QIODevice::ReadWrite);
        QVERIFY(!header.saveToJpeg(&buffer));
        QCOMPARE(buffer.data(), file);
        QVERIFY(buffer.writes.isEmpty());
    }
}

void tst_QExifImageHeader::saveTakesLargestBlock()
{
    Header header;
    const int asMany = 65533 - 6 - blockSizeWith(0);
    header.setValue(Header::MakerNote, QExifValue(QByteArray(asMany, 'x')));
    const QByteArray block = written(header);
    QCOMPARE(block.size(), 65527);
    QBuffer buffer;
    buffer.setData(soi() + jfif() + scan());
    buffer.open(QIODevice::ReadWrite);
    QVERIFY(header.saveToJpeg(&buffer));
    QCOMPARE(buffer.data(), soi() + jfif() + hex("FFE1 FFFF") + exifPayload(block) + scan());
}

void tst_QExifImageHeader::saveFileErrors()
{
    LogCapture log;
    QTemporaryDir folder;
    Header header;
    fillWithOrientation(&header);
    const QString missing = folder.filePath(QStringLiteral("missing.jpg"));
    QVERIFY(!header.saveToJpeg(missing));
    QVERIFY(!QFile::exists(missing));
    QVERIFY(!header.saveToJpeg(folder.path()));
    QVERIFY(!header.saveToJpeg(QString()));
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeader::saveFailedWrite_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("in place") << soi() + exifSegment(QByteArray(500, 'x')) + scan();
    QTest::newRow("grows") << soi() + exifSegment("small") + dqt() + scan();
    QTest::newRow("inserted") << soi() + jfif() + dqt() + scan();
}

// A device that refuses a write, at whatever byte, then takes what is put back.
void tst_QExifImageHeader::saveFailedWrite()
{
    QFETCH(QByteArray, file);
    Header header;
    fillWithOrientation(&header);
    QBuffer whole;
    whole.setData(file);
    whole.open(QIODevice::ReadWrite);
    QVERIFY(header.saveToJpeg(&whole));
    const int toWrite = qMax(file.size(), whole.data().size());
    int failures = 0;
    for (int capacity = 0; capacity < toWrite + 1; ++capacity) {
        WatchedBuffer buffer;
        buffer.setData(file);
        buffer.open(QIODevice::ReadWrite);
        buffer.capacity = capacity;
        buffer.failsOnce = true;
        if (header.saveToJpeg(&buffer)) {
            QCOMPARE(buffer.data(), whole.data());
            continue;
        }
        ++failures;
        // A buffer cannot be cut back; every byte of before is there.
        QCOMPARE(buffer.data().left(file.size()), file);
    }
    QVERIFY(failures > 40);
}

void tst_QExifImageHeader::saveFailedRead_data()
{
    saveFailedWrite_data();
}

// A device that refuses one read or one seek, whichever.
void tst_QExifImageHeader::saveFailedRead()
{
    QFETCH(QByteArray, file);
    Header header;
    fillWithOrientation(&header);
    int failing = 0;
    for (;; ++failing) {
        FaultyBuffer buffer(file, failing);
        const bool isSaved = header.saveToJpeg(&buffer);
        QCOMPARE(isSaved, !buffer.hasFailed());
        if (isSaved)
            break;
        // A buffer cannot be cut back; every byte of before is there.
        QCOMPARE(buffer.data().left(file.size()), file);
    }
    QVERIFY(failing > 5);
}

void tst_QExifImageHeader::saveOnFullDisk()
{
#ifdef Q_OS_UNIX
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    const QByteArray file = soi() + jfif() + dqt() + QByteArray(100000, 'x') + scan();
    Header header;
    fillWithOrientation(&header);
    for (const int room : {0, 1, 49}) { // 50 bytes are needed
        QVERIFY(makeFile(fileName, file));
        bool saved = true;
        {
            const FileSizeLimit limit(file.size() + room);
            saved = header.saveToJpeg(fileName);
        }
        QVERIFY(!saved);
        QVERIFY(contentOf(fileName) == file);
    }
    {
        const FileSizeLimit limit(file.size() + 50);
        QVERIFY(header.saveToJpeg(fileName));
    }
    QCOMPARE(contentOf(fileName).size(), file.size() + 50);
#else
    QSKIP("a limit of the file size is set with setrlimit()");
#endif
}

// The JPEG is the whole device: also right after it was loaded from it.
void tst_QExifImageHeader::saveIgnoresPosition()
{
    QBuffer buffer;
    buffer.setData(soi() + exifSegment(fullBlock(little)) + scan());
    buffer.open(QIODevice::ReadWrite);
    Header header;
    QVERIFY(header.loadFromJpeg(&buffer));
    QVERIFY(buffer.pos() != 0);
    header.setValue(Header::Orientation, QExifValue(quint16(3)));
    QVERIFY(header.saveToJpeg(&buffer));
    buffer.seek(0);
    QCOMPARE(Header(&buffer).value(Header::Orientation).toShort(), quint16(3));

    // A JPEG further back is not one that begins the device.
    const QByteArray content = "prefix" + soi() + jfif() + scan();
    QBuffer embedded;
    embedded.setData(content);
    embedded.open(QIODevice::ReadWrite);
    embedded.seek(6);
    QVERIFY(!header.saveToJpeg(&embedded));
    QCOMPARE(embedded.data(), content);
}

#ifdef Q_OS_UNIX

/// What the system tells of a file.
static struct stat statusOf(const QString& fileName)
{
    struct stat status = {};
    if (stat(QFile::encodeName(fileName).constData(), &status) != 0)
        qFatal("no status of %s", qPrintable(fileName));
    return status;
}

static QStringList everythingIn(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System
                                  | QDir::NoDotAndDotDot);
}

/// A file that a new segment makes longer, and what saving the header of fillWithOrientation()
/// makes of it.
static QByteArray shortFile()
{
    return soi() + jfif() + scan();
}
static QByteArray shortFileSaved()
{
    return soi() + jfif() + exifSegment(orientationBlock()) + scan();
}

void tst_QExifImageHeader::saveReplacesFile_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<bool>("replaced");

    const auto padded = [](int size) { return orientationBlock() + QByteArray(size - 40, '\0'); };
    const auto withX = [](QByteArray bytes, const QVector<int>& positions) {
        for (const int position : positions)
            bytes[position] = 'x';
        return bytes;
    };
    QTest::newRow("inserted") << shortFile() << shortFileSaved() << true;
    QTest::newRow("grows") << soi() + exifSegment("small") + scan()
                           << soi() + exifSegment(orientationBlock()) + scan() << true;
    QTest::newRow("grows, large file")
        << soi() + exifSegment("small") + QByteArray(1000003, 's')
        << soi() + exifSegment(orientationBlock()) + QByteArray(1000003, 's') << true;
    QTest::newRow("same size") << soi() + exifSegment(QByteArray(40, 'x')) + scan()
                               << soi() + exifSegment(orientationBlock()) + scan() << false;
    // SOI, marker, length and "Exif" with its NULs take 12 bytes.
    QTest::newRow("up to the end of a block of 4096 bytes")
        << soi() + exifSegment(QByteArray(4096 - 12, 'x')) + scan()
        << soi() + exifSegment(padded(4096 - 12)) + scan() << false;
    QTest::newRow("one byte beyond") << soi() + exifSegment(QByteArray(4097 - 12, 'x')) + scan()
                                     << soi() + exifSegment(padded(4097 - 12)) + scan() << true;
    const QByteArray wanted = soi() + exifSegment(padded(9000)) + scan();
    QTest::newRow("in the second block alone") << withX(wanted, {4096, 8191}) << wanted << false;
    QTest::newRow("on both sides of a border") << withX(wanted, {4095, 4096}) << wanted << true;
    QTest::newRow("at both ends") << withX(wanted, {20, 9011}) << wanted << true;
    QTest::newRow("last byte of the segment") << withX(wanted, {9011}) << wanted << false;
    QTest::newRow("EXIF cut short by the end, length corrected")
        << soi() + Laid(big).u16(0xFFE1).u16(4096).all() + exifPayload(QByteArray(40, 'x'))
        << soi() + exifSegment(orientationBlock()) << false;
}

// Bytes within one block are written into the file. Whatever a killed process could leave half done
// comes with a new file.
void tst_QExifImageHeader::saveReplacesFile()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QFETCH(bool, replaced);
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    QVERIFY(makeFile(fileName, before));
    const ino_t old = statusOf(fileName).st_ino;
    // A file that is open keeps its number, which no other can have then.
    QFile open(fileName);
    QVERIFY(open.open(QIODevice::ReadOnly));

    Header header;
    fillWithOrientation(&header);
    QVERIFY(header.saveToJpeg(fileName));
    QVERIFY(contentOf(fileName) == after);
    QCOMPARE(statusOf(fileName).st_ino != old, replaced);
    QVERIFY(open.readAll() == (replaced ? before : after));
    QCOMPARE(everythingIn(folder.path()), QStringList(QStringLiteral("file.jpg")));
}

// What is there already is not written again.
void tst_QExifImageHeader::saveLeavesSameFile()
{
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    for (const QByteArray& block : {orientationBlock(), orientationBlock() + QByteArray(9000, 0)}) {
        const QByteArray file = soi() + exifSegment(block) + scan();
        QVERIFY(makeFile(fileName, file));
        const utimbuf longAgo = {1000000000, 1000000000};
        QCOMPARE(utime(QFile::encodeName(fileName).constData(), &longAgo), 0);
        const ino_t number = statusOf(fileName).st_ino;
        Header header;
        fillWithOrientation(&header);
        QVERIFY(header.saveToJpeg(fileName));
        QVERIFY(contentOf(fileName) == file);
        QCOMPARE(statusOf(fileName).st_mtime, time_t(1000000000));
        QCOMPARE(statusOf(fileName).st_ino, number);

        header.setValue(Header::Orientation, QExifValue(quint16(3)));
        QVERIFY(header.saveToJpeg(fileName));
        QVERIFY(statusOf(fileName).st_mtime > time_t(1000000000));
    }
}

void tst_QExifImageHeader::saveFollowsLink()
{
    QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("photos")));
    const QString photo = folder.filePath(QStringLiteral("photos/file.jpg"));
    const QString link = folder.filePath(QStringLiteral("link.jpg"));
    const QString linkToLink = folder.filePath(QStringLiteral("second.jpg"));
    QVERIFY(makeFile(photo, shortFile()));
    QCOMPARE(symlink("photos/file.jpg", QFile::encodeName(link).constData()), 0);
    QCOMPARE(symlink("link.jpg", QFile::encodeName(linkToLink).constData()), 0);
    Header header;
    fillWithOrientation(&header);
    QVERIFY(header.saveToJpeg(linkToLink));
    QCOMPARE(contentOf(photo).toHex(), shortFileSaved().toHex());
    QVERIFY(!QFileInfo(photo).isSymLink());
    QCOMPARE(QFileInfo(link).symLinkTarget(), QFileInfo(photo).absoluteFilePath());
    QCOMPARE(QFileInfo(linkToLink).symLinkTarget(), QFileInfo(link).absoluteFilePath());
    QCOMPARE(everythingIn(folder.path()).size(), 3);
    QCOMPARE(everythingIn(folder.filePath(QStringLiteral("photos"))).size(), 1);
}

// All names of a file show what was saved.
void tst_QExifImageHeader::saveKeepsNames()
{
    QTemporaryDir folder;
    const QString one = folder.filePath(QStringLiteral("one.jpg"));
    const QString other = folder.filePath(QStringLiteral("other.jpg"));
    QVERIFY(makeFile(one, shortFile()));
    QCOMPARE(link(QFile::encodeName(one).constData(), QFile::encodeName(other).constData()), 0);
    Header header;
    fillWithOrientation(&header);
    QVERIFY(header.saveToJpeg(one));
    QCOMPARE(contentOf(one).toHex(), shortFileSaved().toHex());
    QCOMPARE(contentOf(other).toHex(), shortFileSaved().toHex());
    QCOMPARE(statusOf(one).st_ino, statusOf(other).st_ino);
    QCOMPARE(everythingIn(folder.path()).size(), 2);
}

void tst_QExifImageHeader::saveKeepsPermissions_data()
{
    QTest::addColumn<int>("permissions");
    for (const int permissions : {0600, 0640, 0604, 0666, 0755, 0700})
        QTest::newRow(QByteArray::number(permissions, 8).constData()) << permissions;
}

void tst_QExifImageHeader::saveKeepsPermissions()
{
    QFETCH(int, permissions);
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    QVERIFY(makeFile(fileName, shortFile()));
    QCOMPARE(chmod(QFile::encodeName(fileName).constData(), mode_t(permissions)), 0);
    Header header;
    fillWithOrientation(&header);
    QVERIFY(header.saveToJpeg(fileName));
    QCOMPARE(contentOf(fileName).toHex(), shortFileSaved().toHex());
    QCOMPARE(int(statusOf(fileName).st_mode & 07777), permissions);
}

// The superuser can give files away, and does.
void tst_QExifImageHeader::saveKeepsOwner()
{
    if (geteuid() != 0)
        QSKIP("only root owns files of others");
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    QVERIFY(makeFile(fileName, shortFile()));
    QCOMPARE(chown(QFile::encodeName(fileName).constData(), 12345, 23456), 0);
    QCOMPARE(chmod(QFile::encodeName(fileName).constData(), 0640), 0);
    const ino_t old = statusOf(fileName).st_ino;
    QFile open(fileName);
    QVERIFY(open.open(QIODevice::ReadOnly));
    Header header;
    fillWithOrientation(&header);
    QVERIFY(header.saveToJpeg(fileName));
    QCOMPARE(contentOf(fileName).toHex(), shortFileSaved().toHex());
    const struct stat status = statusOf(fileName);
    QVERIFY(status.st_ino != old);
    QCOMPARE(status.st_uid, uid_t(12345));
    QCOMPARE(status.st_gid, gid_t(23456));
    QCOMPARE(int(status.st_mode & 07777), 0640);
}

// A folder that takes no new file: the photograph is written itself.
void tst_QExifImageHeader::saveInForeignFolder()
{
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    QVERIFY(makeFile(fileName, shortFile()));
    QCOMPARE(chmod(QFile::encodeName(fileName).constData(), 0666), 0);
    const ino_t old = statusOf(fileName).st_ino;
    QCOMPARE(chmod(QFile::encodeName(folder.path()).constData(), 0555), 0);
    bool saved = false;
    {
        const OrdinaryUser ordinary;
        Header header;
        fillWithOrientation(&header);
        saved = header.saveToJpeg(fileName);
    }
    QCOMPARE(chmod(QFile::encodeName(folder.path()).constData(), 0700), 0);
    QVERIFY(saved);
    QCOMPARE(contentOf(fileName).toHex(), shortFileSaved().toHex());
    QCOMPARE(statusOf(fileName).st_ino, old);
}

// A photograph of somebody else stays his.
void tst_QExifImageHeader::saveOfForeignFile()
{
    if (geteuid() != 0)
        QSKIP("only root makes files of others");
    QTemporaryDir folder;
    QCOMPARE(chmod(QFile::encodeName(folder.path()).constData(), 0777), 0);
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    QVERIFY(makeFile(fileName, shortFile()));
    QCOMPARE(chmod(QFile::encodeName(fileName).constData(), 0666), 0);
    const ino_t old = statusOf(fileName).st_ino;
    {
        const OrdinaryUser ordinary;
        Header header;
        fillWithOrientation(&header);
        QVERIFY(header.saveToJpeg(fileName));
    }
    QCOMPARE(contentOf(fileName).toHex(), shortFileSaved().toHex());
    QCOMPARE(statusOf(fileName).st_ino, old);
    QCOMPARE(statusOf(fileName).st_uid, uid_t(0));
    QCOMPARE(everythingIn(folder.path()).size(), 1);
}

// Beside a name of the greatest length there is no room for a longer one.
void tst_QExifImageHeader::saveOfLongName()
{
    QTemporaryDir folder;
    const QString fileName =
        folder.filePath(QString(251, QLatin1Char('n')) + QStringLiteral(".jpg"));
    QVERIFY(makeFile(fileName, shortFile()));
    Header header;
    fillWithOrientation(&header);
    QVERIFY(header.saveToJpeg(fileName));
    QCOMPARE(contentOf(fileName).toHex(), shortFileSaved().toHex());
    QCOMPARE(everythingIn(folder.path()).size(), 1);
}

#endif // Q_OS_UNIX

#ifdef Q_OS_LINUX

/// Null where there is none.
static QByteArray attributeOf(const QByteArray& path, const char* name)
{
    std::array<char, 2000> value;
    const ssize_t size = getxattr(path.constData(), name, value.data(), value.size());
    return size < 0 ? QByteArray() : QByteArray(value.data(), int(size));
}

void tst_QExifImageHeader::saveKeepsAttributes()
{
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    const QByteArray path = QFile::encodeName(fileName);
    QVERIFY(makeFile(fileName, shortFile()));
    const QByteArray longValue(1000, 'v');
    if (setxattr(path.constData(), "user.comment", "a note", 6, 0) != 0 && errno == ENOTSUP)
        QSKIP("this file system has no extended attributes");
    QCOMPARE(setxattr(path.constData(), "user.empty", "", 0, 0), 0);
    QCOMPARE(setxattr(path.constData(), "user.long", longValue.constData(), 1000, 0), 0);
    Header header;
    fillWithOrientation(&header);
    QVERIFY(header.saveToJpeg(fileName));
    QCOMPARE(contentOf(fileName).toHex(), shortFileSaved().toHex());
    QCOMPARE(attributeOf(path, "user.comment"), QByteArray("a note"));
    QCOMPARE(attributeOf(path, "user.empty"), QByteArray(""));
    QCOMPARE(attributeOf(path, "user.long"), longValue);
}

/// An access list as Linux keeps it: the owner's rights, those of user 1000, of the group, the
/// mask, and of all others.
static QByteArray accessList(unsigned owner, unsigned user1000, unsigned group, unsigned others)
{
    const quint32 nobody = 0xFFFFFFFF;
    Laid list(little);
    list.u32(2);
    list.u16(0x01).u16(owner).u32(nobody);
    list.u16(0x02).u16(user1000).u32(1000);
    list.u16(0x04).u16(group).u32(nobody);
    list.u16(0x10).u16(user1000 | group).u32(nobody);
    list.u16(0x20).u16(others).u32(nobody);
    return list.all();
}

// The access list of the file, not the one that its folder gives to new files.
void tst_QExifImageHeader::saveKeepsAccessList()
{
    QTemporaryDir folder;
    const QByteArray folderPath = QFile::encodeName(folder.path());
    const QString listed = folder.filePath(QStringLiteral("listed.jpg"));
    const QString plain = folder.filePath(QStringLiteral("plain.jpg"));
    QVERIFY(makeFile(listed, shortFile()));
    QVERIFY(makeFile(plain, shortFile()));
    QCOMPARE(chmod(QFile::encodeName(plain).constData(), 0640), 0);
    const char* const access = "system.posix_acl_access";
    const QByteArray own = accessList(6, 4, 4, 0);
    const QByteArray ofFolder = accessList(7, 7, 7, 7);
    if (setxattr(QFile::encodeName(listed).constData(), access, own.constData(), size_t(own.size()),
                 0)
            != 0
        && errno == ENOTSUP)
        QSKIP("this file system has no access lists");
    QCOMPARE(setxattr(folderPath.constData(), "system.posix_acl_default", ofFolder.constData(),
                      size_t(ofFolder.size()), 0),
             0);
    Header header;
    fillWithOrientation(&header);
    for (const QString& fileName : {listed, plain}) {
        QVERIFY(header.saveToJpeg(fileName));
        QCOMPARE(contentOf(fileName).toHex(), shortFileSaved().toHex());
        QCOMPARE(int(statusOf(fileName).st_mode & 07777), 0640);
    }
    QCOMPARE(attributeOf(QFile::encodeName(listed), access).toHex(), own.toHex());
    QVERIFY(attributeOf(QFile::encodeName(plain), access).isNull());
}

#endif // Q_OS_LINUX

/// A block whose IFD1 has a JPEG and the given entry of Orientation (type, count, value).
static QByteArray blockWithThumbnail(const QByteArray& jpeg, const QByteArray& orientationRest)
{
    // 8: no entries, IFD1 at 14; 14: three entries, no next one; 56: the JPEG
    return Laid(little)
        .tiff()
        .u16(0)
        .u32(14)
        .u16(3)
        .u16(0x0112)
        .raw(orientationRest)
        .entry(0x0201, 4, 1, 56)
        .entry(0x0202, 4, 1, quint32(jpeg.size()))
        .u32(0)
        .raw(jpeg);
}

/// A picture of 32 x 16 that no turning or mirroring leaves as it is.
static QByteArray thumbnailJpeg()
{
    QImage image(32, 16, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x * 8, y * 16, x < 16 && y < 8 ? 255 : 0));
    }
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPG");
    return jpeg;
}

void tst_QExifImageHeader::thumbnailOrientation_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<QString>("row0"); // the side of the upright picture at which row 0 is stored
    QTest::addColumn<QString>("column0");
    const auto row = [](int orientation, const char* row0, const char* column0) {
        QTest::newRow(qPrintable(QString::number(orientation)))
            << orientation << QString::fromLatin1(row0) << QString::fromLatin1(column0);
    };
    row(1, "top", "left");
    row(2, "top", "right");
    row(3, "bottom", "right");
    row(4, "bottom", "left");
    row(5, "left", "top");
    row(6, "right", "top");
    row(7, "right", "bottom");
    row(8, "left", "bottom");
    row(0, "top", "left");
    row(9, "top", "left");
}

void tst_QExifImageHeader::thumbnailOrientation()
{
    QFETCH(int, orientation);
    QFETCH(QString, row0);
    QFETCH(QString, column0);
    const QByteArray jpeg = thumbnailJpeg();
    const QImage stored = QImage::fromData(jpeg, "JPG").convertToFormat(QImage::Format_RGB32);
    QCOMPARE(stored.size(), QSize(32, 16));

    const bool rowsAreColumns = row0 == QLatin1String("left") || row0 == QLatin1String("right");
    QImage upright(rowsAreColumns ? QSize(16, 32) : QSize(32, 16), QImage::Format_RGB32);
    for (int row = 0; row < stored.height(); ++row) {
        for (int column = 0; column < stored.width(); ++column) {
            QPoint at;
            const auto place = [&at, &upright](const QString& side, int distance) {
                if (side == QLatin1String("top"))
                    at.setY(distance);
                else if (side == QLatin1String("bottom"))
                    at.setY(upright.height() - 1 - distance);
                else if (side == QLatin1String("left"))
                    at.setX(distance);
                else
                    at.setX(upright.width() - 1 - distance);
            };
            place(row0, row);
            place(column0, column);
            upright.setPixel(at, stored.pixel(column, row));
        }
    }

    const QByteArray asShort = Laid(little).u16(3).u32(1).u16(unsigned(orientation)).u16(0);
    Header header;
    QVERIFY(readBlock(&header, blockWithThumbnail(jpeg, asShort)));
    QCOMPARE(header.thumbnail().convertToFormat(QImage::Format_RGB32), upright);
    const QByteArray asByte =
        Laid(little).u16(1).u32(1).raw(QByteArray(1, char(orientation))).raw(QByteArray(3, '\0'));
    QVERIFY(readBlock(&header, blockWithThumbnail(jpeg, asByte)));
    QCOMPARE(header.thumbnail().convertToFormat(QImage::Format_RGB32), upright);
}

void tst_QExifImageHeader::thumbnailOrientationOfOtherKind_data()
{
    QTest::addColumn<QByteArray>("rest");
    QTest::newRow("Long") << hex("0400 01000000 06000000");
    QTest::newRow("SignedLong") << hex("0900 01000000 06000000");
    QTest::newRow("two Shorts") << hex("0300 02000000 06000600");
    QTest::newRow("two Bytes") << hex("0100 02000000 06060000");
    QTest::newRow("no Short") << hex("0300 00000000 06000000");
    QTest::newRow("Undefined") << hex("0700 01000000 06000000");
    QTest::newRow("Ascii") << hex("0200 02000000 36000000");
}

void tst_QExifImageHeader::thumbnailOrientationOfOtherKind()
{
    QFETCH(QByteArray, rest);
    const QByteArray jpeg = thumbnailJpeg();
    Header header;
    QVERIFY(readBlock(&header, blockWithThumbnail(jpeg, rest)));
    QCOMPARE(header.thumbnail(), QImage::fromData(jpeg, "JPG"));
}

void tst_QExifImageHeader::setThumbnail()
{
    const QByteArray jpeg = thumbnailJpeg();
    Header header;
    QVERIFY(readBlock(&header, blockWithThumbnail(jpeg, hex("0300 01000000 06000000"))));
    QCOMPARE(header.thumbnail().size(), QSize(16, 32));

    QImage image(20, 10, QImage::Format_RGB32);
    image.fill(QColor(200, 30, 40));
    header.setThumbnail(image);
    // Upright as given: the old orientation is forgotten.
    const QImage back = header.thumbnail();
    QCOMPARE(back.size(), QSize(20, 10));
    QVERIFY(qAbs(qRed(back.pixel(5, 5)) - 200) < 6);
    QVERIFY(qAbs(qGreen(back.pixel(5, 5)) - 30) < 6);

    header.setThumbnail(QImage());
    QVERIFY(header.thumbnail().isNull());
    QCOMPARE(header.size(), 28);

    // Too wide for a JPEG: as if there were none.
    LogCapture log; // of the image format
    header.setThumbnail(QImage(70000, 1, QImage::Format_RGB32));
    QVERIFY(header.thumbnail().isNull());
    QCOMPARE(header.size(), 28);
}

// A JPEG whose header claims a size that so few bytes cannot hold is not decoded.
void tst_QExifImageHeader::thumbnailThatCannotBe()
{
    QByteArray jpeg = thumbnailJpeg();
    const int frame = jpeg.indexOf(hex("FFC0"));
    QVERIFY(frame > 0);
    jpeg.replace(frame + 5, 4, hex("FFDC FFDC")); // height and width 65500
    Header header;
    QVERIFY(readBlock(&header, blockWithThumbnail(jpeg, hex("0300 01000000 06000000"))));
    QVERIFY(header.thumbnail().isNull());

    QVERIFY(readBlock(&header, fullBlock(little)));
    QVERIFY(header.thumbnail().isNull());
    QVERIFY(Header().thumbnail().isNull());
}

void tst_QExifImageHeader::mutations_data()
{
    QTest::addColumn<QByteArray>("block");
    QTest::newRow("II") << fullBlock(little);
    QTest::newRow("MM") << fullBlock(big);
    QTest::newRow("with a real thumbnail")
        << blockWithThumbnail(thumbnailJpeg(), hex("0300 01000000 06000000"));
    Header header;
    QImage image(16, 16, QImage::Format_RGB32);
    image.fill(Qt::green);
    header.setThumbnail(image);
    fillWithOrientation(&header);
    header.setValue(Header::UserComment,
                    QExifValue(QStringLiteral("comment"), QExifValue::UnicodeEncoding));
    header.setValue(Header::GPSDateStamp, QExifValue(QStringLiteral("2020:01:01")));
    QTest::newRow("written by us") << written(header);
}

// Thousands of damaged blocks: each is read, shown, written and saved without harm.
void tst_QExifImageHeader::mutations()
{
    QFETCH(QByteArray, block);
    LogCapture log; // of unknown types and of the JPEG library
    std::mt19937 random(20260101);
    const auto below = [&random](int end) { return int(random() % unsigned(end)); };
    const QByteArray interesting = hex("00 01 04 07 08 7F 80 FE FF");
    for (int round = 0; round < 4000; ++round) {
        QByteArray damaged = block;
        if (round % 4 == 0)
            damaged.truncate(below(block.size() + 1));
        for (int flips = 1 + below(6); flips > 0 && !damaged.isEmpty(); --flips) {
            // Every second one in the first directories, where the structure is.
            const int at = below(flips % 2 ? qMin(damaged.size(), 120) : damaged.size());
            damaged[at] = random() % 2 ? interesting.at(below(interesting.size()))
                                       : char(damaged.at(at) ^ char(1 << below(8)));
        }

        QBuffer buffer;
        buffer.setData(soi() + exifSegment(damaged) + scan());
        buffer.open(QIODevice::ReadWrite);
        Header header;
        const bool loaded = header.loadFromJpeg(&buffer);
        QCOMPARE(buffer.data().size(), damaged.size() + 12 + scan().size());

        qint64 held = 0;
        const auto hold = [&held](const QExifValue& value) {
            held += value.toByteVector().size() + value.toByteArray().size()
                + 2 * value.toShortVector().size() + 4 * value.toLongVector().size()
                + 4 * value.toSignedLongVector().size() + 8 * value.toRationalVector().size()
                + 8 * value.toSignedRationalVector().size();
            value.toString();
            value.toDateTime();
        };
        for (const Header::ImageTag tag : header.imageTags())
            hold(header.value(tag));
        for (const Header::ExifExtendedTag tag : header.extendedTags())
            hold(header.value(tag));
        for (const Header::GpsTag tag : header.gpsTags())
            hold(header.value(tag));
        QVERIFY2(held <= 3 * 17 * damaged.size(), qPrintable(QString::number(round)));
        if (round % 16 == 0)
            header.thumbnail();

        QVERIFY(loaded || header.imageTags().isEmpty());
        // The gap of a directory that is held three times stays far from a segment's limit.
        QVERIFY(header.saveToJpeg(&buffer));
        QVERIFY(buffer.data().startsWith(soi() + hex("FFE1")));
        QVERIFY(buffer.data().endsWith(scan()));
        QVERIFY(written(header).size() <= 65533);
    }
}

// A picture made here, tags set, judged by others.
void tst_QExifImageHeader::readers()
{
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("made.jpg"));
    QImage image(64, 48, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QVERIFY(image.save(fileName, "JPG"));
    Header header;
    header.setValue(Header::Make, QExifValue(QStringLiteral("Orva Optics")));
    header.setValue(Header::Orientation, QExifValue(quint16(6)));
    header.setValue(Header::XResolution, QExifValue(UnsignedPair(300, 1)));
    header.setValue(Header::Artist, QExifValue(QStringLiteral("Andr\u00e9")));
    header.setValue(Header::DateTime, QExifValue(QDateTime(QDate(2020, 2, 29), QTime(12, 34, 56))));
    header.setValue(Header::Flash, QExifValue(quint16(1))); // fits into its entry
    header.setValue(Header::GPSLatitudeRef, QExifValue(QStringLiteral("N")));
    header.setThumbnail(image.scaled(16, 12));
    QVERIFY(header.saveToJpeg(fileName));
    QCOMPARE(QImage(fileName), QImage::fromData(contentOf(fileName), "JPG"));

    const QString exiftool = QStandardPaths::findExecutable(QStringLiteral("exiftool"));
    const QString exiv2 = QStandardPaths::findExecutable(QStringLiteral("exiv2"));
    if (exiftool.isEmpty() || exiv2.isEmpty())
        QSKIP("exiftool and exiv2, which judge the file, are not both installed");
    const QByteArray json =
        outputOf(exiftool,
                 {QStringLiteral("-j"), QStringLiteral("-n"), QStringLiteral("-G1"),
                  QStringLiteral("-charset"), QStringLiteral("exif=latin1"), QStringLiteral("-b"),
                  QStringLiteral("-a"), QStringLiteral("-u"), QStringLiteral("-IFD0:all"),
                  QStringLiteral("-IFD1:all"), QStringLiteral("-ExifIFD:Flash"),
                  QStringLiteral("-GPS:GPSLatitudeRef"), fileName});
    const QJsonObject tags = QJsonDocument::fromJson(json).array().first().toObject();
    QCOMPARE(tags[QStringLiteral("IFD0:Make")].toString(), QStringLiteral("Orva Optics"));
    QCOMPARE(tags[QStringLiteral("IFD0:Orientation")].toInt(), 6);
    QCOMPARE(tags[QStringLiteral("IFD0:XResolution")].toInt(), 300);
    QCOMPARE(tags[QStringLiteral("IFD0:Artist")].toString(), QStringLiteral("Andr\u00e9"));
    QCOMPARE(tags[QStringLiteral("IFD0:ModifyDate")].toString(),
             QStringLiteral("2020:02:29 12:34:56"));
    QCOMPARE(tags[QStringLiteral("ExifIFD:Flash")].toInt(), 1);
    QCOMPARE(tags[QStringLiteral("GPS:GPSLatitudeRef")].toString(), QStringLiteral("N"));
    QCOMPARE(tags[QStringLiteral("IFD1:Compression")].toInt(), 6);
    QCOMPARE(tags[QStringLiteral("IFD1:XResolution")].toInt(), 72);
    QCOMPARE(tags[QStringLiteral("IFD1:ResolutionUnit")].toInt(), 2);
    const QByteArray values = outputOf(
        exiv2,
        {QStringLiteral("-PEkv"), QStringLiteral("-g"), QStringLiteral("Exif.Image.Orientation"),
         QStringLiteral("-g"), QStringLiteral("Exif.Image.Make"), fileName});
    QVERIFY2(values.simplified().contains("Exif.Image.Orientation 6"), values.constData());
    QVERIFY2(values.simplified().contains("Exif.Image.Make Orva Optics"), values.constData());
    const QByteArray thumbnail =
        outputOf(exiftool, {QStringLiteral("-b"), QStringLiteral("-ThumbnailImage"), fileName});
    QCOMPARE(QImage::fromData(thumbnail, "JPG").size(), QSize(16, 12));
}

/// A value as it stands in a file, which is what the readers report; count() bytes of a text.
static QByteArray inFile(const QExifValue& value, QDataStream::ByteOrder order)
{
    Laid laid(order);
    switch (value.type()) {
    case QExifValue::Byte:
        for (const quint8 item : value.toByteVector())
            laid.raw(QByteArray(1, char(item)));
        break;
    case QExifValue::Ascii:
        laid.raw(value.toByteArray() + '\0');
        break;
    case QExifValue::Short:
        for (const quint16 item : value.toShortVector())
            laid.u16(item);
        break;
    case QExifValue::Long:
        for (const quint32 item : value.toLongVector())
            laid.u32(item);
        break;
    case QExifValue::SignedLong:
        for (const qint32 item : value.toSignedLongVector())
            laid.u32(quint32(item));
        break;
    case QExifValue::Rational:
        for (const UnsignedPair& item : value.toRationalVector())
            laid.u32(item.first).u32(item.second);
        break;
    case QExifValue::SignedRational:
        for (const SignedPair& item : value.toSignedRationalVector())
            laid.u32(quint32(item.first)).u32(quint32(item.second));
        break;
    case QExifValue::Undefined:
        laid.raw(value.toByteArray());
        break;
    }
    return laid;
}

/// The bytes that the readers give for a tag, by their content or by length and digest.
struct ReportedBytes
{
    bool known = false;
    QByteArray bytes;
    int length = 0;
    QByteArray sha1;

    explicit ReportedBytes(const QJsonObject& tag)
    {
        for (const char* reader : {"exiftool", "libexif"}) {
            const QJsonValue value = tag[QLatin1String(reader)].toObject()[QStringLiteral("bytes")];
            if (value.isString()) {
                bytes = QByteArray::fromHex(value.toString().toLatin1());
                length = bytes.size();
                known = true;
                return;
            }
            if (value.isObject()) {
                length = value.toObject()[QStringLiteral("bytes")].toInt();
                sha1 = value.toObject()[QStringLiteral("sha1")].toString().toLatin1();
                known = true;
                return;
            }
        }
    }

    bool is(const QByteArray& other) const
    {
        if (sha1.isEmpty())
            return other == bytes;
        return other.size() == length
            && QCryptographicHash::hash(other, QCryptographicHash::Sha1).toHex() == sha1;
    }
};

/// Whether a value is what the readers say of its tag, as far as our own rules do not differ: the
/// reason why not, empty where all is well.
static QString differs(const QExifValue& value, const QJsonObject& reported,
                       QDataStream::ByteOrder order, const QByteArray& block)
{
    if (reported[QStringLiteral("disagree")].toBool()) {
        // The readers differ; the one that gives bytes has joined several segments. Ours is what
        // the first one holds of them: it ends where the segment ends.
        const ReportedBytes bytes(reported);
        const QByteArray text = value.toByteArray();
        return bytes.known && bytes.bytes.startsWith(text) && block.endsWith(text)
            ? QString()
            : QStringLiteral("not the beginning of what the readers joined");
    }
    const int type = reported[QStringLiteral("type")].toInt();
    const quint32 count = quint32(reported[QStringLiteral("count")].toDouble());
    const bool typeExists = (type >= 1 && type <= 5) || type == 7 || type == 9 || type == 10;
    if (!typeExists)
        return value.isNull() ? QString() : QStringLiteral("unknown type, but not null");
    if (value.type() != type)
        return QStringLiteral("type %1 instead of %2").arg(value.type()).arg(type);

    QByteArray ours = inFile(value, order);
    const ReportedBytes bytes(reported);
    if (type == QExifValue::Ascii && count == 0) // the text runs up to the first NUL
        return value.count() >= 1 && value.count() <= 5
                && !ours.left(ours.size() - 1).contains('\0')
            ? QString()
            : QStringLiteral("wrong text of count 0");
    if (value.count() != count) {
        // Only when it reaches past the end of the block: then it holds what there is.
        if (type == QExifValue::Ascii)
            ours.chop(1);
        return value.count() < count && bytes.known && bytes.bytes.startsWith(ours)
                && block.endsWith(ours)
            ? QString()
            : QStringLiteral("count %1 instead of %2").arg(value.count()).arg(count);
    }
    if (!bytes.known)
        return QString();
    if (type == QExifValue::Undefined && count < 5 && order == big) {
        // The four bytes of the entry, of which those behind the value are 0, come out reversed.
        QByteArray reversed = bytes.bytes.leftJustified(4, '\0');
        std::reverse(reversed.begin(), reversed.end());
        return ours == reversed.left(int(count)) ? QString() : QStringLiteral("not reversed");
    }
    if (type == QExifValue::Ascii && bytes.sha1.isEmpty()) {
        // The byte that ends a text is taken off without looking at it.
        return ours.left(ours.size() - 1) == bytes.bytes.left(bytes.length - 1)
            ? QString()
            : QStringLiteral("text %1").arg(QString::fromLatin1(ours.toHex()));
    }
    return bytes.is(ours) ? QString()
                          : QStringLiteral("bytes %1").arg(QString::fromLatin1(ours.toHex()));
}

/// The bytes of the last text in IFD0 of a little-endian block that stands under a tag which occurs
/// there more than once; nothing for other tags. Read here by hand, because the readers keep the
/// first one.
static QByteArray lastOfRepeatedText(const QByteArray& block, quint16 tag)
{
    if (!block.startsWith("II"))
        return QByteArray();
    const auto number = [&block](int at, int size) {
        quint32 value = 0;
        for (int i = size - 1; i >= 0; --i)
            value = value << 8 | uchar(block.at(at + i));
        return value;
    };
    const int ifd0 = int(number(4, 4));
    const int count = int(number(ifd0, 2));
    int occurrences = 0;
    QByteArray last;
    for (int at = ifd0 + 2; at < ifd0 + 2 + 12 * count; at += 12) {
        if (number(at, 2) != tag || number(at + 2, 2) != 2)
            continue;
        ++occurrences;
        last = block.mid(int(number(at + 8, 4)), int(number(at + 4, 4)));
    }
    return occurrences > 1 ? last : QByteArray();
}

static void addPhotoRows(const QJsonObject& expected)
{
    QTest::addColumn<QString>("fileName");
    for (const QString& name : expected.keys()) {
        if (expected[name].toObject()[QStringLiteral("type")] == QStringLiteral("JPEG"))
            QTest::newRow(qPrintable(name)) << name;
    }
    if (expected.isEmpty())
        QTest::newRow("no photographs") << QString();
}

void tst_QExifImageHeader::photoTags_data()
{
    addPhotoRows(mExpected);
}

void tst_QExifImageHeader::photoTags()
{
    QFETCH(QString, fileName);
    if (fileName.isEmpty())
        QSKIP("the folder of photographs is not there; hand-made files cover the logic");
    const QString path = photosFolder() + QLatin1Char('/') + fileName;
    const QByteArray content = contentOf(path);
    const QJsonObject expected = mExpected[fileName].toObject();
    const bool damaged = fileName.startsWith(QLatin1String("broken-"));
    LogCapture log;
    Header header;
    const bool loaded = header.loadFromJpeg(path);

    // The first APP1 segment decides, and a block begins with "II" or "MM".
    const QByteArray app1 = JpegParts(content).firstApp1();
    const QByteArray block = app1.mid(10);
    const bool loadable = app1.mid(4, 4) == "Exif"
        && (block.startsWith(hex("49492A00")) || block.startsWith(hex("4D4D002A")));
    QCOMPARE(loaded, loadable);
    if (!loaded) {
        QVERIFY(header.imageTags().isEmpty());
        return;
    }
    QCOMPARE(header.byteOrder(), block.startsWith("II") ? little : big);

    const QJsonObject ifds = expected[QStringLiteral("ifds")].toObject();
    const QJsonObject ifd0 = ifds[QStringLiteral("IFD0")].toObject();
    const auto numberOf = [](const QString& key) {
        return static_cast<quint16>(key.toUInt(nullptr, 16));
    };
    // A pointer that is not a single integer leads nowhere.
    const auto leads = [&ifd0](const char* pointer) {
        const QJsonObject entry = ifd0[QLatin1String(pointer)].toObject();
        const int type = entry[QStringLiteral("type")].toInt(4);
        return entry[QStringLiteral("count")].toInt(1) == 1
            && (type == 1 || type == 3 || type == 4 || type == 9);
    };

    QStringList wrong;
    QList<quint16> readersTags[3];
    for (const QString& key : ifd0.keys()) {
        const quint16 number = numberOf(key);
        const auto tag = static_cast<Header::ImageTag>(number);
        if (tag == Header::ExifIfdPointer || tag == Header::GpsInfoIfdPointer) {
            QVERIFY(!header.contains(tag));
            continue;
        }
        readersTags[0].append(number);
        const QByteArray repeated = damaged ? lastOfRepeatedText(block, number) : QByteArray();
        if (!repeated.isEmpty()) {
            QCOMPARE(inFile(header.value(tag), header.byteOrder()), repeated);
            continue;
        }
        const QString reason = header.contains(tag)
            ? differs(header.value(tag), ifd0[key].toObject(), header.byteOrder(), block)
            : QStringLiteral("missing");
        if (!reason.isEmpty())
            wrong.append(QStringLiteral("IFD0 %1: %2").arg(key, reason));
    }
    const QJsonObject exifIfd = ifds[QStringLiteral("ExifIFD")].toObject();
    for (const QString& key : leads("0x8769") ? exifIfd.keys() : QStringList()) {
        const quint16 number = numberOf(key);
        const auto tag = static_cast<Header::ExifExtendedTag>(number);
        if (tag == Header::InteroperabilityIfdPointer) {
            QVERIFY(!header.contains(tag));
            continue;
        }
        readersTags[1].append(number);
        const QString reason = header.contains(tag)
            ? differs(header.value(tag), exifIfd[key].toObject(), header.byteOrder(), block)
            : QStringLiteral("missing");
        if (!reason.isEmpty())
            wrong.append(QStringLiteral("ExifIFD %1: %2").arg(key, reason));
    }
    const QJsonObject gpsIfd = ifds[QStringLiteral("GPS")].toObject();
    for (const QString& key : leads("0x8825") ? gpsIfd.keys() : QStringList()) {
        const quint16 number = numberOf(key);
        const auto tag = static_cast<Header::GpsTag>(number);
        readersTags[2].append(number);
        const QString reason = header.contains(tag)
            ? differs(header.value(tag), gpsIfd[key].toObject(), header.byteOrder(), block)
            : QStringLiteral("missing");
        if (!reason.isEmpty())
            wrong.append(QStringLiteral("GPS %1: %2").arg(key, reason));
    }
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QStringLiteral("; "))));

    // The readers give up early on damaged files; of a sound one we read no more than they do.
    if (!damaged) {
        QList<quint16> ours[3];
        for (const Header::ImageTag tag : header.imageTags())
            ours[0].append(tag);
        for (const Header::ExifExtendedTag tag : header.extendedTags())
            ours[1].append(tag);
        for (const Header::GpsTag tag : header.gpsTags())
            ours[2].append(tag);
        for (int i = 0; i < 3; ++i) {
            std::sort(readersTags[i].begin(), readersTags[i].end());
            QCOMPARE(ours[i], readersTags[i]);
        }
        QVERIFY(log.records().isEmpty());
    }
    if (!leads("0x8769"))
        QVERIFY(header.extendedTags().isEmpty());

    // exiftool says it of files that it can read to the end, libexif also of others.
    const QJsonValue orientation = expected[QStringLiteral("orientation")];
    if (orientation.isDouble())
        QCOMPARE(int(header.value(Header::Orientation).toShort()), orientation.toInt());
    else if (!ifd0.contains(QStringLiteral("0x0112")))
        QVERIFY(header.value(Header::Orientation).isNull());

    const QJsonObject thumbnail = expected[QStringLiteral("thumbnail")].toObject();
    if (thumbnail[QStringLiteral("is_jpeg")].toBool()) {
        const int length = thumbnail[QStringLiteral("extracted_bytes")].toInt();
        const QByteArray jpeg =
            content.mid(thumbnail[QStringLiteral("exiftool_file_offset")].toInt(), length);
        QCOMPARE(
            QString::fromLatin1(QCryptographicHash::hash(jpeg, QCryptographicHash::Sha1).toHex()),
            thumbnail[QStringLiteral("sha1")].toString());
        QCOMPARE(thumbnailBytes(header, length), jpeg);
        QSize size(thumbnail[QStringLiteral("width")].toInt(),
                   thumbnail[QStringLiteral("height")].toInt());
        if (thumbnail[QStringLiteral("orientation")].toInt() >= 5)
            size.transpose();
        QCOMPARE(header.thumbnail().size(), size);
    } else if (!damaged) {
        QVERIFY(header.thumbnail().isNull());
    }
}

/// Loads a copy of a photograph, sets a few tags and saves it; false when that is refused.
static bool changeTags(const QString& fileName)
{
    Header header;
    header.loadFromJpeg(fileName);
    header.setValue(Header::Orientation, QExifValue(quint16(3)));
    header.setValue(Header::Artist, QExifValue(QStringLiteral("A. Person")));
    return header.saveToJpeg(fileName);
}

void tst_QExifImageHeader::photoSaved_data()
{
    addPhotoRows(mExpected);
}

// Of a photograph that is saved nothing but the EXIF segment changes.
void tst_QExifImageHeader::photoSaved()
{
    QFETCH(QString, fileName);
    if (fileName.isEmpty())
        QSKIP("the folder of photographs is not there; hand-made files cover the logic");
    LogCapture log; // of unknown types
    QTemporaryDir folder;
    const QString copy = folder.filePath(fileName);
    const QByteArray before = contentOf(photosFolder() + QLatin1Char('/') + fileName);
    QVERIFY(makeFile(copy, before));
    QVERIFY(changeTags(copy));
    const QByteArray after = contentOf(copy);

    const JpegParts old(before);
    const JpegParts fresh(after);
    const int replaced = old.replaced();
    const int place = replaced >= 0                          ? replaced
        : !old.parts.isEmpty() && old.parts.first().isJfif() ? 1
                                                             : 0;
    QVERIFY(fresh.parts.size() > place);
    QVERIFY(fresh.parts[place].isExif());
    const int inserted = replaced >= 0 ? 0 : 1;
    QCOMPARE(fresh.parts.size(), old.parts.size() + inserted);
    for (int i = 0; i < old.parts.size(); ++i) {
        if (i == replaced)
            continue;
        const int now = i < place ? i : i + inserted;
        QCOMPARE(fresh.parts[now].marker, old.parts[i].marker);
        QVERIFY(fresh.parts[now].bytes == old.parts[i].bytes);
    }
    QVERIFY(fresh.rest == old.rest);
    QVERIFY(after.size() >= before.size());
    QCOMPARE(QImage::fromData(after, "JPG"), QImage::fromData(before, "JPG"));

    // Our own reader finds it where it is the first APP1 segment.
    Header header;
    if (fresh.firstApp1() == fresh.parts[place].bytes) {
        QVERIFY(header.loadFromJpeg(copy));
        QCOMPARE(header.value(Header::Orientation).toShort(), quint16(3));
        QCOMPARE(header.value(Header::Artist).toString(), QStringLiteral("A. Person"));
    }
}

void tst_QExifImageHeader::photosSavedForReaders()
{
    if (mExpected.isEmpty())
        QSKIP("the folder of photographs is not there; readers() judges a picture made here");
    const QString exiftool = QStandardPaths::findExecutable(QStringLiteral("exiftool"));
    const QString exiv2 = QStandardPaths::findExecutable(QStringLiteral("exiv2"));
    if (exiftool.isEmpty() || exiv2.isEmpty())
        QSKIP("exiftool and exiv2, which judge the files, are not both installed");
    LogCapture log; // of unknown types

    // Files with one EXIF segment, and sound: with two, or damaged, the readers differ.
    QTemporaryDir folder;
    QStringList names;
    for (const QString& name : mExpected.keys()) {
        if (!name.endsWith(QLatin1String(".jpg")) || name.startsWith(QLatin1String("broken-")))
            continue;
        const QByteArray content = contentOf(photosFolder() + QLatin1Char('/') + name);
        const QString copy = folder.filePath(name);
        QVERIFY(makeFile(copy, content));
        QVERIFY2(changeTags(copy), qPrintable(name));
        if (JpegParts(contentOf(copy)).exifCount() == 1)
            names.append(name);
    }
    QVERIFY(names.size() > 20);

    const auto tagsOf = [&](const QString& where) {
        QStringList arguments{QStringLiteral("-j"), QStringLiteral("-n"), QStringLiteral("-u"),
                              QStringLiteral("-G1"), QStringLiteral("-IFD0:all")};
        for (const QString& name : names)
            arguments.append(where + QLatin1Char('/') + name);
        return QJsonDocument::fromJson(outputOf(exiftool, arguments)).array();
    };
    const QJsonArray before = tagsOf(photosFolder());
    const QJsonArray after = tagsOf(folder.path());
    QCOMPARE(before.size(), names.size());
    QCOMPARE(after.size(), names.size());
    for (int i = 0; i < names.size(); ++i) {
        QJsonObject wanted = before[i].toObject();
        QJsonObject got = after[i].toObject();
        QCOMPARE(got[QStringLiteral("IFD0:Orientation")].toInt(), 3);
        QCOMPARE(got[QStringLiteral("IFD0:Artist")].toString(), QStringLiteral("A. Person"));
        for (const char* changed : {"SourceFile", "IFD0:Orientation", "IFD0:Artist"}) {
            wanted.remove(QLatin1String(changed));
            got.remove(QLatin1String(changed));
        }
        QVERIFY2(got == wanted,
                 qPrintable(names[i] + QString::fromUtf8(QJsonDocument(got).toJson())
                            + QString::fromUtf8(QJsonDocument(wanted).toJson())));

        const QByteArray value =
            outputOf(exiv2,
                     {QStringLiteral("-Pv"), QStringLiteral("-g"),
                      QStringLiteral("Exif.Image.Orientation"), folder.filePath(names[i])});
        QVERIFY2(value.trimmed() == "3", qPrintable(names[i] + QString::fromLatin1(value)));
    }
}

QTEST_GUILESS_MAIN(tst_QExifImageHeader)
#include "tst_QExifImageHeader.moc"
