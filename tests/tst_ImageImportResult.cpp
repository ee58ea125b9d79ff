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

QTEST_APPLESS_MAIN(tst_ImageImportResult)
#include "tst_ImageImportResult.moc"
