// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "FileUtils.h"

#include <QtTest>

class tst_FileUtils : public QObject
{
    Q_OBJECT
};

QTEST_MAIN(tst_FileUtils)
#include "tst_FileUtils.moc"
