// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "KeyPressCheatCodeDetection.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

namespace {

void press(QObject* target, const QString& text, bool autoRepeat = false)
{
    QKeyEvent event(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, text, autoRepeat);
    QCoreApplication::sendEvent(target, &event);
}

void type(QObject* target, const QString& characters)
{
    for (const QChar character : characters)
        press(target, QString(character));
}

/// An object with a detection that counts.
class Watched : public QObject
{
public:
    explicit Watched(const QString& key) { detection.setKey(key); }

    int count() const { return int(mSpy.count()); }

    KeyPressCheatCodeDetection detection{this};

private:
    QSignalSpy mSpy{&detection, &KeyPressCheatCodeDetection::keyDetected};
};

} // namespace

class tst_KeyPressCheatCodeDetection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isAChildThatDiesWithItsTarget();
    void detects_data();
    void detects();
    void emittedAtTheLastCharacter();
    void onlySingleCharactersCount_data();
    void onlySingleCharactersCount();
    void autoRepeatCounts();
    void releasesDoNotCount();
    void onlyTheParentCounts();
    void setKeyStartsAgain();
    void neverConsumes();
    void keyPressEventAlone();
    void slotMayTypeOn();
    void slotMaySetAnotherKey();
    void slotMayDeleteTheDetection();
    void textStaysInALineEdit();
};

void tst_KeyPressCheatCodeDetection::isAChildThatDiesWithItsTarget()
{
    auto* target = new QObject;
    QPointer<KeyPressCheatCodeDetection> detection = new KeyPressCheatCodeDetection(target);
    QCOMPARE(detection->parent(), target);
    delete target;
    QVERIFY(detection.isNull());
}

void tst_KeyPressCheatCodeDetection::detects_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("detections");

    const QString abc = QStringLiteral("abc");
    QTest::newRow("the sequence") << abc << abc << 1;
    QTest::newRow("a miss in between") << abc << QStringLiteral("abxabc") << 1;
    QTest::newRow("upper case typed") << abc << QStringLiteral("ABC") << 1;
    QTest::newRow("upper case asked for") << QStringLiteral("ABC") << abc << 1;
    QTest::newRow("accents without regard to case")
        << QStringLiteral("\u00e9\u00c7") << QStringLiteral("\u00c9\u00e7") << 1;
    QTest::newRow("accents are not plain letters")
        << QStringLiteral("\u00e9") << QStringLiteral("e") << 0;
    QTest::newRow("twice") << abc << QStringLiteral("abcabc") << 2;
    QTest::newRow("after other text") << abc << QStringLiteral("xyabc") << 1;
    QTest::newRow("incomplete") << abc << QStringLiteral("ab") << 0;
    QTest::newRow("overlapping is not found twice")
        << QStringLiteral("aa") << QStringLiteral("aaa") << 1;
    // "a", then the second "a" misses and is not tried as a start, so "b" misses too.
    QTest::newRow("a miss is no start") << QStringLiteral("ab") << QStringLiteral("aab") << 0;
    QTest::newRow("a miss is no start, the next is")
        << QStringLiteral("ab") << QStringLiteral("aaab") << 1;
    QTest::newRow("one character") << QStringLiteral("x") << QStringLiteral("axbx") << 2;
    QTest::newRow("blank and digits") << QStringLiteral("a 1") << QStringLiteral("a 1") << 1;
    QTest::newRow("empty") << QString() << abc << 0;
}

void tst_KeyPressCheatCodeDetection::detects()
{
    QFETCH(QString, key);
    QFETCH(QString, typed);
    QFETCH(int, detections);
    Watched target(key);
    type(&target, typed);
    QCOMPARE(target.count(), detections);
}

void tst_KeyPressCheatCodeDetection::emittedAtTheLastCharacter()
{
    Watched target(QStringLiteral("abc"));
    type(&target, QStringLiteral("abxab"));
    QCOMPARE(target.count(), 0);
    type(&target, QStringLiteral("c"));
    QCOMPARE(target.count(), 1);
}

void tst_KeyPressCheatCodeDetection::onlySingleCharactersCount_data()
{
    QTest::addColumn<QString>("between");
    QTest::newRow("no text, as Shift has") << QString();
    QTest::newRow("two characters") << QStringLiteral("bc");
    QTest::newRow("a character outside the first plane") << QStringLiteral("\U0001F600");
}

void tst_KeyPressCheatCodeDetection::onlySingleCharactersCount()
{
    QFETCH(QString, between);
    Watched target(QStringLiteral("abc"));
    press(&target, QStringLiteral("a"));
    press(&target, between);
    QCOMPARE(target.count(), 0);
    press(&target, QStringLiteral("b"));
    press(&target, between);
    press(&target, QStringLiteral("c"));
    QCOMPARE(target.count(), 1);
}

void tst_KeyPressCheatCodeDetection::autoRepeatCounts()
{
    Watched target(QStringLiteral("aa"));
    press(&target, QStringLiteral("a"));
    press(&target, QStringLiteral("a"), true);
    QCOMPARE(target.count(), 1);
}

void tst_KeyPressCheatCodeDetection::releasesDoNotCount()
{
    Watched target(QStringLiteral("ab"));
    for (const QString& text : {QStringLiteral("a"), QStringLiteral("b")}) {
        press(&target, text);
        QKeyEvent release(QEvent::KeyRelease, Qt::Key_unknown, Qt::NoModifier, text);
        QCoreApplication::sendEvent(&target, &release);
    }
    QCOMPARE(target.count(), 1);
}

void tst_KeyPressCheatCodeDetection::onlyTheParentCounts()
{
    Watched target(QStringLiteral("ab"));
    QObject other;
    other.installEventFilter(&target.detection);
    type(&other, QStringLiteral("ab"));
    QCOMPARE(target.count(), 0);
    press(&target, QStringLiteral("a"));
    press(&other, QStringLiteral("x"));
    press(&target, QStringLiteral("b"));
    QCOMPARE(target.count(), 1);
}

void tst_KeyPressCheatCodeDetection::setKeyStartsAgain()
{
    Watched target(QStringLiteral("abc"));
    type(&target, QStringLiteral("ab"));
    target.detection.setKey(QStringLiteral("abc"));
    type(&target, QStringLiteral("c"));
    QCOMPARE(target.count(), 0);
    type(&target, QStringLiteral("abc"));
    QCOMPARE(target.count(), 1);
    target.detection.setKey(QString());
    type(&target, QStringLiteral("abc"));
    QCOMPARE(target.count(), 1);
}

void tst_KeyPressCheatCodeDetection::neverConsumes()
{
    QObject target;
    KeyPressCheatCodeDetection detection(&target);
    detection.setKey(QStringLiteral("a"));
    QKeyEvent event(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("a"));
    QVERIFY(!detection.eventFilter(&target, &event));
    QEvent other(QEvent::User);
    QVERIFY(!detection.eventFilter(&target, &other));
    QObject stranger;
    QVERIFY(!detection.eventFilter(&stranger, &event));
}

void tst_KeyPressCheatCodeDetection::keyPressEventAlone()
{
    Watched target(QStringLiteral("a"));
    QKeyEvent event(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("a"));
    target.detection.keyPressEvent(&event);
    QCOMPARE(target.count(), 1);
}

void tst_KeyPressCheatCodeDetection::slotMayTypeOn()
{
    QObject target;
    KeyPressCheatCodeDetection detection(&target);
    detection.setKey(QStringLiteral("ab"));
    int detections = 0;
    connect(&detection, &KeyPressCheatCodeDetection::keyDetected, [&]() {
        if (++detections == 1)
            type(&target, QStringLiteral("ab"));
    });
    type(&target, QStringLiteral("ab"));
    QCOMPARE(detections, 2);
}

void tst_KeyPressCheatCodeDetection::slotMaySetAnotherKey()
{
    QObject target;
    KeyPressCheatCodeDetection detection(&target);
    detection.setKey(QStringLiteral("ab"));
    int detections = 0;
    connect(&detection, &KeyPressCheatCodeDetection::keyDetected, [&]() {
        ++detections;
        detection.setKey(QStringLiteral("xyz"));
    });
    type(&target, QStringLiteral("abxyz"));
    QCOMPARE(detections, 2);
}

void tst_KeyPressCheatCodeDetection::slotMayDeleteTheDetection()
{
    QObject target;
    QPointer<KeyPressCheatCodeDetection> detection = new KeyPressCheatCodeDetection(&target);
    detection->setKey(QStringLiteral("a"));
    connect(detection.data(), &KeyPressCheatCodeDetection::keyDetected,
            [&detection]() { delete detection.data(); });
    type(&target, QStringLiteral("a"));
    QVERIFY(detection.isNull());
    type(&target, QStringLiteral("a"));
}

void tst_KeyPressCheatCodeDetection::textStaysInALineEdit()
{
    QLineEdit edit;
    KeyPressCheatCodeDetection detection(&edit);
    detection.setKey(QStringLiteral("Magic"));
    QSignalSpy spy(&detection, &KeyPressCheatCodeDetection::keyDetected);
    QTest::keyClicks(&edit, QStringLiteral("so magic"));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(edit.text(), QStringLiteral("so magic"));
}

QTEST_MAIN(tst_KeyPressCheatCodeDetection)
#include "tst_KeyPressCheatCodeDetection.moc"
