// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ImageImportResult.h"

#include "Columns.h"

#include <QtTest>

class tst_ImageImportResult : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaults();
    void success_data();
    void success();
    void debug_data();
    void debug();
};

void tst_ImageImportResult::defaults()
{
    const ImageImportResult result;
    QVERIFY(!result);
    QCOMPARE(int(result.status), int(ImageImportResult::NotFound));
    QVERIFY(result.error.isEmpty());
    QVERIFY(result.format.isEmpty());
    QVERIFY(!result.sourceSize.isValid());
    QVERIFY(!result.size.isValid());
    QCOMPARE(result.orientation, 0);
    QVERIFY(!result.truncated);
}

void tst_ImageImportResult::success_data()
{
    const auto row = columns<int, bool>("status", "success");
    row("imported", int(ImageImportResult::Imported), true);
    row("copied", int(ImageImportResult::Copied), true);
    row("not found", int(ImageImportResult::NotFound), false);
    row("not an image", int(ImageImportResult::NotAnImage), false);
    row("too large", int(ImageImportResult::TooLarge), false);
    row("truncated", int(ImageImportResult::Truncated), false);
    row("not readable", int(ImageImportResult::NotReadable), false);
    row("not writable", int(ImageImportResult::NotWritable), false);
    row("cancelled", int(ImageImportResult::Cancelled), false);
}

void tst_ImageImportResult::success()
{
    QFETCH(int, status);
    QFETCH(bool, success);
    ImageImportResult result;
    result.status = ImageImportResult::Status(status);
    QCOMPARE(bool(result), success);
    // It travels through signals between threads.
    QCOMPARE(int(qvariant_cast<ImageImportResult>(QVariant::fromValue(result)).status), status);
}

void tst_ImageImportResult::debug_data()
{
    const auto row = columns<ImageImportResult, QString>("result", "text");
    ImageImportResult result;
    row("nothing", result, "ImageImportResult(NotFound)");
    result.error = QStringLiteral("a.jpg cannot be read");
    result.status = ImageImportResult::NotReadable;
    result.format = "jpeg";
    row("failed", result, "ImageImportResult(NotReadable, \"a.jpg cannot be read\", \"jpeg\")");
    result.error.clear();
    result.status = ImageImportResult::Imported;
    result.sourceSize = QSize(4000, 3000);
    result.size = QSize(1200, 1600);
    result.orientation = 6;
    row("imported", result,
        "ImageImportResult(Imported, \"jpeg\", 4000 x 3000 to 1200 x 1600, "
        "orientation 6)");
    result.status = ImageImportResult::Copied;
    result.orientation = 0;
    result.truncated = true;
    row("truncated", result,
        "ImageImportResult(Copied, \"jpeg\", 4000 x 3000 to 1200 x 1600, "
        "truncated)");
}

void tst_ImageImportResult::debug()
{
    QFETCH(ImageImportResult, result);
    QFETCH(QString, text);
    QString written;
    QDebug(&written) << result << 1;
    QCOMPARE(written.trimmed(), text + QStringLiteral(" 1"));
}

QTEST_APPLESS_MAIN(tst_ImageImportResult)
#include "tst_ImageImportResult.moc"
