// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "QObjectEventFilter.h"

#include "Columns.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QtTest>

namespace {

// A copy of what the object received.
struct Received
{
    QEvent::Type type;
    int key;
    Qt::KeyboardModifiers modifiers;
    QString text;
    bool autoRepeat;
    int count;
};

// Keeps every key event and counts the others.
class Receiver : public QObject
{
public:
    bool event(QEvent* event) override
    {
        switch (event->type()) {
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::ShortcutOverride: {
            const auto* key = static_cast<QKeyEvent*>(event);
            keys.append({key->type(), key->key(), key->modifiers(), key->text(),
                         key->isAutoRepeat(), key->count()});
            return true;
        }
        case QEvent::User:
            ++users;
            return true;
        default:
            return QObject::event(event);
        }
    }

    QVector<Received> keys;
    int users = 0;
};

void sendUserEvent(QObject* target)
{
    QEvent event(QEvent::User);
    QCoreApplication::sendEvent(target, &event);
}

/// Checks that \a event reaches \a target as one event with this \a key and \a text.
void compareDelivered(QKeyEvent* event, Receiver* target, Qt::Key key, const QString& text)
{
    QCoreApplication::sendEvent(target, event);
    QCoreApplication::processEvents();
    QCOMPARE(target->keys.size(), 1);
    QCOMPARE(target->keys.first().key, int(key));
    QCOMPARE(target->keys.first().text, text);
}

} // namespace

class tst_QObjectEventFilter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isAChildThatDiesWithItsTarget();
    void withoutFunctionNothingIsFiltered();
    void emptyFunctionNothingIsFiltered();
    void functionDecides_data();
    void functionDecides();
    void functionSeesObjectAndEvent();
    void callerMayDelete();
    void severalFilters();
    void functionMayDeleteItsFilter();
    void functionMayDeleteTheTarget();
    void replacesKeys_data();
    void replacesKeys();
    void replacementIsPosted();
    void leavesOtherEvents_data();
    void leavesOtherEvents();
    void leavesEventsThatAreNoKeys();
    void replacementByItselfEnds_data();
    void replacementByItselfEnds();
    void decimalSeparatorOfALineEdit();
};

void tst_QObjectEventFilter::isAChildThatDiesWithItsTarget()
{
    auto* target = new Receiver;
    QPointer<QObjectEventFilter> made = new QObjectEventFilter(target);
    QPointer<QObjectEventFilter> filter =
        QObjectEventFilter::filter(target, [](QObject*, QEvent*) { return true; });
    QCOMPARE(made->parent(), static_cast<QObject*>(target));
    QCOMPARE(filter->parent(), static_cast<QObject*>(target));
    delete target;
    QVERIFY(made.isNull());
    QVERIFY(filter.isNull());
}

void tst_QObjectEventFilter::withoutFunctionNothingIsFiltered()
{
    Receiver target;
    QObjectEventFilter filter(&target);
    QEvent event(QEvent::User);
    QVERIFY(!filter.eventFilter(&target, &event));
    sendUserEvent(&target);
    QCOMPARE(target.users, 1);
}

void tst_QObjectEventFilter::emptyFunctionNothingIsFiltered()
{
    Receiver target;
    QObjectEventFilter* filter =
        QObjectEventFilter::filter(&target, std::function<bool(QObject*, QEvent*)>());
    QEvent event(QEvent::User);
    QVERIFY(!filter->eventFilter(&target, &event));
    sendUserEvent(&target);
    QCOMPARE(target.users, 1);
}

void tst_QObjectEventFilter::functionDecides_data()
{
    const auto row = columns<bool, int>("answer", "received");
    row("true consumes", true, 0);
    row("false lets pass", false, 1);
}

void tst_QObjectEventFilter::functionDecides()
{
    QFETCH(bool, answer);
    QFETCH(int, received);
    Receiver target;
    int calls = 0;
    QObjectEventFilter* filter =
        QObjectEventFilter::filter(&target, [&calls, answer](QObject*, QEvent*) {
            ++calls;
            return answer;
        });
    sendUserEvent(&target);
    QCOMPARE(calls, 1);
    QCOMPARE(target.users, received);
    QEvent event(QEvent::User);
    QCOMPARE(filter->eventFilter(&target, &event), answer);
}

void tst_QObjectEventFilter::functionSeesObjectAndEvent()
{
    Receiver target;
    QObject* seenObject = nullptr;
    QEvent* seenEvent = nullptr;
    QObjectEventFilter::filter(&target, [&](QObject* object, QEvent* event) {
        seenObject = object;
        seenEvent = event;
        return false;
    });
    QEvent event(QEvent::User);
    QCoreApplication::sendEvent(&target, &event);
    QCOMPARE(seenObject, static_cast<QObject*>(&target));
    QCOMPARE(seenEvent, &event);
}

void tst_QObjectEventFilter::callerMayDelete()
{
    Receiver target;
    delete QObjectEventFilter::filter(&target, [](QObject*, QEvent*) { return true; });
    sendUserEvent(&target);
    QCOMPARE(target.users, 1);
}

void tst_QObjectEventFilter::severalFilters()
{
    Receiver target;
    QStringList order;
    for (const QString& name : {QStringLiteral("first"), QStringLiteral("second")}) {
        QObjectEventFilter::filter(&target, [&order, name](QObject*, QEvent* event) {
            if (event->type() == QEvent::User)
                order += name;
            return false;
        });
    }
    sendUserEvent(&target);
    QCOMPARE(order, QStringList({QStringLiteral("second"), QStringLiteral("first")}));
    QCOMPARE(target.users, 1);
}

void tst_QObjectEventFilter::functionMayDeleteItsFilter()
{
    Receiver target;
    QPointer<QObjectEventFilter> filter;
    // Too large to be stored without an allocation: the captured values must remain readable.
    const QString captured(100, QLatin1Char('x'));
    QString readAfterDeletion;
    filter = QObjectEventFilter::filter(&target,
                                        [&filter, &readAfterDeletion, captured](QObject*, QEvent*) {
                                            delete filter.data();
                                            readAfterDeletion = captured;
                                            return true;
                                        });
    sendUserEvent(&target);
    QVERIFY(filter.isNull());
    QCOMPARE(readAfterDeletion, QString(100, QLatin1Char('x')));
    QCOMPARE(target.users, 0);
    sendUserEvent(&target);
    QCOMPARE(target.users, 1);
}

void tst_QObjectEventFilter::functionMayDeleteTheTarget()
{
    QPointer<Receiver> target = new Receiver;
    const QString captured(100, QLatin1Char('x'));
    QString readAfterDeletion;
    QObjectEventFilter::filter(target,
                               [&readAfterDeletion, captured](QObject* object, QEvent* event) {
                                   if (event->type() != QEvent::User)
                                       return false;
                                   delete object;
                                   readAfterDeletion = captured;
                                   return true;
                               });
    sendUserEvent(target);
    QVERIFY(target.isNull());
    QCOMPARE(readAfterDeletion, QString(100, QLatin1Char('x')));
}

void tst_QObjectEventFilter::replacesKeys_data()
{
    const auto row = columns<int, int, int, QString, QString, bool, int>(
        "type", "key", "modifiers", "from", "to", "autoRepeat", "count");

    const QString comma = QStringLiteral(",");
    const QString period = QStringLiteral(".");
    // The two types by their numbers: 6 is a press, 7 a release.
    row("press", 6, int(Qt::Key_Comma), int(Qt::NoModifier), comma, period, false, 1);
    row("release", 7, int(Qt::Key_Comma), int(Qt::NoModifier), comma, period, false, 1);
    row("modifiers stay", 6, int(Qt::Key_Comma), int(Qt::ShiftModifier | Qt::KeypadModifier), comma,
        period, false, 1);
    row("auto-repeat and count go", 6, int(Qt::Key_Comma), int(Qt::NoModifier), comma, period, true,
        3);
    row("the text counts, not the key", 6, int(Qt::Key_Period), int(Qt::NoModifier), comma, period,
        false, 1);
    row("the key code is a period for any text", 6, int(Qt::Key_A), int(Qt::NoModifier), "a", "xyz",
        false, 1);
    row("to nothing", 6, int(Qt::Key_A), int(Qt::NoModifier), "a", QString(), false, 1);
    row("from nothing", 6, int(Qt::Key_F5), int(Qt::ShiftModifier), QString(), period, false, 1);
}

void tst_QObjectEventFilter::replacesKeys()
{
    QFETCH(int, type);
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(bool, autoRepeat);
    QFETCH(int, count);

    Receiver target;
    QObjectEventFilter::filter(&target, QObjectEventFilter::inputKeyReplacement(from, to));
    QKeyEvent event(static_cast<QEvent::Type>(type), key, Qt::KeyboardModifiers(modifiers), from,
                    autoRepeat, ushort(count));
    event.ignore();
    QCoreApplication::sendEvent(&target, &event);
    QVERIFY(event.isAccepted());
    QVERIFY2(target.keys.isEmpty(), "the received event is swallowed");
    QCoreApplication::processEvents();
    QCOMPARE(target.keys.size(), 1);
    const Received got = target.keys.first();
    QCOMPARE(int(got.type), type);
    QCOMPARE(got.key, int(Qt::Key_Period));
    QCOMPARE(int(got.modifiers), modifiers);
    QCOMPARE(got.text, to);
    QCOMPARE(got.autoRepeat, false);
    QCOMPARE(got.count, 1);
}

void tst_QObjectEventFilter::replacementIsPosted()
{
    Receiver target;
    const auto replace =
        QObjectEventFilter::inputKeyReplacement(QStringLiteral(","), QStringLiteral("."));
    QKeyEvent event(QEvent::KeyPress, Qt::Key_Comma, Qt::NoModifier, QStringLiteral(","));
    QVERIFY(replace(&target, &event));
    QVERIFY(target.keys.isEmpty());
    QCoreApplication::sendPostedEvents(&target);
    QCOMPARE(target.keys.size(), 1);
}

void tst_QObjectEventFilter::leavesOtherEvents_data()
{
    const auto row = columns<int, QString>("type", "text");
    row("another text", 6, ";");
    row("another text released", 7, ";");
    row("more text", 6, ",,");
    row("no text", 6, QString());
    row("a shortcut is offered", int(QEvent::ShortcutOverride), ",");
}

void tst_QObjectEventFilter::leavesOtherEvents()
{
    QFETCH(int, type);
    QFETCH(QString, text);
    Receiver target;
    const auto replace =
        QObjectEventFilter::inputKeyReplacement(QStringLiteral(","), QStringLiteral("."));
    QObjectEventFilter::filter(&target, replace);
    QKeyEvent event(static_cast<QEvent::Type>(type), Qt::Key_Comma, Qt::NoModifier, text);
    event.ignore();
    QVERIFY(!replace(&target, &event));
    QVERIFY(!event.isAccepted());
    compareDelivered(&event, &target, Qt::Key_Comma, text);
}

void tst_QObjectEventFilter::leavesEventsThatAreNoKeys()
{
    Receiver target;
    const auto replace = QObjectEventFilter::inputKeyReplacement(QString(), QStringLiteral("."));
    QEvent event(QEvent::User);
    QVERIFY(!replace(&target, &event));
    QCoreApplication::processEvents();
    QVERIFY(target.keys.isEmpty());
}

void tst_QObjectEventFilter::replacementByItselfEnds_data()
{
    const auto row = columns<int, QString>("key", "text");
    row("comma", int(Qt::Key_Comma), ",");
    row("period", int(Qt::Key_Period), ".");
    row("nothing", int(Qt::Key_Shift), QString());
}

void tst_QObjectEventFilter::replacementByItselfEnds()
{
    QFETCH(int, key);
    QFETCH(QString, text);
    Receiver target;
    QObjectEventFilter::filter(&target, QObjectEventFilter::inputKeyReplacement(text, text));
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text);
    compareDelivered(&event, &target, Qt::Key_Period, text);
}

void tst_QObjectEventFilter::decimalSeparatorOfALineEdit()
{
    QLineEdit edit;
    QObjectEventFilter::filter(
        &edit, QObjectEventFilter::inputKeyReplacement(QStringLiteral(","), QStringLiteral(".")));
    QTest::keyClicks(&edit, QStringLiteral("12"));
    QTest::keyClicks(&edit, QStringLiteral(","));
    QCoreApplication::processEvents();
    QTest::keyClicks(&edit, QStringLiteral("5"));
    QCOMPARE(edit.text(), QStringLiteral("12.5"));
}

QTEST_MAIN(tst_QObjectEventFilter)
#include "tst_QObjectEventFilter.moc"
