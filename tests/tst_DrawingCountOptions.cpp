// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "DrawingCountOptions.h"

#include <QtTest>

class tst_DrawingCountOptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaults();
};

void tst_DrawingCountOptions::defaults()
{
    const DrawingCountOptions options;
    QCOMPARE(int(options.alignment), 132);
    QCOMPARE(options.margin, 0);
    QCOMPARE(options.firstBackgroundColor, QColor(Qt::transparent));
    QCOMPARE(options.secondBackgroundColor, QColor(Qt::white));
    QCOMPARE(options.textColor, QColor(Qt::black));
    QCOMPARE(options.borderColor, QColor(Qt::transparent));
    QVERIFY(options.rect.isNull());
}

QTEST_GUILESS_MAIN(tst_DrawingCountOptions)
#include "tst_DrawingCountOptions.moc"
