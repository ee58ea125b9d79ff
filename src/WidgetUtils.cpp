// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "WidgetUtils.h"

#include "StringUtils.h"

#include <QApplication>
#include <QBitmap>
#include <QLayout>
#include <QMainWindow>
#include <QPainter>
#include <QPainterPath>
#include <QPropertyAnimation>
#include <QScreen>
#include <QSysInfo>
#include <QTabBar>
#include <QTabWidget>
#include <QWindow>

namespace {

/// The screens between which \a widget can be moved: all screens of one desktop.
QList<QScreen*> screensOfDesktop(const QWidget* widget)
{
    const QWidget* const native = widget->windowHandle() ? widget : widget->nativeParentWidget();
    const QWindow* const window = native ? native->windowHandle() : nullptr;
    return window && window->screen() ? window->screen()->virtualSiblings()
                                      : QGuiApplication::screens();
}

/// The frame of \a widget in global coordinates.
QRect frameOnDesktop(const QWidget* widget)
{
    QRect frame = widget->frameGeometry();
    if (!widget->isWindow())
        frame.moveTopLeft(widget->mapToGlobal(QPoint(0, 0)));
    return frame;
}

QRect availableArea(QWidget* widget)
{
    const QScreen* screen = WidgetUtils::widgetScreen(widget);
    return screen ? screen->availableGeometry() : QRect();
}

void centerFrame(QWidget* widget, const QRect& area)
{
    // Before a window is shown Qt may give it a frame that is one pixel smaller than its content.
    const QSize frame = widget->frameGeometry().size().expandedTo(widget->size());
    widget->move(area.x() + (area.width() - frame.width()) / 2,
                 area.y() + (area.height() - frame.height()) / 2);
}

void startFading(QWidget* widget, int durationMs, double from, double to)
{
    auto* animation = new QPropertyAnimation(widget, "windowOpacity", widget);
    animation->setDuration(durationMs);
    animation->setStartValue(from);
    animation->setEndValue(to);
    animation->setEasingCurve(QEasingCurve::Linear);
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

} // namespace

// Layouts and tabs

QLayout* WidgetUtils::findParentLayout(QWidget* parent, QWidget* w)
{
    return findParentLayout(parent->layout(), w);
}

QLayout* WidgetUtils::findParentLayout(QLayout* layout, QWidget* w)
{
    if (!layout)
        return nullptr;
    for (int i = 0; i < layout->count(); ++i) {
        QLayoutItem* item = layout->itemAt(i);
        if (item->widget() == w)
            return layout;
        if (QLayout* found = findParentLayout(item->layout(), w))
            return found;
    }
    return nullptr;
}

void WidgetUtils::fixColorTabBar(QTabWidget* tabWidget)
{
    int order = 0;
    if (!StringUtils::compareVersion(QSysInfo::productVersion(), QStringLiteral("10.16"), order)
        || order < 0)
        return;
    for (int i = 0; i < tabWidget->count(); ++i)
        tabWidget->tabBar()->setTabTextColor(i, Qt::black);
}

// Screens, sizes and places

QScreen* WidgetUtils::widgetScreen(QWidget* widget)
{
    // By the widget's geometry, not by its window: a widget that is not shown has no window yet.
    QScreen* shows = nullptr;
    int mostPixels = 0;
    const QRect frame = widget ? frameOnDesktop(widget) : QRect();
    const QList<QScreen*> screens = widget ? screensOfDesktop(widget) : QList<QScreen*>();
    for (QScreen* screen : screens) {
        const QRect shown = screen->geometry() & frame;
        if (!shown.isEmpty() && shown.width() * shown.height() > mostPixels) {
            shows = screen;
            mostPixels = shown.width() * shown.height();
        }
    }
    return shows ? shows : QGuiApplication::screens().value(0);
}

void WidgetUtils::restoreDialogSize(QWidget* dialog, const QSize& size)
{
    const QRect area = availableArea(dialog);
    QSize restored = size;
    if (!size.isValid() || size.height() > area.height())
        restored.setHeight(area.height());
    dialog->resize(restored);
    centerFrame(dialog, area);
}

void WidgetUtils::moveDialogToCenterOfScreen(QWidget* widget)
{
    centerFrame(widget, availableArea(widget));
}

bool WidgetUtils::moveDialogToCenterOfParent(QWidget* widget)
{
    const QWidget* parent = widget->parentWidget();
    if (!parent)
        return false;
    centerFrame(widget, parent->geometry());
    return true;
}

void WidgetUtils::saveDialogSize(QWidget* widget, QSize& size)
{
    size = widget->size();
}

QRect WidgetUtils::rectToGlobal(const QWidget* widget)
{
    return mapToGlobal(widget, widget->rect());
}

QRect WidgetUtils::mapToGlobal(const QWidget* widget, const QRect& rect)
{
    return QRect(widget->mapToGlobal(rect.topLeft()), rect.size());
}

void WidgetUtils::RetainSizeWhenHidden(QWidget* widget)
{
    QSizePolicy policy = widget->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget->setSizePolicy(policy);
}

// Windows

void WidgetUtils::createWidgetRoundedMask(QWidget* widget, int radius)
{
    QBitmap mask(widget->size());
    if (!mask.isNull()) { // it is null for a widget without any area
        mask.fill(Qt::color0);
        QPainterPath path;
        path.addRoundedRect(QRectF(mask.rect()), radius, radius);
        QPainter painter(&mask);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(path, Qt::black);
    }
    widget->setMask(mask);
}

void WidgetUtils::removeHelpToolBarButtonOnWindows(QWidget* widget)
{
    widget->setWindowFlags(widget->windowFlags() & ~Qt::WindowContextHelpButtonHint);
}

void WidgetUtils::customizeHeaderViewOnWindows(QHeaderView* headerView)
{
    Q_UNUSED(headerView)
}

void WidgetUtils::showAnimated(QWidget* widget, int durationMs)
{
    startFading(widget, durationMs, 0, 1.0);
    widget->show();
}

void WidgetUtils::hideAnimated(QWidget* widget, int durationMs)
{
    startFading(widget, durationMs, 1.0, 0);
    widget->hide();
}

void WidgetUtils::setDeleteOnClose(QWidget* widget)
{
    widget->setAttribute(Qt::WA_DeleteOnClose);
}

QMainWindow* WidgetUtils::topLevelMainWindow()
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget* widget : widgets) {
        if (auto* mainWindow = qobject_cast<QMainWindow*>(widget))
            return mainWindow;
    }
    return nullptr;
}

// Ancestors

QStringList WidgetUtils::parentsList(QObject* object)
{
    QStringList list;
    parentsListPrivate(object, list);
    return list;
}

void WidgetUtils::parentsListPrivate(QObject* object, QStringList& list)
{
    for (const QObject* parent = object->parent(); parent; parent = parent->parent())
        list += QString::fromUtf8(parent->metaObject()->className());
}
