// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// QExifImageHeader: reads, edits and writes the EXIF block of a JPEG file.
//
//     QExifImageHeader header;
//     if (header.loadFromJpeg(path)) {
//         header.setValue(QExifImageHeader::Artist, QExifValue(QStringLiteral("A. Person")));
//         header.saveToJpeg(path);
//     }
//
// The block is the TIFF structure in the JPEG's APP1 segment that begins with "Exif" and two NUL
// bytes. ExifUtils has the two shortcuts that most callers want.

#ifndef ORVAUTILS_QEXIFIMAGEHEADER_H
#define ORVAUTILS_QEXIFIMAGEHEADER_H

#include "QExifValue.h"
#include "orvautils_export.h"

#include <QDataStream>
#include <QImage>
#include <QList>
#include <QScopedPointer>
#include <QString>

#include <array>

class QExifImageHeaderPrivate;
class QIODevice;

/// One entry of an image file directory (IFD): 12 bytes on file.
///
/// | Offset | Width | Field |
/// |---|---|---|
/// | 0 | u16 | tag |
/// | 2 | u16 | type, a QExifValue::Type or anything else that a file may hold |
/// | 4 | u32 | count |
/// | 8 | 4 bytes | the value, where it fits, else where it is |
///
/// How the last field is read depends on type and count; of the three members below only the one
/// that applies is set, the others are 0.
struct ExifIfdHeader
{
    quint16 tag = 0;
    quint16 type = 0;
    quint32 count = 0;
    /// The four bytes as they stand: Byte and Ascii with a count below 5.
    std::array<quint8, 4> inlineBytes{{0, 0, 0, 0}};
    /// Two numbers in the stream's byte order: Short with a count below 3.
    std::array<quint16, 2> inlineShorts{{0, 0}};
    /// One number in the stream's byte order: an offset from the start of the block, or a 32-bit
    /// value. Also the up to 4 bytes of a small Undefined value, see
    /// QExifImageHeader::readIfdValue().
    quint32 offset = 0;
};

/// Reads the 12 bytes of one entry in the stream's byte order. Where the device ends before them,
/// the stream's status says so and \a header is all 0.
ORVAUTILS_EXPORT QDataStream& operator>>(QDataStream& stream, ExifIfdHeader& header);

/// The EXIF block of a JPEG file: three ordered maps from tag to QExifValue (the image tags of
/// IFD0, the extended tags of the Exif sub-IFD, the GPS tags of the GPS sub-IFD) and the JPEG
/// thumbnail of IFD1.
///
/// All I/O is synchronous, on a file or device of the caller, which stays the caller's and stays
/// open. Failure is a false or empty result. Nothing is logged except a Qt warning, category
/// "default", "Invalid Ifd Type" and the type number, for an entry of a type that does not exist.
///
/// A header that is read from a hostile file takes memory in proportion to the file: a value that
/// claims more bytes than there are holds those that there are, and its count() is what it holds.
/// A directory whose values together are 16 times as large as the whole device (entries that all
/// point to the same bytes) is read no further.
///
/// The interoperability IFD, tags of IFD1 other than the thumbnail's, and whatever else a block may
/// hold are not kept. A header is used by one thread at a time; it cannot be copied.
class ORVAUTILS_EXPORT QExifImageHeader
{
public:
    /// The tags of IFD0. Any 16-bit number may be used as a tag; the names are those of EXIF 2.3.
    enum ImageTag : quint16 {
        ImageWidth = 0x0100,
        ImageLength = 0x0101,
        BitsPerSample = 0x0102,
        Compression = 0x0103,
        PhotometricInterpretation = 0x0106,
        ImageDescription = 0x010E,
        Make = 0x010F,
        Model = 0x0110,
        StripOffsets = 0x0111,
        Orientation = 0x0112,
        SamplesPerPixel = 0x0115,
        RowsPerStrip = 0x0116,
        StripByteCounts = 0x0117,
        XResolution = 0x011A,
        YResolution = 0x011B,
        PlanarConfiguration = 0x011C,
        ResolutionUnit = 0x0128,
        TransferFunction = 0x012D,
        Software = 0x0131,
        DateTime = 0x0132,
        Artist = 0x013B,
        WhitePoint = 0x013E,
        PrimaryChromaticities = 0x013F,
        JPEGInterchangeFormat = 0x0201,
        JPEGInterchangeFormatLength = 0x0202,
        YCbCrCoefficients = 0x0211,
        YCbCrSubSampling = 0x0212,
        YCbCrPositioning = 0x0213,
        ReferenceBlackWhite = 0x0214,
        Copyright = 0x8298,
        ExifIfdPointer = 0x8769, ///< never in the map after reading; made by write()
        GpsInfoIfdPointer = 0x8825 ///< not in the map after reading; made by write()
    };

    /// The tags of the Exif sub-IFD. Any 16-bit number may be used as a tag.
    enum ExifExtendedTag : quint16 {
        ExposureTime = 0x829A,
        FNumber = 0x829D,
        ExposureProgram = 0x8822,
        SpectralSensitivity = 0x8824,
        PhotographicSensitivity = 0x8827,
        OECF = 0x8828,
        SensitivityType = 0x8830,
        StandardOutputSensitivity = 0x8831,
        RecommendedExposureIndex = 0x8832,
        ISOSpeed = 0x8833,
        ISOSpeedLatitudeyyy = 0x8834,
        ISOSpeedLatitudezzz = 0x8835,
        ExifVersion = 0x9000,
        DateTimeOriginal = 0x9003,
        DateTimeDigitized = 0x9004,
        ComponentsConfiguration = 0x9101,
        CompressedBitsPerPixel = 0x9102,
        ShutterSpeedValue = 0x9201,
        ApertureValue = 0x9202,
        BrightnessValue = 0x9203,
        ExposureBiasValue = 0x9204,
        MaxApertureValue = 0x9205,
        SubjectDistance = 0x9206,
        MeteringMode = 0x9207,
        LightSource = 0x9208,
        Flash = 0x9209,
        FocalLength = 0x920A,
        SubjectArea = 0x9214,
        MakerNote = 0x927C,
        UserComment = 0x9286,
        SubSecTime = 0x9290,
        SubSecTimeOriginal = 0x9291,
        SubSecTimeDigitized = 0x9292,
        FlashpixVersion = 0xA000,
        ColorSpace = 0xA001,
        PixelXDimension = 0xA002,
        PixelYDimension = 0xA003,
        RelatedSoundFile = 0xA004,
        InteroperabilityIfdPointer = 0xA005, ///< dropped by read()
        FlashEnergy = 0xA20B,
        SpatialFrequencyResponse = 0xA20C,
        FocalPlaneXResolution = 0xA20E,
        FocalPlaneYResolution = 0xA20F,
        FocalPlaneResolutionUnit = 0xA210,
        SubjectLocation = 0xA214,
        ExposureIndex = 0xA215,
        SensingMethod = 0xA217,
        FileSource = 0xA300,
        SceneType = 0xA301,
        CFAPattern = 0xA302,
        CustomRendered = 0xA401,
        ExposureMode = 0xA402,
        WhiteBalance = 0xA403,
        DigitalZoomRatio = 0xA404,
        FocalLengthIn35mmFilm = 0xA405,
        SceneCaptureType = 0xA406,
        GainControl = 0xA407,
        Contrast = 0xA408,
        Saturation = 0xA409,
        Sharpness = 0xA40A,
        DeviceSettingDescription = 0xA40B,
        SubjectDistanceRange = 0xA40C,
        ImageUniqueID = 0xA420,
        CameraOwnerName = 0xA430,
        BodySerialNumber = 0xA431,
        LensInfo = 0xA432, ///< focal lengths, shortest and longest, and the f-number of each
        LensMake = 0xA433,
        LensModel = 0xA434,
        LensSerialNumber = 0xA435,
        Gamma = 0xA500
    };

    /// The tags of the GPS sub-IFD. Any 16-bit number may be used as a tag.
    enum GpsTag : quint16 {
        GPSVersionID = 0x0000,
        GPSLatitudeRef = 0x0001,
        GPSLatitude = 0x0002,
        GPSLongitudeRef = 0x0003,
        GPSLongitude = 0x0004,
        GPSAltitudeRef = 0x0005,
        GPSAltitude = 0x0006,
        GPSTimeStamp = 0x0007,
        GPSSatellites = 0x0008,
        GPSStatus = 0x0009,
        GPSMeasureMode = 0x000A,
        GPSDOP = 0x000B,
        GPSSpeedRef = 0x000C,
        GPSSpeed = 0x000D,
        GPSTrackRef = 0x000E,
        GPSTrack = 0x000F,
        GPSImgDirectionRef = 0x0010,
        GPSImgDirection = 0x0011,
        GPSMapDatum = 0x0012,
        GPSDestLatitudeRef = 0x0013,
        GPSDestLatitude = 0x0014,
        GPSDestLongitudeRef = 0x0015,
        GPSDestLongitude = 0x0016,
        GPSDestBearingRef = 0x0017,
        GPSDestBearing = 0x0018,
        GPSDestDistanceRef = 0x0019,
        GPSDestDistance = 0x001A,
        GPSProcessingMethod = 0x001B,
        GPSAreaInformation = 0x001C,
        GPSDateStamp = 0x001D,
        GPSDifferential = 0x001E,
        GPSHPositioningError = 0x001F
    };

    /// An empty header in little-endian byte order.
    QExifImageHeader();
    /// A header filled by loadFromJpeg(); left empty where that fails.
    explicit QExifImageHeader(const QString& fileName);
    /// A header filled by loadFromJpeg(); left empty where that fails.
    explicit QExifImageHeader(QIODevice* device);
    virtual ~QExifImageHeader();

    /// Replaces everything here by the EXIF block of the JPEG file \a fileName. False, with nothing
    /// loaded, when the file cannot be opened, reading fails or its first APP1 segment is not an
    /// EXIF block; see read() for a block that is broken.
    bool loadFromJpeg(const QString& fileName);

    /// As above, from the current position of \a device, which must be open for reading and may be
    /// sequential.
    bool loadFromJpeg(QIODevice* device);

    /// Writes this header into the JPEG file \a fileName, which must exist and be writable. What it
    /// changes in the file, and what it refuses, is told at the overload.
    ///
    /// A process that is killed leaves the old file or the new one, never a mixture: a new file is
    /// completed beside the old one, with its permissions, owner, access list and extended
    /// attributes, and takes its place in one step; where \a fileName is a link, that of the file
    /// that it leads to. This takes as much room on the disk as the file for a moment; false, with
    /// the file untouched, where it is not there. The killed process may leave a second file beside
    /// the photograph, named like it with a dot and six letters at the end: the new one, just
    /// before it takes its place; an unfinished one only where the file system knows no files
    /// without a name.
    ///
    /// The file itself is written
    /// - when its length stays and all bytes that change lie within one block of 4096 bytes (they
    ///   are then written all or not at all; a write of several blocks can end between two when
    ///   the process is killed);
    /// - when nothing can take its place unnoticed: it has several names (hard links), it belongs
    ///   to somebody else, or its folder takes no new file. A save that is killed then may leave a
    ///   mixture.
    ///
    /// When all bytes are there already the file is not written. False also when a file that was
    /// written itself cannot be closed, as some full or broken disks tell it; whether it is the old
    /// or the new one is not known then.
    bool saveToJpeg(const QString& fileName) const;

    /// Writes this header into the JPEG that \a device holds from its beginning (the current
    /// position does not matter), in place: a process that is killed meanwhile leaves a mixture.
    ///
    /// An EXIF segment is replaced when it is the file's first one, or the second one behind a JFIF
    /// segment. Otherwise a new APP1 segment is inserted: behind a JFIF segment that comes first,
    /// else directly behind the SOI marker. Every other byte of the file is kept, also an APP1
    /// segment that is not EXIF (XMP) and an EXIF segment further back.
    ///
    /// A block that is smaller than the one it replaces is filled up with NUL bytes, so that only
    /// these bytes are rewritten and the file keeps its length; a larger one makes the file grow. A
    /// file is never made smaller. When the file has to grow, its new end is written first: a disk
    /// that is full is found out before anything of the old content is overwritten.
    ///
    /// False, with the device untouched, when it is null, sequential, open for appending or not
    /// open for reading and writing, when it does not begin with a JPEG's SOI marker and a segment,
    /// or when "Exif", two NUL bytes and the block exceed the 65,533 bytes that a segment holds.
    /// False also when the device reports a failed or short write; what was written is then put
    /// back as far as the device lets us.
    ///
    /// As write() does, saving a header with GPS tags adds GpsInfoIfdPointer to its image tags.
    bool saveToJpeg(QIODevice* device) const;

    /// The TIFF block in the first APP1 segment of the JPEG at the current position of \a device,
    /// without "Exif" and the two bytes behind it. The device is left behind what was read. Empty
    /// when there is no SOI marker, no APP1 segment, or when the first APP1 segment does not begin
    /// with "Exif" (an EXIF segment behind an XMP one is not found; this is deliberate). A segment
    /// that the end of the device cuts short gives the bytes that are there.
    QByteArray extractExif(QIODevice* device) const;

    /// Replaces everything here by the TIFF block at the current position of \a device, which must
    /// be open for reading and random access. The device is left at an unspecified position.
    ///
    /// False when the block does not begin with "II" or "MM", the number 42 and an offset that lies
    /// in the device. From there on damage does not make it fail: a directory or a value is read as
    /// far as the device goes, one that lies outside is empty.
    ///
    /// - A value of a type that does not exist is kept under its tag as a null value, after the
    ///   warning.
    /// - Texts are Latin-1. The byte that ends one is taken off without looking at it; NULs before
    ///   it are kept.
    /// - Undefined values of up to 4 bytes come out reversed from a big-endian block. Deliberate,
    ///   see readIfdValue().
    /// - ExifIfdPointer, GpsInfoIfdPointer and InteroperabilityIfdPointer do not stay in the maps.
    ///   A pointer that is not a single integer counts as absent.
    /// - IFD0, its two sub-IFDs and IFD1 are each read once, wherever their links lead.
    bool read(QIODevice* device);

    /// Writes the TIFF block to \a device, from its current position on, and returns the number of
    /// bytes written, which size() then returns too. A device that is null, not open for writing or
    /// fails gives what it took, 0 in the first two cases, and size() is unknown again.
    ///
    /// The layout is fixed, byte for byte, and kept although two things in it look wrong: the
    /// offsets in the Exif and the GPS sub-IFD lie 2 bytes before the data that they mean, and
    /// neither these nor IFD1 end with a link. ExifIfdPointer is written even with no extended
    /// tags.
    ///
    /// With GPS tags the header stores GpsInfoIfdPointer among its own image tags, as a side effect
    /// on a const object; a second write() therefore holds that entry twice. Deliberate: readers
    /// take the last one, which is right.
    int write(QIODevice* device) const;

    /// The byte order of the last block that was read, little endian before. clear() and setValue()
    /// do not change it. write() uses it.
    QDataStream::ByteOrder byteOrder() const;

    /// Empties the three maps and forgets the thumbnail.
    void clear();

    /// The image tags that are present, in ascending order.
    QList<ImageTag> imageTags() const;
    /// The extended tags that are present, in ascending order.
    QList<ExifExtendedTag> extendedTags() const;
    /// The GPS tags that are present, in ascending order.
    QList<GpsTag> gpsTags() const;

    /// Whether the tag is present, be its value null.
    bool contains(ImageTag tag) const;
    bool contains(ExifExtendedTag tag) const;
    bool contains(GpsTag tag) const;

    /// Takes the tag away; nothing happens where it is absent.
    void remove(ImageTag tag);
    void remove(ExifExtendedTag tag);
    void remove(GpsTag tag);

    /// The tag's value, the null value where it is absent.
    QExifValue value(ImageTag tag) const;
    QExifValue value(ExifExtendedTag tag) const;
    QExifValue value(GpsTag tag) const;

    /// Adds the tag or replaces its value. Whether type and count are those that EXIF asks for is
    /// the caller's business. A null value is written as a Byte with count 0.
    void setValue(ImageTag tag, const QExifValue& value);
    void setValue(ExifExtendedTag tag, const QExifValue& value);
    void setValue(GpsTag tag, const QExifValue& value);

    /// The thumbnail, turned upright by the orientation that IFD1 gives it (a single Short or Byte
    /// from 1 to 8). A null image where there is none, where it is no JPEG, or where it claims more
    /// pixels than so few bytes can hold.
    QImage thumbnail() const;

    /// Makes \a thumbnail, saved as JPEG with the default quality, the thumbnail of this header,
    /// with no orientation; keep it small, 160 x 120 is usual. A null image takes the thumbnail
    /// away.
    void setThumbnail(const QImage& thumbnail);

    /// The size that write() is expected to need, in bytes. After write() and until the next change
    /// it is what write() wrote. Before, it is 12 bytes less than write() needs for a header with a
    /// thumbnail; deliberate.
    int size() const;

protected:
    /// Reads a u16 count and that many entries, fewer where the device ends before.
    QList<ExifIfdHeader> readIfdHeaders(QDataStream& stream) const;

    /// The value of an entry. What does not fit into the entry is read at \a startPos +
    /// ExifIfdHeader::offset of the stream's device, as far as the device goes; the stream's
    /// position afterwards is unspecified. A null value, after the warning, for an unknown type.
    ///
    /// An Undefined value of up to 4 bytes is taken from ExifIfdHeader::offset, least significant
    /// byte first: in file order from a little-endian stream, reversed from a big-endian one.
    /// Deliberate.
    QExifValue readIfdValue(QDataStream& stream, int startPos, const ExifIfdHeader& header) const;

    /// Writes the 12 bytes of an entry whose data, where it does not fit, will be at \a offset.
    /// Returns the next free offset.
    quint32 writeExifHeader(QDataStream& stream, quint16 tag, const QExifValue& value,
                            quint32 offset) const;

    /// Writes the data of an entry, nothing where it fitted into the entry.
    void writeExifValue(QDataStream& stream, const QExifValue& value) const;

    /// The bytes that an entry costs: 12, and its data where that does not fit into the entry.
    quint32 sizeOf(const QExifValue& value) const;

private:
    Q_DISABLE_COPY(QExifImageHeader)

    QScopedPointer<QExifImageHeaderPrivate> d;
};

#endif // ORVAUTILS_QEXIFIMAGEHEADER_H
