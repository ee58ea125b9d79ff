// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ImageUtils.h"

#include <QtTest>

class tst_ImageUtils : public QObject
{
    Q_OBJECT
};

QTEST_MAIN(tst_ImageUtils)
#include "tst_ImageUtils.moc"
