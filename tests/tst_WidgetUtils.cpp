// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// On the offscreen platform the only screen has 800 x 600 pixels, all of them available, and a
// visible window has a frame of 2 pixels on each side.

#include "WidgetUtils.h"

#include "Columns.h"
#include "LogCapture.h"

#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QFormLayout>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMainWindow>
#include <QPointer>
#include <QPropertyAnimation>
#include <QScreen>
#include <QSysInfo>
#include <QTabBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QVBoxLayout>
#include <QtTest>

#include <algorithm>
#include <cmath>

#ifdef Q_OS_LINUX
#include <cstdarg>
#include <cstring>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

// Qt reads the version of the system from /etc/os-release. This open() takes precedence, so that a
// test can simulate another system.
static QByteArray otherOsRelease;

extern "C" Q_DECL_EXPORT int open64(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const unsigned int mode = flags & O_CREAT ? va_arg(arguments, unsigned int) : 0;
    va_end(arguments);
    if (!otherOsRelease.isEmpty() && std::strcmp(path, "/etc/os-release") == 0)
        path = otherOsRelease.constData();
    return int(::syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}
#endif

namespace {

QPropertyAnimation* animationOf(QWidget* widget)
{
    return widget->findChild<QPropertyAnimation*>();
}

} // namespace

class Grandparent : public QObject
{
    Q_OBJECT
};

class Parent : public QObject
{
    Q_OBJECT
};

class tst_WidgetUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void layoutNullOrEmpty();
    void layoutOfTheWidget_data();
    void layoutOfTheWidget();
    void layoutOfAnInnerWidgetIsNotSearched();
    void layoutOfEveryKind();
    void tabColor_data();
    void tabColor();

    void screenOfAWidget();
    void restoreSize_data();
    void restoreSize();
    void restoreSizeWithinLimits();
    void centerOnScreen_data();
    void centerOnScreen();
    void centerOnParent_data();
    void centerOnParent();
    void centerWithoutParent();
    void centerWithinAParent();
    void saveSize();
    void toGlobal();
    void retainSize();

    void roundedMask_data();
    void roundedMask();
    void roundedMaskDoesNotFollow();
    void roundedMaskWithoutArea();
    void helpButton();
    void helpButtonNotThere();
    void headerView();
    void showFades();
    void hideFades();
    void fadingStartsFirst();
    void fadesInNoTime();
    void hideStopsShow();
    void widgetGoesWhileFading();
    void deleteOnClose();
    void mainWindow();
    void mainWindowMustBeTopLevel();

    void parents();
    void parentsAreAppended();
};

void tst_WidgetUtils::initTestCase()
{
    QCOMPARE(QGuiApplication::screens().size(), 1);
    QCOMPARE(QGuiApplication::primaryScreen()->availableGeometry(), QRect(0, 0, 800, 600));
}

void tst_WidgetUtils::layoutNullOrEmpty()
{
    QWidget w;
    QVERIFY(!WidgetUtils::findParentLayout(static_cast<QLayout*>(nullptr), &w));
    QWidget parent;
    QVERIFY(!WidgetUtils::findParentLayout(&parent, &w));
    QVBoxLayout empty;
    QVERIFY(!WidgetUtils::findParentLayout(&empty, &w));
}

void tst_WidgetUtils::layoutOfTheWidget_data()
{
    const auto row = columns<QString, QString>("widget", "layout"); // empty: none
    row("directly", "first", "outer");
    row("behind a nested layout", "last", "outer");
    row("one deep", "middle", "nested");
    row("two deep", "inner", "innermost");
    row("in a later nested layout", "late", "second");
    row("in none", "stranger", QString());
}

void tst_WidgetUtils::layoutOfTheWidget()
{
    QFETCH(QString, widget);
    QFETCH(QString, layout);
    QWidget parent;
    const auto named = [&parent](const char* name) {
        auto* label = new QLabel(&parent);
        label->setObjectName(QString::fromLatin1(name));
        return label;
    };
    named("stranger");
    auto* outer = new QVBoxLayout(&parent);
    outer->setObjectName(QStringLiteral("outer"));
    outer->addStretch();
    outer->addWidget(named("first"));
    auto* nested = new QHBoxLayout;
    nested->setObjectName(QStringLiteral("nested"));
    nested->addWidget(named("middle"));
    auto* innermost = new QVBoxLayout;
    innermost->setObjectName(QStringLiteral("innermost"));
    innermost->addWidget(named("inner"));
    nested->addLayout(innermost);
    outer->addLayout(nested);
    auto* second = new QHBoxLayout;
    second->setObjectName(QStringLiteral("second"));
    second->addWidget(named("late"));
    outer->addLayout(second);
    outer->addWidget(named("last"));

    auto* w = parent.findChild<QLabel*>(widget);
    QVERIFY(w);
    const QLayout* found = WidgetUtils::findParentLayout(&parent, w);
    QCOMPARE(found ? found->objectName() : QString(), layout);
    QCOMPARE(WidgetUtils::findParentLayout(outer, w), found);
}

void tst_WidgetUtils::layoutOfAnInnerWidgetIsNotSearched()
{
    QWidget parent;
    auto* box = new QWidget(&parent);
    auto* outer = new QVBoxLayout(&parent);
    outer->addWidget(box);
    auto* label = new QLabel(box);
    auto* inner = new QVBoxLayout(box);
    inner->addWidget(label);
    QVERIFY(!WidgetUtils::findParentLayout(&parent, label));
    QCOMPARE(WidgetUtils::findParentLayout(box, label), static_cast<QLayout*>(inner));
}

void tst_WidgetUtils::layoutOfEveryKind()
{
    QWidget parent;
    auto* grid = new QGridLayout(&parent);
    auto* form = new QFormLayout;
    auto* edit = new QLabel(&parent);
    form->addRow(QStringLiteral("Name"), edit);
    grid->addLayout(form, 3, 2);
    QCOMPARE(WidgetUtils::findParentLayout(&parent, edit), static_cast<QLayout*>(form));
}

void tst_WidgetUtils::tabColor_data()
{
    const auto row = columns<QString, bool>("version", "black");
    row("10.15", "10.15", false);
    row("10.9", "10.9", false);
    row("9", "9", false);
    row("10.16", "10.16", true);
    row("10.17", "10.17", true);
    row("11.2", "11.2", true);
    row("12", "12", true);
    // Only the components of the system's version are compared.
    row("10", "10", true);
    row("no number", "rolling", false);
}

void tst_WidgetUtils::tabColor()
{
#ifndef Q_OS_LINUX
    QSKIP("the version of another system can only be given to Qt on Linux");
#else
    QFETCH(QString, version);
    QFETCH(bool, black);
    QTemporaryDir folder;
    QFile file(folder.path() + QStringLiteral("/os-release"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("ID=test\nVERSION_ID=\"" + version.toUtf8() + "\"\n");
    file.close();

    QTabWidget tabs;
    for (int i = 0; i < 3; ++i) {
        tabs.addTab(new QWidget, QString::number(i));
        tabs.tabBar()->setTabTextColor(i, Qt::red);
    }
    otherOsRelease = file.fileName().toLocal8Bit();
    const QString seen = QSysInfo::productVersion();
    WidgetUtils::fixColorTabBar(&tabs);
    otherOsRelease.clear();
    QCOMPARE(seen, version);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(tabs.tabBar()->tabTextColor(i), QColor(black ? Qt::black : Qt::red));

    QTabWidget empty;
    WidgetUtils::fixColorTabBar(&empty);
    QCOMPARE(empty.count(), 0);
#endif
}

void tst_WidgetUtils::screenOfAWidget()
{
    QScreen* screen = QGuiApplication::primaryScreen();
    QWidget window;
    QWidget child(&window);
    QCOMPARE(WidgetUtils::widgetScreen(&window), screen);
    window.show();
    QCOMPARE(WidgetUtils::widgetScreen(&window), screen);
    QCOMPARE(WidgetUtils::widgetScreen(&child), screen);
    // If no screen shows it, the number is negative: the first screen.
    window.move(-5000, -5000);
    QCOMPARE(WidgetUtils::widgetScreen(&window), screen);
}

void tst_WidgetUtils::restoreSize_data()
{
    const auto row = columns<bool, QSize, QSize, QPoint>("shown", "size", "restored",
                                                         "position"); // of the frame

    row("as it was", false, QSize(400, 300), QSize(400, 300), QPoint(200, 150));
    row("odd sizes", false, QSize(401, 299), QSize(401, 299), QPoint(199, 150));
    row("as tall as the area", false, QSize(400, 600), QSize(400, 600), QPoint(200, 0));
    row("taller than the area", false, QSize(400, 601), QSize(400, 600), QPoint(200, 0));
    row("wider than the area", false, QSize(1001, 300), QSize(1001, 300), QPoint(-100, 150));
    row("invalid", false, QSize(), QSize(0, 600), QPoint(400, 0));
    row("invalid width", false, QSize(-1, 300), QSize(0, 600), QPoint(400, 0));
    row("invalid height", false, QSize(300, -1), QSize(300, 600), QPoint(250, 0));
    // The frame counts for the position, but not for the height.
    row("shown", true, QSize(400, 300), QSize(400, 300), QPoint(198, 148));
    row("shown and too tall", true, QSize(400, 700), QSize(400, 600), QPoint(198, -2));
}

void tst_WidgetUtils::restoreSize()
{
    QFETCH(bool, shown);
    QFETCH(QSize, size);
    QFETCH(QSize, restored);
    QFETCH(QPoint, position);
    QDialog dialog;
    if (shown)
        dialog.show();
    WidgetUtils::restoreDialogSize(&dialog, size);
    QCOMPARE(dialog.size(), restored);
    QCOMPARE(dialog.pos(), position);
}

void tst_WidgetUtils::restoreSizeWithinLimits()
{
    QDialog dialog;
    dialog.setMinimumSize(200, 100);
    dialog.setMaximumHeight(500);
    WidgetUtils::restoreDialogSize(&dialog, QSize());
    QCOMPARE(dialog.size(), QSize(200, 500));
    QCOMPARE(dialog.pos(), QPoint(300, 50));
}

void tst_WidgetUtils::centerOnScreen_data()
{
    const auto row = columns<bool, QSize, QPoint>("shown", "size", "position"); // of the frame
    row("even", true, QSize(396, 296), QPoint(200, 150));
    row("odd", true, QSize(397, 295), QPoint(199, 150));
    row("without a frame", false, QSize(400, 300), QPoint(200, 150));
    row("larger than the screen, halves go towards 0", true, QSize(803, 609), QPoint(-3, -6));
}

void tst_WidgetUtils::centerOnScreen()
{
    QFETCH(bool, shown);
    QFETCH(QSize, size);
    QFETCH(QPoint, position);
    for (const QPoint& from : {QPoint(10, 20), QPoint(-4000, 90)}) {
        QWidget widget;
        widget.resize(size);
        widget.move(from);
        if (shown)
            widget.show();
        WidgetUtils::moveDialogToCenterOfScreen(&widget);
        QCOMPARE(widget.pos(), position);
        QCOMPARE(widget.size(), size);
    }
}

void tst_WidgetUtils::centerOnParent_data()
{
    const auto row = columns<QRect, QSize, QPoint>(
        "parent", "size", "position"); // of the frame, which is 4 pixels wider and taller
    row("even", QRect(100, 200, 300, 200), QSize(96, 46), QPoint(200, 275));
    row("odd", QRect(101, 201, 301, 201), QSize(96, 46), QPoint(201, 276));
    row("larger than the parent", QRect(300, 300, 100, 100), QSize(197, 297), QPoint(250, 200));
}

void tst_WidgetUtils::centerOnParent()
{
    QFETCH(QRect, parent);
    QFETCH(QSize, size);
    QFETCH(QPoint, position);
    QWidget window;
    window.setGeometry(parent);
    window.show();
    QDialog dialog(&window);
    dialog.resize(size);
    dialog.show();
    QVERIFY(WidgetUtils::moveDialogToCenterOfParent(&dialog));
    QCOMPARE(dialog.pos(), position);
    QCOMPARE(dialog.size(), size);
}

void tst_WidgetUtils::centerWithoutParent()
{
    QDialog dialog;
    dialog.move(33, 44);
    QVERIFY(!WidgetUtils::moveDialogToCenterOfParent(&dialog));
    QCOMPARE(dialog.pos(), QPoint(33, 44));
}

void tst_WidgetUtils::centerWithinAParent()
{
    // The parent's own position is added: its geometry is used unchanged.
    QWidget window;
    QWidget box(&window);
    box.setGeometry(10, 20, 200, 100);
    QWidget child(&box);
    child.resize(100, 50);
    QVERIFY(WidgetUtils::moveDialogToCenterOfParent(&child));
    QCOMPARE(child.pos(), QPoint(60, 45));
}

void tst_WidgetUtils::saveSize()
{
    QDialog dialog;
    dialog.resize(345, 123);
    QSize size;
    WidgetUtils::saveDialogSize(&dialog, size);
    QCOMPARE(size, QSize(345, 123));
    dialog.show();
    dialog.resize(350, 130);
    WidgetUtils::saveDialogSize(&dialog, size);
    QCOMPARE(size, QSize(350, 130));
}

void tst_WidgetUtils::toGlobal()
{
    QWidget window;
    window.setGeometry(100, 200, 300, 250);
    QWidget box(&window);
    box.setGeometry(10, 20, 200, 150);
    QWidget child(&box);
    child.setGeometry(3, 4, 50, 60);
    window.show();
    QCOMPARE(window.geometry(), QRect(100, 200, 300, 250));
    QCOMPARE(WidgetUtils::rectToGlobal(&window), QRect(100, 200, 300, 250));
    QCOMPARE(WidgetUtils::rectToGlobal(&child), QRect(113, 224, 50, 60));
    QCOMPARE(WidgetUtils::mapToGlobal(&child, QRect(-5, 6, 7, 8)), QRect(108, 230, 7, 8));
    QCOMPARE(WidgetUtils::mapToGlobal(&window, QRect(0, 0, 0, 0)), QRect(100, 200, 0, 0));
}

void tst_WidgetUtils::retainSize()
{
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    auto* upper = new QWidget;
    auto* lower = new QWidget;
    upper->setFixedHeight(50);
    layout->addWidget(upper);
    layout->addWidget(lower);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    policy.setHorizontalStretch(3);
    policy.setHeightForWidth(true);
    upper->setSizePolicy(policy);
    window.resize(100, 200);
    window.show();
    const QRect place = lower->geometry();

    WidgetUtils::RetainSizeWhenHidden(upper);
    policy.setRetainSizeWhenHidden(true);
    QCOMPARE(upper->sizePolicy(), policy);
    upper->hide();
    layout->activate();
    QCOMPARE(lower->geometry(), place);

    policy.setRetainSizeWhenHidden(false);
    upper->setSizePolicy(policy);
    layout->activate();
    QVERIFY(lower->geometry() != place);
}

void tst_WidgetUtils::roundedMask_data()
{
    const auto row = columns<QSize, int>("size", "radius");
    row("small radius", QSize(100, 60), 10);
    row("large radius", QSize(200, 120), 50);
    row("half of the height", QSize(101, 80), 40);
    row("none", QSize(40, 30), 0);
    row("negative", QSize(40, 30), -5);
}

void tst_WidgetUtils::roundedMask()
{
    QFETCH(QSize, size);
    QFETCH(int, radius);
    QWidget widget;
    widget.resize(size);
    WidgetUtils::createWidgetRoundedMask(&widget, radius);
    const QRegion mask = widget.mask();
    if (radius <= 0) {
        QCOMPARE(mask, QRegion(widget.rect()));
        return;
    }
    QCOMPARE(mask.boundingRect(), widget.rect());
    // A pixel is inside unless it is in a corner, further from the centre of the corner's circle
    // than the radius. On the circle itself both are accepted.
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const double dx =
                std::max({radius - (x + 0.5), x + 0.5 - (size.width() - radius), 0.0});
            const double dy =
                std::max({radius - (y + 0.5), y + 0.5 - (size.height() - radius), 0.0});
            const double distance = std::hypot(dx, dy);
            if (std::abs(distance - radius) <= 0.8)
                continue;
            if (mask.contains(QPoint(x, y)) != (distance < radius))
                QFAIL(qPrintable(QStringLiteral("pixel %1, %2").arg(x).arg(y)));
        }
    }
    QVERIFY(!mask.contains(QPoint(0, 0)));
    QVERIFY(!mask.contains(QPoint(size.width() - 1, size.height() - 1)));
}

void tst_WidgetUtils::roundedMaskDoesNotFollow()
{
    QWidget widget;
    widget.resize(50, 50);
    WidgetUtils::createWidgetRoundedMask(&widget, 5);
    widget.resize(100, 100);
    QCOMPARE(widget.mask().boundingRect(), QRect(0, 0, 50, 50));
}

void tst_WidgetUtils::roundedMaskWithoutArea()
{
    QWidget widget;
    widget.resize(0, 0);
    LogCapture log;
    WidgetUtils::createWidgetRoundedMask(&widget, 5);
    QVERIFY(widget.mask().isEmpty());
    QCOMPARE(log.lines(), QStringList());
}

void tst_WidgetUtils::helpButton()
{
    QWidget widget(nullptr, Qt::Dialog | Qt::WindowContextHelpButtonHint | Qt::WindowTitleHint);
    const Qt::WindowFlags before = widget.windowFlags();
    QVERIFY(before & Qt::WindowContextHelpButtonHint);
    WidgetUtils::removeHelpToolBarButtonOnWindows(&widget);
    QCOMPARE(int(widget.windowFlags()), int(before) & ~0x00010000);
}

void tst_WidgetUtils::helpButtonNotThere()
{
    QWidget widget(nullptr, Qt::Window | Qt::WindowTitleHint);
    widget.show();
    const Qt::WindowFlags before = widget.windowFlags();
    WidgetUtils::removeHelpToolBarButtonOnWindows(&widget);
    QCOMPARE(widget.windowFlags(), before);
    QVERIFY(widget.isVisible());
}

void tst_WidgetUtils::headerView()
{
    QHeaderView header(Qt::Horizontal);
    const QString style = header.styleSheet();
    WidgetUtils::customizeHeaderViewOnWindows(&header);
    WidgetUtils::customizeHeaderViewOnWindows(nullptr);
    QCOMPARE(header.styleSheet(), style);
    QVERIFY(!header.testAttribute(Qt::WA_SetStyle));
    QVERIFY(!header.testAttribute(Qt::WA_SetPalette));
    QVERIFY(!header.testAttribute(Qt::WA_SetFont));
}

void tst_WidgetUtils::showFades()
{
    QWidget widget;
    WidgetUtils::showAnimated(&widget, 1000000);
    QVERIFY(widget.isVisible());
    QCOMPARE(widget.windowOpacity(), 0.0);
    QPointer<QPropertyAnimation> animation = animationOf(&widget);
    QVERIFY(animation);
    QCOMPARE(animation->state(), QAbstractAnimation::Running);
    QCOMPARE(animation->propertyName(), QByteArray("windowOpacity"));
    QCOMPARE(animation->targetObject(), static_cast<QObject*>(&widget));
    QCOMPARE(animation->startValue().toDouble(), 0.0);
    QCOMPARE(animation->endValue().toDouble(), 1.0);
    QCOMPARE(animation->duration(), 1000000);
    QCOMPARE(animation->easingCurve().type(), QEasingCurve::Linear);
    for (const int percent : {25, 50, 75}) {
        animation->setCurrentTime(percent * 10000);
        // Qt stores the opacity in steps of 1/255.
        QVERIFY(std::abs(widget.windowOpacity() - percent / 100.0) <= 1 / 255.0);
    }
    animation->setCurrentTime(1000000);
    QCOMPARE(widget.windowOpacity(), 1.0);
    QTRY_VERIFY(!animation);
    QVERIFY(widget.isVisible());
}

void tst_WidgetUtils::hideFades()
{
    QWidget widget;
    widget.show();
    WidgetUtils::hideAnimated(&widget, 1000000);
    QVERIFY(!widget.isVisible());
    QCOMPARE(widget.windowOpacity(), 1.0);
    QPointer<QPropertyAnimation> animation = animationOf(&widget);
    QVERIFY(animation);
    QCOMPARE(animation->state(), QAbstractAnimation::Running);
    QCOMPARE(animation->propertyName(), QByteArray("windowOpacity"));
    QCOMPARE(animation->startValue().toDouble(), 1.0);
    QCOMPARE(animation->endValue().toDouble(), 0.0);
    QCOMPARE(animation->duration(), 1000000);
    QCOMPARE(animation->easingCurve().type(), QEasingCurve::Linear);
    animation->setCurrentTime(250000);
    QVERIFY(std::abs(widget.windowOpacity() - 0.75) <= 1 / 255.0);
    animation->setCurrentTime(1000000);
    QCOMPARE(widget.windowOpacity(), 0.0);
    QTRY_VERIFY(!animation);
    QVERIFY(!widget.isVisible());

    WidgetUtils::showAnimated(&widget, 1);
    QTRY_COMPARE(widget.windowOpacity(), 1.0);
    QVERIFY(widget.isVisible());
}

/// When the window appears it is transparent already, and when it goes it has begun to fade.
void tst_WidgetUtils::fadingStartsFirst()
{
    class Window : public QWidget
    {
    public:
        QList<double> fadesTo; // the end of the running animation, at each change
        double opacityWhenShown = -1;

    protected:
        void showEvent(QShowEvent* event) override
        {
            opacityWhenShown = windowOpacity();
            note();
            QWidget::showEvent(event);
        }
        void hideEvent(QHideEvent* event) override
        {
            note();
            QWidget::hideEvent(event);
        }

    private:
        void note()
        {
            const QList<QPropertyAnimation*> animations = findChildren<QPropertyAnimation*>();
            for (const QPropertyAnimation* animation : animations)
                if (animation->state() == QAbstractAnimation::Running)
                    fadesTo += animation->endValue().toDouble();
        }
    } window;
    WidgetUtils::showAnimated(&window, 1000000);
    QCOMPARE(window.opacityWhenShown, 0.0);
    WidgetUtils::hideAnimated(&window, 1000000);
    QCOMPARE(window.fadesTo, QList<double>({1.0, 0.0}));
}

void tst_WidgetUtils::fadesInNoTime()
{
    QWidget widget;
    widget.setWindowOpacity(0.5);
    WidgetUtils::showAnimated(&widget, 0);
    QVERIFY(widget.isVisible());
    QCOMPARE(widget.windowOpacity(), 1.0);
    WidgetUtils::hideAnimated(&widget, 0);
    QVERIFY(!widget.isVisible());
    QCOMPARE(widget.windowOpacity(), 0.0);
    QTRY_VERIFY(!animationOf(&widget));
}

void tst_WidgetUtils::hideStopsShow()
{
    QWidget widget;
    WidgetUtils::showAnimated(&widget, 1000000);
    QPointer<QPropertyAnimation> showing = animationOf(&widget);
    QVERIFY(showing);
    WidgetUtils::hideAnimated(&widget, 10);
    QTRY_VERIFY(!showing);
    QTRY_COMPARE(widget.windowOpacity(), 0.0);
    QTRY_VERIFY(!animationOf(&widget));
}

void tst_WidgetUtils::widgetGoesWhileFading()
{
    auto* widget = new QWidget;
    WidgetUtils::showAnimated(widget, 1000000);
    QPointer<QPropertyAnimation> animation = animationOf(widget);
    QVERIFY(animation);
    LogCapture log;
    delete widget;
    QVERIFY(!animation);
    QCoreApplication::processEvents();
    QCOMPARE(log.lines(), QStringList());
}

void tst_WidgetUtils::deleteOnClose()
{
    QPointer<QWidget> widget = new QWidget;
    WidgetUtils::setDeleteOnClose(widget);
    QVERIFY(widget->testAttribute(Qt::WA_DeleteOnClose));
    widget->show();
    widget->close();
    QTRY_VERIFY(!widget);
}

void tst_WidgetUtils::mainWindow()
{
    QVERIFY(!WidgetUtils::topLevelMainWindow());
    QWidget plain;
    QDialog dialog;
    QVERIFY(!WidgetUtils::topLevelMainWindow());
    {
        QMainWindow window; // not shown
        QCOMPARE(WidgetUtils::topLevelMainWindow(), &window);
        QMainWindow other;
        QMainWindow* first = nullptr;
        const QWidgetList all = QApplication::topLevelWidgets();
        for (QWidget* widget : all) {
            if (!first && (widget == &window || widget == &other))
                first = static_cast<QMainWindow*>(widget);
        }
        QCOMPARE(WidgetUtils::topLevelMainWindow(), first);
    }
    QVERIFY(!WidgetUtils::topLevelMainWindow());
}

void tst_WidgetUtils::mainWindowMustBeTopLevel()
{
    QWidget window;
    auto* inner = new QMainWindow(&window);
    inner->setWindowFlags(Qt::Widget);
    QVERIFY(!inner->isWindow());
    QVERIFY(!WidgetUtils::topLevelMainWindow());
}

void tst_WidgetUtils::parents()
{
    Grandparent root;
    auto* parent = new Parent;
    parent->setParent(&root);
    auto* object = new QObject(parent);
    QCOMPARE(WidgetUtils::parentsList(&root), QStringList());
    QCOMPARE(WidgetUtils::parentsList(parent), QStringList(QStringLiteral("Grandparent")));
    QCOMPARE(WidgetUtils::parentsList(object),
             QStringList({QStringLiteral("Parent"), QStringLiteral("Grandparent")}));
    auto* same = new Parent;
    same->setParent(parent);
    QCOMPARE(WidgetUtils::parentsList(same),
             QStringList({QStringLiteral("Parent"), QStringLiteral("Grandparent")}));
}

void tst_WidgetUtils::parentsAreAppended()
{
    Grandparent root;
    QObject object(&root);
    QStringList list(QStringLiteral("before"));
    WidgetUtils::parentsListPrivate(&root, list);
    QCOMPARE(list, QStringList(QStringLiteral("before")));
    WidgetUtils::parentsListPrivate(&object, list);
    QCOMPARE(list, QStringList({QStringLiteral("before"), QStringLiteral("Grandparent")}));
}

QTEST_MAIN(tst_WidgetUtils)
#include "tst_WidgetUtils.moc"
