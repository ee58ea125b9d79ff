// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// QExifImageHeader: reads, edits and writes the EXIF block of a JPEG file.

#ifndef ORVAUTILS_QEXIFIMAGEHEADER_H
#define ORVAUTILS_QEXIFIMAGEHEADER_H

#include "QExifValue.h"
#include "orvautils_export.h"

#include <QDataStream>
#include <QImage>
#include <QList>
#include <QString>

#include <array>
#include <memory>

class QIODevice;
namespace OrvaUtilsPrivate {
class QExifImageHeaderPrivate;
} // namespace OrvaUtilsPrivate

/// One entry of an image file directory (IFD): 12 bytes on file.
///
/// | Offset | Width | Field |
/// |---|---|---|
/// | 0 | u16 | tag |
/// | 2 | u16 | type, a QExifValue::Type or any other number in a file |
/// | 4 | u32 | count |
/// | 8 | 4 bytes | the value if it fits, otherwise its offset |
///
/// How the last field is read depends on type and count; only the one of the three members below
/// that applies is set, the others are 0.
struct ExifIfdHeader
{
    quint16 tag = 0; ///< the tag number
    quint16 type = 0; ///< the field type; numbers that are not in QExifValue::Type occur
    quint32 count = 0; ///< how many elements of that type, as the file claims
    /// The four bytes as they are stored: Byte and Ascii with a count below 5.
    std::array<quint8, 4> inlineBytes{{0, 0, 0, 0}};
    /// Two numbers in the stream's byte order: Short with a count below 3.
    std::array<quint16, 2> inlineShorts{{0, 0}};
    /// One number in the stream's byte order: an offset from the start of the block, or a 32-bit
    /// value. Also the up to 4 bytes of a small Undefined value, see
    /// QExifImageHeader::readIfdValue().
    quint32 offset = 0;
};

/// Reads the 12 bytes of one entry in the stream's byte order. If the device ends before them, the
/// \a stream's status reports it and \a header is all 0.
///
/// \relates ExifIfdHeader
ORVAUTILS_EXPORT QDataStream& operator>>(QDataStream& stream, ExifIfdHeader& header);

/// The EXIF block of a JPEG file: three ordered maps from tag to QExifValue (the image tags of
/// IFD0, the extended tags of the Exif sub-IFD, the GPS tags of the GPS sub-IFD) and the JPEG
/// thumbnail of IFD1.
///
/// \code
/// const QExifImageHeader header(path);
/// const QString model = header.value(QExifImageHeader::Model).toString();
/// const QDateTime taken = header.value(QExifImageHeader::DateTimeOriginal).toDateTime();
/// \endcode
///
/// To change tags of a photograph written by other software, use ExifEditor: saving one with this
/// class loses tags. What it does not keep is lost (the interoperability IFD, types that it does
/// not know, tags of IFD1), maker notes with offsets break because they move, and in the fixed
/// layout of write() the values of the Exif and GPS sub-IFDs that do not fit into their entries are
/// read 2 bytes early, by this class too. Loaded and saved again, each such text loses two more
/// characters, and the date is no longer valid.
///
/// The block is the TIFF structure in the JPEG's APP1 segment that begins with "Exif" and two NUL
/// bytes. ExifUtils has shortcuts for what most callers want.
///
/// All I/O is synchronous, on a file or device of the caller, who keeps ownership; the device stays
/// open. Failure is reported by a false or empty result. Nothing is logged except a Qt warning,
/// category "default", "Invalid Ifd Type" and the type number, for an entry of a type that does not
/// exist.
///
/// A header that is read from a hostile file takes memory in proportion to the file: a value that
/// claims more bytes than exist contains only those that exist, and its count() is what it
/// contains. A directory whose values together are 16 times as large as the whole device (entries
/// that all point to the same bytes) is not read any further.
///
/// The interoperability IFD, tags of IFD1 other than the thumbnail's, and whatever else a block may
/// contain are not kept. A header is used by one thread at a time; it cannot be copied.
class ORVAUTILS_EXPORT QExifImageHeader
{
public:
    /// The tags of IFD0. Any 16-bit number may be used as a tag; the names are those of EXIF 2.3,
    /// and so are the type and count beside each, which are not enforced: one element if no count
    /// is given, any length for texts.
    enum ImageTag : quint16 {
        ImageWidth = 0x0100, ///< Short or Long: columns of the picture; also in a JPEG's frame
        ImageLength = 0x0101, ///< Short or Long: rows of the picture; also in a JPEG's frame
        BitsPerSample = 0x0102, ///< 3 Short: bits of each component, 8
        Compression = 0x0103, ///< Short: 6 is JPEG; write() gives it to the thumbnail
        PhotometricInterpretation = 0x0106, ///< Short: 2 is RGB, 6 is YCbCr
        ImageDescription = 0x010E, ///< Ascii: the title of the picture
        Make = 0x010F, ///< Ascii: the camera's maker
        Model = 0x0110, ///< Ascii: the camera's name or number
        StripOffsets = 0x0111, ///< Short or Long: where the strips of an uncompressed picture begin
        Orientation = 0x0112, ///< Short: 1 is upright; see ExifUtils::imageExifRotation()
        SamplesPerPixel = 0x0115, ///< Short: components of a pixel, 3
        RowsPerStrip = 0x0116, ///< Short or Long: rows in a strip
        StripByteCounts = 0x0117, ///< Short or Long: bytes of each strip
        XResolution = 0x011A, ///< Rational: pixels per ResolutionUnit across
        YResolution = 0x011B, ///< Rational: pixels per ResolutionUnit down
        PlanarConfiguration = 0x011C, ///< Short: 1 interleaved, 2 in planes
        ResolutionUnit = 0x0128, ///< Short: 2 inch, 3 centimetre
        TransferFunction = 0x012D, ///< 3 times 256 Short: a table for each component
        Software = 0x0131, ///< Ascii: the program or firmware that made the file
        DateTime = 0x0132, ///< Ascii, 20: when the file was last changed
        Artist = 0x013B, ///< Ascii: who made the picture
        WhitePoint = 0x013E, ///< 2 Rational: chromaticity of the white point
        PrimaryChromaticities = 0x013F, ///< 6 Rational: chromaticities of the primaries
        JPEGInterchangeFormat = 0x0201, ///< Long: where a thumbnail begins; write() makes it
        JPEGInterchangeFormatLength = 0x0202, ///< Long: bytes of a thumbnail; write() makes it
        YCbCrCoefficients = 0x0211, ///< 3 Rational: from RGB to YCbCr
        YCbCrSubSampling = 0x0212, ///< 2 Short: of chroma, across and down
        YCbCrPositioning = 0x0213, ///< Short: 1 centred, 2 co-sited
        ReferenceBlackWhite = 0x0214, ///< 6 Rational: black and white of each component
        Copyright = 0x8298, ///< Ascii: the photographer's notice, a NUL, the editor's
        ExifIfdPointer = 0x8769, ///< never in the map after reading; made by write()
        GpsInfoIfdPointer = 0x8825 ///< not in the map after reading; made by write()
    };

    /// The tags of the Exif sub-IFD. Any 16-bit number may be used as a tag.
    enum ExifExtendedTag : quint16 {
        ExposureTime = 0x829A, ///< Rational: seconds
        FNumber = 0x829D, ///< Rational: the f-number
        ExposureProgram = 0x8822, ///< Short: 1 manual, 2 normal, 3 aperture first …
        SpectralSensitivity = 0x8824, ///< Ascii: of each channel
        PhotographicSensitivity = 0x8827, ///< Short: ISO 12232, 65535 if it is higher
        OECF = 0x8828, ///< Undefined: the opto-electronic conversion function
        SensitivityType = 0x8830, ///< Short: which ISO 12232 figures are given
        StandardOutputSensitivity = 0x8831, ///< Long: an ISO 12232 figure
        RecommendedExposureIndex = 0x8832, ///< Long: an ISO 12232 figure
        ISOSpeed = 0x8833, ///< Long: an ISO 12232 figure
        ISOSpeedLatitudeyyy = 0x8834, ///< Long: an ISO 12232 figure
        ISOSpeedLatitudezzz = 0x8835, ///< Long: an ISO 12232 figure
        ExifVersion = 0x9000, ///< Undefined, 4: "0230" is 2.3
        DateTimeOriginal = 0x9003, ///< Ascii, 20: when the photograph was taken
        DateTimeDigitized = 0x9004, ///< Ascii, 20: when it was digitised
        OffsetTime = 0x9010, ///< Ascii, 7: the offset from UTC of DateTime, "+02:00"
        OffsetTimeOriginal = 0x9011, ///< Ascii, 7: the offset of DateTimeOriginal
        OffsetTimeDigitized = 0x9012, ///< Ascii, 7: the offset of DateTimeDigitized
        ComponentsConfiguration = 0x9101, ///< Undefined, 4: 1, 2, 3, 0 is Y, Cb, Cr
        CompressedBitsPerPixel = 0x9102, ///< Rational: bits per pixel after compression
        ShutterSpeedValue = 0x9201, ///< SignedRational: APEX
        ApertureValue = 0x9202, ///< Rational: APEX
        BrightnessValue = 0x9203, ///< SignedRational: APEX
        ExposureBiasValue = 0x9204, ///< SignedRational: APEX, that is, in stops
        MaxApertureValue = 0x9205, ///< Rational: APEX, the lens's widest
        SubjectDistance = 0x9206, ///< Rational: metres; a numerator of 0xFFFFFFFF is infinity
        MeteringMode = 0x9207, ///< Short: 1 average, 2 centre-weighted, 3 spot, 5 pattern …
        LightSource = 0x9208, ///< Short: 0 unknown, 1 daylight, 2 fluorescent, 3 tungsten …
        Flash = 0x9209, ///< Short: bit 0 fired; further bits give return and mode
        FocalLength = 0x920A, ///< Rational: millimetres, the actual focal length
        SubjectArea = 0x9214, ///< 2 to 4 Short: a point, a circle or a rectangle in pixels
        MakerNote = 0x927C, ///< Undefined: the maker's data; offsets in it do not survive a move
        UserComment = 0x9286, ///< Undefined: see QExifValue::TextEncoding
        SubSecTime = 0x9290, ///< Ascii: the fraction of a second of DateTime
        SubSecTimeOriginal = 0x9291, ///< Ascii: the fraction of DateTimeOriginal
        SubSecTimeDigitized = 0x9292, ///< Ascii: the fraction of DateTimeDigitized
        FlashpixVersion = 0xA000, ///< Undefined, 4: "0100"
        ColorSpace = 0xA001, ///< Short: 1 sRGB, 0xFFFF uncalibrated
        PixelXDimension = 0xA002, ///< Short or Long: columns of the picture
        PixelYDimension = 0xA003, ///< Short or Long: rows of the picture
        RelatedSoundFile = 0xA004, ///< Ascii, 13: name of a sound file
        InteroperabilityIfdPointer = 0xA005, ///< dropped by read()
        FlashEnergy = 0xA20B, ///< Rational: beam candle power seconds
        SpatialFrequencyResponse = 0xA20C, ///< Undefined: a table
        FocalPlaneXResolution = 0xA20E, ///< Rational: pixels per FocalPlaneResolutionUnit across
        FocalPlaneYResolution = 0xA20F, ///< Rational: pixels per FocalPlaneResolutionUnit down
        FocalPlaneResolutionUnit = 0xA210, ///< Short: 2 inch, 3 centimetre
        SubjectLocation = 0xA214, ///< 2 Short: column and row of the subject's centre
        ExposureIndex = 0xA215, ///< Rational: the one chosen at the camera
        SensingMethod = 0xA217, ///< Short: 2 one-chip colour sensor …
        FileSource = 0xA300, ///< Undefined, 1: 3 is a digital still camera
        SceneType = 0xA301, ///< Undefined, 1: 1 is a photograph taken directly
        CFAPattern = 0xA302, ///< Undefined: the sensor's colour filter
        CustomRendered = 0xA401, ///< Short: 0 normal, 1 processed for effect
        ExposureMode = 0xA402, ///< Short: 0 automatic, 1 manual, 2 bracketing
        WhiteBalance = 0xA403, ///< Short: 0 automatic, 1 manual
        DigitalZoomRatio = 0xA404, ///< Rational: a numerator of 0 is no digital zoom
        FocalLengthIn35mmFilm = 0xA405, ///< Short: millimetres, 0 unknown
        SceneCaptureType = 0xA406, ///< Short: 0 standard, 1 landscape, 2 portrait, 3 night
        GainControl = 0xA407, ///< Short: 0 none, 1 and 2 up, 3 and 4 down
        Contrast = 0xA408, ///< Short: 0 normal, 1 soft, 2 hard
        Saturation = 0xA409, ///< Short: 0 normal, 1 low, 2 high
        Sharpness = 0xA40A, ///< Short: 0 normal, 1 soft, 2 hard
        DeviceSettingDescription = 0xA40B, ///< Undefined: the camera's settings
        SubjectDistanceRange = 0xA40C, ///< Short: 0 unknown, 1 macro, 2 close, 3 distant
        ImageUniqueID = 0xA420, ///< Ascii, 33: 128 bits in hexadecimal
        CameraOwnerName = 0xA430, ///< Ascii: the owner of the camera
        BodySerialNumber = 0xA431, ///< Ascii: of the camera
        LensSpecification = 0xA432, ///< 4 Rational: focal lengths and f-numbers, two of each
        LensInfo = LensSpecification, ///< the former name of LensSpecification
        LensMake = 0xA433, ///< Ascii: the lens's maker
        LensModel = 0xA434, ///< Ascii: the lens's name
        LensSerialNumber = 0xA435, ///< Ascii: of the lens
        Gamma = 0xA500 ///< Rational: the exponent
    };

    /// The tags of the GPS sub-IFD. Any 16-bit number may be used as a tag.
    enum GpsTag : quint16 {
        GPSVersionID = 0x0000, ///< 4 Byte: 2, 3, 0, 0
        GPSLatitudeRef = 0x0001, ///< Ascii, 2: "N" or "S"
        GPSLatitude = 0x0002, ///< 3 Rational: degrees, minutes, seconds
        GPSLongitudeRef = 0x0003, ///< Ascii, 2: "E" or "W"
        GPSLongitude = 0x0004, ///< 3 Rational: degrees, minutes, seconds
        GPSAltitudeRef = 0x0005, ///< Byte: 0 above sea level, 1 below
        GPSAltitude = 0x0006, ///< Rational: metres
        GPSTimeStamp = 0x0007, ///< 3 Rational: hour, minute, second in UTC
        GPSSatellites = 0x0008, ///< Ascii: the satellites used
        GPSStatus = 0x0009, ///< Ascii, 2: "A" measuring, "V" interrupted
        GPSMeasureMode = 0x000A, ///< Ascii, 2: "2" or "3" dimensions
        GPSDOP = 0x000B, ///< Rational: dilution of precision
        GPSSpeedRef = 0x000C, ///< Ascii, 2: "K" km/h, "M" mph, "N" knots
        GPSSpeed = 0x000D, ///< Rational: of the receiver
        GPSTrackRef = 0x000E, ///< Ascii, 2: "T" true north, "M" magnetic north
        GPSTrack = 0x000F, ///< Rational: degrees, the direction of movement
        GPSImgDirectionRef = 0x0010, ///< Ascii, 2: "T" or "M", as GPSTrackRef
        GPSImgDirection = 0x0011, ///< Rational: degrees, the direction of the camera
        GPSMapDatum = 0x0012, ///< Ascii: the geodetic datum, "WGS-84"
        GPSDestLatitudeRef = 0x0013, ///< Ascii, 2: "N" or "S", of the destination
        GPSDestLatitude = 0x0014, ///< 3 Rational: degrees, minutes, seconds
        GPSDestLongitudeRef = 0x0015, ///< Ascii, 2: "E" or "W"
        GPSDestLongitude = 0x0016, ///< 3 Rational: degrees, minutes, seconds
        GPSDestBearingRef = 0x0017, ///< Ascii, 2: "T" or "M", as GPSTrackRef
        GPSDestBearing = 0x0018, ///< Rational: degrees
        GPSDestDistanceRef = 0x0019, ///< Ascii, 2: "K" kilometres, "M" miles, "N" nautical miles
        GPSDestDistance = 0x001A, ///< Rational: in the unit of GPSDestDistanceRef
        GPSProcessingMethod = 0x001B, ///< Undefined: a text, see QExifValue::TextEncoding
        GPSAreaInformation = 0x001C, ///< Undefined: a text, see QExifValue::TextEncoding
        GPSDateStamp = 0x001D, ///< Ascii, 11: "yyyy:MM:dd" in UTC
        GPSDifferential = 0x001E, ///< Short: 0 without, 1 with differential correction
        GPSHPositioningError = 0x001F ///< Rational: metres
    };

    /// An empty header in little-endian byte order.
    QExifImageHeader();
    /// A header filled by loadFromJpeg(); left empty if that fails.
    explicit QExifImageHeader(const QString& fileName);
    /// A header filled by loadFromJpeg(); left empty if that fails.
    explicit QExifImageHeader(QIODevice* device);
    /// Discards changes that were not saved.
    virtual ~QExifImageHeader();

    /// Replaces the content of this header with the EXIF block of the JPEG file \a fileName. False,
    /// with nothing loaded, when the file cannot be opened, reading fails or its first APP1 segment
    /// is not an EXIF block; see read() for damaged blocks.
    bool loadFromJpeg(const QString& fileName);

    /// As above, from the current position of \a device, which must be open for reading and may be
    /// sequential. Null gives false.
    bool loadFromJpeg(QIODevice* device);

    /// Writes this header into the JPEG file \a fileName, which must exist and be writable. The
    /// overload below describes what it changes in the file, and what it refuses.
    ///
    /// In a photograph written by other software this loses tags; see the class, and ExifEditor,
    /// which keeps them. Each further load and save loses more.
    ///
    /// A process that is killed leaves the old file or the new one, never a mixture: a new file is
    /// completed beside the old one, with its permissions, owner, access list and extended
    /// attributes, and replaces it in one step; if \a fileName is a link, the file that it leads to
    /// is replaced. This temporarily needs as much disk space as the file; false, with the file
    /// untouched, if that space is not available. A killed process may leave a second file beside
    /// the photograph, whose name begins with ".orvautils-": the new one, just before it replaces
    /// the old one; an unfinished one only if the file system has no files without a name.
    ///
    /// The file itself is written in place
    /// - when its length does not change and all bytes that change lie within one block of 4096
    ///   bytes (they are then written all or not at all; a write of several blocks can end between
    ///   two when the process is killed);
    /// - when nothing can replace it unnoticed: it has several names (hard links), it belongs to
    ///   somebody else, or no new file can be created in its folder. If such a save is killed it
    ///   may leave a mixture.
    ///
    /// A file that already contains all these bytes is not written. False also when a file that was
    /// written in place cannot be closed, which is how some full or broken disks report a failure;
    /// it is not known then whether it is the old or the new one.
    bool saveToJpeg(const QString& fileName) const;

    /// Writes this header into the JPEG at the beginning of \a device (the current position does
    /// not matter), in place: a process that is killed meanwhile leaves a mixture.
    ///
    /// An EXIF segment is replaced when it is the file's first one, or the second one after a JFIF
    /// segment. Otherwise a new APP1 segment is inserted: after a JFIF segment that comes first,
    /// else directly after the SOI marker. Every byte outside of that segment is kept, also an APP1
    /// segment that is not EXIF (XMP) and an EXIF segment further back. Within it, tags are lost
    /// that this header did not keep; see the class.
    ///
    /// A block that is smaller than the one it replaces is padded with NUL bytes, so that only
    /// these bytes are rewritten and the file keeps its length; a larger one makes the file grow. A
    /// file is never made smaller. When the file has to grow, its new end is written first: a full
    /// disk is detected before any of the old content is overwritten.
    ///
    /// False, with the device untouched, when it is null, sequential, open for appending or not
    /// open for reading and writing, when it does not begin with a JPEG's SOI marker and a segment,
    /// or when "Exif", two NUL bytes and the block exceed the 65,533 bytes that a segment can hold.
    /// False also when the device reports a failed or short write; what was written is then
    /// reverted as far as the device allows.
    ///
    /// As write() does, saving a header with GPS tags adds GpsInfoIfdPointer to its image tags.
    bool saveToJpeg(QIODevice* device) const;

    /// The TIFF block in the first APP1 segment of the JPEG at the current position of \a device,
    /// without "Exif" and the two bytes after it. The device is left positioned after what was
    /// read. Empty when the device is null or not open for reading, when there is no SOI marker, no
    /// APP1 segment, or when the first APP1 segment does not begin with "Exif" (an EXIF segment
    /// after an XMP one is not found; this is deliberate). A segment that is cut short by the end
    /// of the device gives the bytes that exist.
    QByteArray extractExif(QIODevice* device) const;

    /// Replaces the content of this header with the TIFF block at the current position of
    /// \a device, which must be open for reading and random access. The device is left at an
    /// unspecified position.
    ///
    /// False when the block does not begin with "II" or "MM", the number 42 and an offset that lies
    /// in the device. Any further damage does not make it fail: a directory or a value is read as
    /// far as the device goes, one that lies outside is empty.
    ///
    /// - A value of a type that does not exist is kept under its tag as a null value, after the
    ///   warning.
    /// - Texts are Latin-1. The byte that ends one is removed, whatever it is; NULs before it are
    ///   kept.
    /// - Undefined values of up to 4 bytes are reversed when read from a big-endian block.
    ///   Deliberate, see readIfdValue().
    /// - ExifIfdPointer, GpsInfoIfdPointer and InteroperabilityIfdPointer do not stay in the maps.
    ///   A pointer that is not a single integer counts as absent.
    /// - IFD0, its two sub-IFDs and IFD1 are read only once each, wherever their links lead.
    bool read(QIODevice* device);

    /// Writes the TIFF block to \a device, from its current position on, and returns the number of
    /// bytes written, which size() then returns too. A device that is null or not open for writing
    /// gives 0, and nothing changes here; one that fails gives the number of bytes it accepted, and
    /// size() is unknown again.
    ///
    /// The layout is fixed, byte for byte, and kept although two things in it look wrong: the
    /// offsets in the Exif and the GPS sub-IFD lie 2 bytes before the data that they refer to, and
    /// neither these nor IFD1 end with a link. ExifIfdPointer is written even with no extended
    /// tags.
    ///
    /// With GPS tags the header stores GpsInfoIfdPointer among its own image tags, as a side effect
    /// on a const object; a second write() therefore writes that entry twice. Deliberate: readers
    /// use the last one, which is right.
    int write(QIODevice* device) const;

    /// The byte order of the last block that was read, initially little endian. clear() and
    /// setValue() do not change it. write() uses it.
    QDataStream::ByteOrder byteOrder() const;

    /// Empties the three maps and discards the thumbnail.
    void clear();

    /// The image tags that are present, in ascending order.
    QList<ImageTag> imageTags() const;
    /// The extended tags that are present, in ascending order.
    QList<ExifExtendedTag> extendedTags() const;
    /// The GPS tags that are present, in ascending order.
    QList<GpsTag> gpsTags() const;

    /// Whether the image \a tag is present, even with a null value.
    bool contains(ImageTag tag) const;
    /// Whether the extended \a tag is present.
    bool contains(ExifExtendedTag tag) const;
    /// Whether the GPS \a tag is present.
    bool contains(GpsTag tag) const;

    /// Removes the image \a tag; does nothing if it is absent.
    void remove(ImageTag tag);
    /// As above, for the extended \a tag.
    void remove(ExifExtendedTag tag);
    /// As above, for the GPS \a tag.
    void remove(GpsTag tag);

    /// The value of the image \a tag, the null value if it is absent.
    QExifValue value(ImageTag tag) const;
    /// The value of the extended \a tag, the null value if it is absent.
    QExifValue value(ExifExtendedTag tag) const;
    /// The value of the GPS \a tag, the null value if it is absent.
    QExifValue value(GpsTag tag) const;

    /// Adds the image \a tag or replaces its \a value. The caller is responsible for using the type
    /// and count that EXIF requires. A null value is written as a Byte with count 0.
    void setValue(ImageTag tag, const QExifValue& value);
    /// As above, for the extended \a tag and its \a value.
    void setValue(ExifExtendedTag tag, const QExifValue& value);
    /// As above, for the GPS \a tag and its \a value.
    void setValue(GpsTag tag, const QExifValue& value);

    /// The thumbnail, rotated upright by the orientation that IFD1 gives it (a single Short or Byte
    /// from 1 to 8). A null image if there is none, if it is not a JPEG, or if it claims more
    /// pixels than its bytes can hold.
    QImage thumbnail() const;

    /// Makes \a thumbnail, saved as JPEG with the default quality, the thumbnail of this header,
    /// with no orientation; keep it small, 160 x 120 is usual. A null image removes the thumbnail.
    void setThumbnail(const QImage& thumbnail);

    /// The size that write() is expected to need, in bytes. After write() and until the next change
    /// it is what write() wrote. Before that, it is deliberately 12 bytes less than write() needs
    /// for a header with a thumbnail.
    int size() const;

protected:
    /// Reads from \a stream a u16 count and that many entries, fewer if the device ends before.
    QList<ExifIfdHeader> readIfdHeaders(QDataStream& stream) const;

    /// The value of the entry \a header. Data that does not fit into the entry is read at
    /// \a startPos + ExifIfdHeader::offset of the device of \a stream, as far as the device goes;
    /// the stream's position afterwards is unspecified. A null value, after the warning, for an
    /// unknown type.
    ///
    /// An Undefined value of up to 4 bytes is taken from ExifIfdHeader::offset, least significant
    /// byte first: in file order from a little-endian stream, reversed from a big-endian one.
    /// Deliberate.
    QExifValue readIfdValue(QDataStream& stream, int startPos, const ExifIfdHeader& header) const;

    /// Writes to \a stream the 12 bytes of the entry of \a tag and \a value, whose data, if it does
    /// not fit, will be at \a offset. Returns the next free offset.
    quint32 writeExifHeader(QDataStream& stream, quint16 tag, const QExifValue& value,
                            quint32 offset) const;

    /// Writes to \a stream the data of \a value, nothing if it fitted into its entry.
    void writeExifValue(QDataStream& stream, const QExifValue& value) const;

    /// The bytes that an entry takes: 12, and its data if that does not fit into the entry.
    quint32 sizeOf(const QExifValue& value) const;

private:
    Q_DISABLE_COPY(QExifImageHeader)

    const std::unique_ptr<OrvaUtilsPrivate::QExifImageHeaderPrivate> d;
};

#endif // ORVAUTILS_QEXIFIMAGEHEADER_H
