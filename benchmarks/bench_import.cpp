// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Import of photographs: into 1600 x 1600, upright, as a progressive JPEG of quality 75.
//
//     bench_import                          both ways within one process, with Google Benchmark
//     bench_import --once ours|import|qt SRC DST      one import, for measuring process against
//                                                     process; ours is copyImageFile()
//     bench_import --many serial|importer FROM TO     all files of a folder, with importImage() one
//                                                     after another, or with ImageImporter
//     bench_import --make WIDTH HEIGHT DST [GRAIN]    a photograph of orientation 6 to import, with
//                                                     noise of that standard deviation
//     bench_import --psnr A B               size of both, and how alike they are (luma, decibels)

#include "Benchmarks.h"
#include "TestPictures.h"

#include <ImageImporter.h>
#include <ImageUtils.h>

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTransform>
#include <QVector>

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>

namespace {

const QSize maximum(1600, 1600);

bool importOurs(const QString& src, const QString& dst)
{
    return ImageUtils::copyImageFile(src, dst, true, maximum,
                                     ImageUtils::UseExifRotation | ImageUtils::ProgressiveJpeg);
}

/// The same settings; the quality is that of a progressive JPEG of copyImageFile().
ImageImport wishes()
{
    ImageImport how;
    how.maxSize = maximum;
    how.quality = 75;
    how.metadata = ImageImport::NoMetadata;
    return how;
}

bool importNew(const QString& src, const QString& dst)
{
    return bool(ImageUtils::importImage(src, dst, wishes()));
}

/// Imports all files of a folder, in as many threads as the processor has cores or one after
/// another.
bool importMany(bool atOnce, const QString& from, const QString& to)
{
    const QStringList names = QDir(from).entryList(QDir::Files);
    bool succeeded = true;
    if (!atOnce) {
        for (const QString& name : names)
            succeeded = importNew(from + QLatin1Char('/') + name, to + QLatin1Char('/') + name)
                && succeeded;
        return succeeded;
    }
    ImageImporter importer;
    for (const QString& name : names)
        importer.add(from + QLatin1Char('/') + name, to + QLatin1Char('/') + name, wishes());
    QObject::connect(
        &importer, &ImageImporter::imported,
        [&](int, const ImageImportResult& result) { succeeded = succeeded && result; });
    QObject::connect(&importer, &ImageImporter::finished, qApp, &QCoreApplication::quit);
    importer.start();
    QCoreApplication::exec();
    return succeeded;
}

/// The obvious implementation with Qt alone.
bool importQt(const QString& src, const QString& dst)
{
    QImageReader reader(src);
    const bool turned = reader.transformation() == QImageIOHandler::TransformationRotate90;
    QImage image = reader.read();
    image = image.scaled(maximum, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    if (turned)
        image = image.transformed(QTransform().rotate(90), Qt::SmoothTransformation);
    QImageWriter writer(dst, "jpeg");
    writer.setQuality(75);
    writer.setProgressiveScanWrite(true);
    return writer.write(image);
}

/// A picture with detail of every size, like a photograph: noise from the size of the whole down to
/// a pixel, each finer level weaker. Calm areas (sky, walls) are next to rough ones.
QImage photograph(int width, int height)
{
    quint32 state = 1;
    const auto random = [&state] {
        state = state * 1664525u + 1013904223u;
        return float(state >> 8) / float(1 << 24) - 0.5f;
    };
    const auto addNoise = [&](QVector<float>* values, int cell, float strength,
                              const QVector<float>* where) {
        const int columns = width / cell + 2;
        QVector<float> grid(columns * (height / cell + 2));
        for (float& value : grid)
            value = random() * strength;
        for (int y = 0; y < height; ++y) {
            const float fy = float(y % cell) / float(cell);
            for (int x = 0; x < width; ++x) {
                const float fx = float(x % cell) / float(cell);
                const float* corner = grid.constData() + y / cell * columns + x / cell;
                const float noise = (1 - fy) * ((1 - fx) * corner[0] + fx * corner[1])
                    + fy * ((1 - fx) * corner[columns] + fx * corner[columns + 1]);
                const int at = y * width + x;
                (*values)[at] +=
                    where ? noise * qBound(0.1f, where->at(at) / 40 + 0.5f, 1.2f) : noise;
            }
        }
    };
    QVector<float> values(width * height, 128.f);
    QVector<float> roughness(width * height, 0.f);
    addNoise(&roughness, 700, 120, nullptr);
    addNoise(&roughness, 200, 60, nullptr);
    float strength = 170;
    for (int cell = 1024; cell >= 1; cell /= 2, strength *= 0.8f)
        addNoise(&values, cell, strength, cell > 64 ? nullptr : &roughness);

    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        QRgb* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < width; ++x) {
            const float v = values[y * width + x];
            const float tint = roughness[y * width + x];
            row[x] = qRgb(qBound(0, int(v + tint * 0.3f), 255), qBound(0, int(v), 255),
                          qBound(0, int(v - tint * 0.4f), 255));
        }
    }
    return image;
}

/// Saves it like a camera: baseline, quality 92, orientation 6.
bool makePhotograph(int width, int height, const QString& dst, double grain = 0)
{
    QImage image = photograph(width, height);
    std::mt19937 random(7);
    std::normal_distribution<float> noise(0, float(grain));
    for (int y = 0; grain > 0 && y < height; ++y) {
        QRgb* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < width; ++x) {
            const int d = qRound(noise(random));
            row[x] = qRgb(qBound(0, qRed(row[x]) + d, 255), qBound(0, qGreen(row[x]) + d, 255),
                          qBound(0, qBlue(row[x]) + d, 255));
        }
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "jpeg", 92))
        return false;
    bytes.insert(2,
                 QByteArray::fromHex("ffe10022457869660000"
                                     "49492a00080000000100120103000100000006000000"
                                     "00000000"));
    QFile file(dst);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

void printPsnr(const QString& first, const QString& second)
{
    const QImage a = QImage(first).convertToFormat(QImage::Format_RGB32);
    QImage b = QImage(second).convertToFormat(QImage::Format_RGB32);
    QTextStream out(stdout);
    out << a.width() << ' ' << a.height() << ' ' << b.width() << ' ' << b.height() << ' ';
    // Other programs round the shorter side differently.
    if (b.size() != a.size())
        b = b.scaled(a.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    out << psnr(a, b) << '\n';
}

void importBenchmark(benchmark::State& state, bool (*import)(const QString&, const QString&))
{
    const QTemporaryDir folder;
    const QString src = folder.filePath(QStringLiteral("src.jpg"));
    const QString dst = folder.filePath(QStringLiteral("dst.jpg"));
    if (!makePhotograph(int(state.range(0)), int(state.range(1)), src)) {
        state.SkipWithError("the photograph cannot be made");
        return;
    }
    for (auto _ : state) {
        if (!import(src, dst))
            state.SkipWithError("the import failed");
    }
}

/// Photographs of 6, 12 and 24 megapixels.
void photographs(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Args({3000, 2000})->Args({4000, 3000})->Args({6000, 4000});
    benchmark->Unit(benchmark::kMillisecond)->UseRealTime();
}

BENCHMARK_CAPTURE(importBenchmark, ours, importOurs)->Apply(photographs);
BENCHMARK_CAPTURE(importBenchmark, qt, importQt)->Apply(photographs);

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    const QString mode = arguments.value(1);
    if (mode == QLatin1String("--once") && arguments.size() == 5) {
        const QString& way = arguments[2];
        const auto import = way == QLatin1String("ours") ? importOurs
            : way == QLatin1String("import")             ? importNew
                                                         : importQt;
        return import(arguments[3], arguments[4]) ? 0 : 1;
    }
    if (mode == QLatin1String("--many") && arguments.size() == 5) {
        const bool atOnce = arguments[2] == QLatin1String("importer");
        return importMany(atOnce, arguments[3], arguments[4]) ? 0 : 1;
    }
    if (mode == QLatin1String("--make") && arguments.size() >= 5) {
        return makePhotograph(arguments[2].toInt(), arguments[3].toInt(), arguments[4],
                              arguments.value(5).toDouble())
            ? 0
            : 1;
    }
    if (mode == QLatin1String("--psnr") && arguments.size() == 4) {
        printPsnr(arguments[2], arguments[3]);
        return 0;
    }
    return runBenchmarks(argc, argv);
}
