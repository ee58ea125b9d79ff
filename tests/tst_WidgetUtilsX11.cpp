// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The helpers that place, mask and show windows, on a display with two screens: the first has 1024
// x 768 pixels, the second 800 x 600, and both begin at 0, 0. There is no window manager, so
// windows have no frames and are not moved. Each test checks a screenshot.

#include "WidgetUtils.h"

#include "Columns.h"
#include "Screenshot.h"

#include <QDialog>
#include <QPainter>
#include <QPointer>
#include <QPropertyAnimation>
#include <QWindow>
#include <QtTest>

class tst_WidgetUtilsX11 : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void screenOfAWindow_data();
    void screenOfAWindow();
    void centerOnScreen_data();
    void centerOnScreen();
    void restoreSize_data();
    void restoreSize();
    void centerOnParent();
    void roundedMask();
    void showAndHideAnimated();

private:
    void showOn(QWidget* widget, int screen);

    QList<QScreen*> mScreens;
};

void tst_WidgetUtilsX11::initTestCase()
{
    mScreens = QGuiApplication::screens();
    QCOMPARE(mScreens.size(), 2);
    QCOMPARE(mScreens[0]->availableGeometry(), QRect(0, 0, 1024, 768));
    QCOMPARE(mScreens[1]->availableGeometry(), QRect(0, 0, 800, 600));
}

void tst_WidgetUtilsX11::showOn(QWidget* widget, int screen)
{
    widget->winId(); // creates the window
    widget->windowHandle()->setScreen(mScreens[screen]);
    widget->show();
    QVERIFY(QTest::qWaitForWindowExposed(widget));
}

void tst_WidgetUtilsX11::screenOfAWindow_data()
{
    const auto row = columns<int>("screen");
    row("first", 0);
    row("second", 1);
}

void tst_WidgetUtilsX11::screenOfAWindow()
{
    QFETCH(int, screen);
    QWidget window;
    QWidget child(&window);
    showOn(&window, screen);
    QCOMPARE(WidgetUtils::widgetScreen(&window), mScreens[screen]);
    QCOMPARE(WidgetUtils::widgetScreen(&child), mScreens[screen]);
    // If no screen shows it: the first one of the application.
    window.move(5000, 5000);
    QCOMPARE(WidgetUtils::widgetScreen(&window), mScreens[0]);
}

void tst_WidgetUtilsX11::centerOnScreen_data()
{
    const auto row = columns<int, QSize, QRect>("screen", "size", "place");
    row("first", 0, QSize(300, 200), QRect(362, 284, 300, 200));
    row("first, odd", 0, QSize(301, 199), QRect(361, 284, 301, 199));
    row("second", 1, QSize(300, 200), QRect(250, 200, 300, 200));
}

void tst_WidgetUtilsX11::centerOnScreen()
{
    QFETCH(int, screen);
    QFETCH(QSize, size);
    QFETCH(QRect, place);
    QWidget window;
    paintPlain(&window, Qt::red);
    window.resize(size);
    showOn(&window, screen);
    WidgetUtils::moveDialogToCenterOfScreen(&window);
    QTRY_COMPARE(placeOf(Qt::red, screenshot(mScreens[screen])), place);
    QCOMPARE(WidgetUtils::rectToGlobal(&window), place);
}

void tst_WidgetUtilsX11::restoreSize_data()
{
    const auto row = columns<int, QSize, QRect>("screen", "size", "place");
    row("first", 0, QSize(500, 400), QRect(262, 184, 500, 400));
    row("first, too tall", 0, QSize(500, 769), QRect(262, 0, 500, 768));
    row("second", 1, QSize(500, 400), QRect(150, 100, 500, 400));
    row("second, too tall", 1, QSize(500, 768), QRect(150, 0, 500, 600));
    row("second, invalid height", 1, QSize(500, -1), QRect(150, 0, 500, 600));
}

void tst_WidgetUtilsX11::restoreSize()
{
    QFETCH(int, screen);
    QFETCH(QSize, size);
    QFETCH(QRect, place);
    QDialog dialog;
    paintPlain(&dialog, Qt::red);
    showOn(&dialog, screen);
    WidgetUtils::restoreDialogSize(&dialog, size);
    QTRY_COMPARE(placeOf(Qt::red, screenshot(mScreens[screen])), place);
}

void tst_WidgetUtilsX11::centerOnParent()
{
    QWidget window;
    paintPlain(&window, Qt::blue);
    window.setGeometry(100, 150, 400, 300);
    showOn(&window, 0);
    QDialog dialog(&window);
    paintPlain(&dialog, Qt::red);
    dialog.resize(201, 100);
    dialog.show();
    QVERIFY(WidgetUtils::moveDialogToCenterOfParent(&dialog));
    QTRY_COMPARE(placeOf(Qt::red, screenshot(mScreens[0])), QRect(199, 250, 201, 100));
    QCOMPARE(placeOf(Qt::blue, screenshot(mScreens[0])), QRect(100, 150, 400, 300));
}

void tst_WidgetUtilsX11::roundedMask()
{
    QWidget behind;
    paintPlain(&behind, Qt::blue);
    behind.setGeometry(50, 50, 400, 300);
    showOn(&behind, 0);
    QWidget window;
    window.setWindowFlags(Qt::FramelessWindowHint);
    paintPlain(&window, Qt::red);
    window.setGeometry(100, 100, 200, 120);
    WidgetUtils::createWidgetRoundedMask(&window, 30);
    showOn(&window, 0);
    window.raise();
    QTRY_COMPARE(placeOf(Qt::red, screenshot(mScreens[0])), QRect(100, 100, 200, 120));

    const QImage seen = screenshot(mScreens[0]);
    const auto colorAt = [&seen](int x, int y) { return QColor(seen.pixel(100 + x, 100 + y)); };
    for (const int x : {0, 199}) {
        for (const int y : {0, 119})
            QCOMPARE(colorAt(x, y), QColor(Qt::blue)); // the background shows through the corners
    }
    // The centre of the corner's circle is at 30, 30: on the diagonal the window begins at 8.8.
    QCOMPARE(colorAt(7, 7), QColor(Qt::blue));
    QCOMPARE(colorAt(10, 10), QColor(Qt::red));
    for (const QPoint& middle : {QPoint(0, 60), QPoint(199, 60), QPoint(100, 0), QPoint(100, 119)})
        QCOMPARE(colorAt(middle.x(), middle.y()), QColor(Qt::red));
}

void tst_WidgetUtilsX11::showAndHideAnimated()
{
    QWidget window;
    paintPlain(&window, Qt::red);
    window.setGeometry(10, 20, 100, 50);
    WidgetUtils::showAnimated(&window, 200);
    QVERIFY(window.isVisible());
    QVERIFY(window.windowOpacity() < 1.0);
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTRY_COMPARE(window.windowOpacity(), 1.0);
    QTRY_COMPARE(placeOf(Qt::red, screenshot(mScreens[0])), QRect(10, 20, 100, 50));

    WidgetUtils::hideAnimated(&window, 200);
    QVERIFY(!window.isVisible());
    QCOMPARE(window.windowOpacity(), 1.0);
    QTRY_COMPARE(placeOf(Qt::red, screenshot(mScreens[0])), QRect());
    QTRY_COMPARE(window.windowOpacity(), 0.0);
    QTRY_VERIFY(window.findChildren<QPropertyAnimation*>().isEmpty());

    WidgetUtils::showAnimated(&window, 1);
    QTRY_COMPARE(placeOf(Qt::red, screenshot(mScreens[0])), QRect(10, 20, 100, 50));
}

QTEST_MAIN(tst_WidgetUtilsX11)
#include "tst_WidgetUtilsX11.moc"
