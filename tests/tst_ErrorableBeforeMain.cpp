// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// A host that fills the message tables in a static initialiser and reads them while its static
// objects are destroyed. The sources of the library are linked after this one, so that their static
// objects are created later and destroyed earlier.

#include "Errorable.h"
#include "WidgetUtils.h"

#include <QtTest>

#include <cstdio>
#include <cstdlib>

// Replaces the rest of the library.
QStringList WidgetUtils::parentsList(QObject*)
{
    return QStringList();
}

namespace {

ErrorableCode diskFull()
{
    ErrorableCode code;
    code.context = QStringLiteral("Files");
    code.code = 3;
    code.mEnumText = QStringLiteral("DiskFull");
    return code;
}

struct HostMessages
{
    HostMessages()
    {
        Errorable::sErrorMessages[diskFull()] = QStringLiteral("The disk is full.");
        Errorable::sOverriddenErrorMessage[diskFull()] = QStringLiteral("Le disque est plein.");
    }

    ~HostMessages()
    {
        // The report of the test is already written.
        if (Errorable::overriddenErrorMessage(diskFull()) == QStringLiteral("Le disque est plein."))
            return;
        std::fputs("the messages are gone at exit\n", stderr);
        std::_Exit(1);
    }
} hostMessages;

} // namespace

class tst_ErrorableBeforeMain : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tablesAreFilled();
};

void tst_ErrorableBeforeMain::tablesAreFilled()
{
    QCOMPARE(Errorable::sErrorMessages.size(), 1);
    QCOMPARE(Errorable::errorMessage(diskFull()), QStringLiteral("The disk is full."));
    QCOMPARE(Errorable::overriddenErrorMessage(diskFull()), QStringLiteral("Le disque est plein."));
}

QTEST_APPLESS_MAIN(tst_ErrorableBeforeMain)
#include "tst_ErrorableBeforeMain.moc"
