// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// What ApplicationUtils and CoreApplicationUtils do to real windows, on a display of two screens:
// the first has 1024 x 768 pixels, the second 800 x 600, and both begin at 0, 0.

#include "ApplicationUtils.h"
#include "Columns.h"
#include "CoreApplicationUtils.h"

#include "Screenshot.h"

#include <QDialog>
#include <QFocusEvent>
#include <QtTest>

class tst_ApplicationFrameX11 : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void screenAt_data();
    void screenAt();
    void modalDialogStaysInFront();
};

void tst_ApplicationFrameX11::initTestCase()
{
    const QList<QScreen*> screens = QGuiApplication::screens();
    QCOMPARE(screens.size(), 2);
    QCOMPARE(screens[0]->geometry(), QRect(0, 0, 1024, 768));
    QCOMPARE(screens[1]->geometry(), QRect(0, 0, 800, 600));
}

void tst_ApplicationFrameX11::screenAt_data()
{
    const auto row = columns<QPoint, int>("point", "screen"); // -1: none
    row("on both, the first is found", QPoint(400, 300), 0);
    row("corner", QPoint(0, 0), 0);
    row("last pixel", QPoint(1023, 767), 0);
    row("right of it", QPoint(1024, 767), -1);
    row("below it", QPoint(1023, 768), -1);
    row("left of it", QPoint(-1, 0), -1);
    row("above it", QPoint(0, -1), -1);
}

void tst_ApplicationFrameX11::screenAt()
{
    QFETCH(QPoint, point);
    QFETCH(int, screen);
    QCOMPARE(ApplicationUtils::screenAt(point), QGuiApplication::screens().value(screen));
}

void tst_ApplicationFrameX11::modalDialogStaysInFront()
{
    const auto inFront = [] {
        return QColor(screenshot(QGuiApplication::primaryScreen()).pixel(200, 200));
    };
    QWidget window;
    paintPlain(&window, Qt::blue);
    window.setGeometry(100, 100, 400, 300);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QDialog dialog;
    dialog.setModal(true);
    paintPlain(&dialog, Qt::red);
    dialog.setGeometry(150, 150, 200, 100);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QTRY_COMPARE(inFront(), QColor(Qt::red));

    QFocusEvent focus(QEvent::FocusIn);
    window.raise();
    QTRY_COMPARE(inFront(), QColor(Qt::blue));
    QCoreApplication::sendEvent(&window, &focus);
    // The X server handles requests in order: what the event asked for is done before a window that
    // is shown later appears.
    QWidget later;
    later.setGeometry(600, 500, 50, 50);
    later.show();
    QVERIFY(QTest::qWaitForWindowExposed(&later));
    QCOMPARE(inFront(), QColor(Qt::blue)); // what would happen without the filter

    CoreApplicationUtils::fixOSXDialogFocusBug();
    QCoreApplication::sendEvent(&window, &focus);
    QTRY_COMPARE(inFront(), QColor(Qt::red));
}

QTEST_MAIN(tst_ApplicationFrameX11)
#include "tst_ApplicationFrameX11.moc"
