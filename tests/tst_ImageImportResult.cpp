// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ImageImportResult.h"

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
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("success");
    QTest::newRow("imported") << int(ImageImportResult::Imported) << true;
    QTest::newRow("copied") << int(ImageImportResult::Copied) << true;
    QTest::newRow("not found") << int(ImageImportResult::NotFound) << false;
    QTest::newRow("not an image") << int(ImageImportResult::NotAnImage) << false;
    QTest::newRow("too large") << int(ImageImportResult::TooLarge) << false;
    QTest::newRow("truncated") << int(ImageImportResult::Truncated) << false;
    QTest::newRow("not readable") << int(ImageImportResult::NotReadable) << false;
    QTest::newRow("not writable") << int(ImageImportResult::NotWritable) << false;
    QTest::newRow("cancelled") << int(ImageImportResult::Cancelled) << false;
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
    QTest::addColumn<ImageImportResult>("result");
    QTest::addColumn<QString>("text");
    ImageImportResult result;
    QTest::newRow("nothing") << result << QStringLiteral("ImageImportResult(NotFound)");
    result.error = QStringLiteral("a.jpg cannot be read");
    result.status = ImageImportResult::NotReadable;
    result.format = "jpeg";
    QTest::newRow("failed")
        << result
        << QStringLiteral("ImageImportResult(NotReadable, \"a.jpg cannot be read\", \"jpeg\")");
    result.error.clear();
    result.status = ImageImportResult::Imported;
    result.sourceSize = QSize(4000, 3000);
    result.size = QSize(1200, 1600);
    result.orientation = 6;
    QTest::newRow("imported")
        << result
        << QStringLiteral("ImageImportResult(Imported, \"jpeg\", 4000 x 3000 to 1200 x 1600, "
                          "orientation 6)");
    result.status = ImageImportResult::Copied;
    result.orientation = 0;
    result.truncated = true;
    QTest::newRow("truncated")
        << result
        << QStringLiteral("ImageImportResult(Copied, \"jpeg\", 4000 x 3000 to 1200 x 1600, "
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
