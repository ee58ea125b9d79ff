// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "WidgetUtils.h"

#include "StringUtils.h"

#include <QApplication>
#include <QBitmap>
#include <QDesktopWidget>
#include <QLayout>
#include <QMainWindow>
#include <QPainter>
#include <QPainterPath>
#include <QPropertyAnimation>
#include <QScreen>
#include <QSysInfo>
#include <QTabBar>
#include <QTabWidget>

namespace {

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
    // The number is negative where no screen shows any of it.
    const int number = QApplication::desktop()->screenNumber(widget);
    return QGuiApplication::screens().value(qMax(0, number));
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
    if (!mask.isNull()) { // as it is for a widget without any area
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
