// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "QExifImageHeader.h"

#include <QtTest>

class tst_QExifImageHeader : public QObject
{
    Q_OBJECT
};

QTEST_MAIN(tst_QExifImageHeader)
#include "tst_QExifImageHeader.moc"
