// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ExifUtils.h"

#include <QtTest>

class tst_ExifUtils : public QObject
{
    Q_OBJECT
};

QTEST_MAIN(tst_ExifUtils)
#include "tst_ExifUtils.moc"
