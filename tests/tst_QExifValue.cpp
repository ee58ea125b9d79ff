// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "QExifValue.h"

#include <QtTest>

class tst_QExifValue : public QObject
{
    Q_OBJECT
};

QTEST_MAIN(tst_QExifValue)
#include "tst_QExifValue.moc"
