// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "KeyPressCheatCodeDetection.h"

#include "Columns.h"

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

/// An object with a detection that counts its signals.
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
    const auto row = columns<QString, QString, int>("key", "typed", "detections");

    const QString abc = QStringLiteral("abc");
    row("the sequence", abc, abc, 1);
    row("a miss in between", abc, "abxabc", 1);
    row("upper case typed", abc, "ABC", 1);
    row("upper case asked for", "ABC", abc, 1);
    row("accents without regard to case", "\u00e9\u00c7", "\u00c9\u00e7", 1);
    row("accents are not plain letters", "\u00e9", "e", 0);
    row("twice", abc, "abcabc", 2);
    row("after other text", abc, "xyabc", 1);
    row("incomplete", abc, "ab", 0);
    row("overlapping is not found twice", "aa", "aaa", 1);
    // "a", then the second "a" does not match and is not tried as a start, so "b" does not match.
    row("a miss is no start", "ab", "aab", 0);
    row("a miss is no start, the next is", "ab", "aaab", 1);
    row("one character", "x", "axbx", 2);
    row("blank and digits", "a 1", "a 1", 1);
    row("empty", QString(), abc, 0);
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
    const auto row = columns<QString>("between");
    row("no text, as Shift has", QString());
    row("two characters", "bc");
    row("a character outside the first plane", "\U0001F600");
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
    Watched target(QStringLiteral("ab"));
    connect(&target.detection, &KeyPressCheatCodeDetection::keyDetected, [&]() {
        if (target.count() == 1)
            type(&target, QStringLiteral("ab"));
    });
    type(&target, QStringLiteral("ab"));
    QCOMPARE(target.count(), 2);
}

void tst_KeyPressCheatCodeDetection::slotMaySetAnotherKey()
{
    Watched target(QStringLiteral("ab"));
    connect(&target.detection, &KeyPressCheatCodeDetection::keyDetected,
            [&]() { target.detection.setKey(QStringLiteral("xyz")); });
    type(&target, QStringLiteral("abxyz"));
    QCOMPARE(target.count(), 2);
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
