// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "GoogleFontWeightDetail.h"

#include <QtTest>

class tst_GoogleFontWeightDetail : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaultHasNoStyle();
    void comparison();
};

void tst_GoogleFontWeightDetail::defaultHasNoStyle()
{
    const GoogleFontWeightDetail detail;
    QVERIFY(!detail.hasNormal);
    QVERIFY(!detail.hasItalic);
}

void tst_GoogleFontWeightDetail::comparison()
{
    // All pairs of the four values: each is equal only to itself.
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            GoogleFontWeightDetail a;
            a.hasNormal = i & 1;
            a.hasItalic = i & 2;
            GoogleFontWeightDetail b;
            b.hasNormal = j & 1;
            b.hasItalic = j & 2;
            QCOMPARE(a == b, i == j);
            QCOMPARE(a != b, i != j);
        }
    }
}

QTEST_APPLESS_MAIN(tst_GoogleFontWeightDetail)
#include "tst_GoogleFontWeightDetail.moc"
