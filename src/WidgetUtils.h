// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// WidgetUtils: common operations on dialogs and widgets: find the layout of a widget, position and
// resize a dialog, round its corners, fade it in and out.

#ifndef ORVAUTILS_WIDGETUTILS_H
#define ORVAUTILS_WIDGETUTILS_H

#include "orvautils_export.h"

#include <QRect>
#include <QSize>
#include <QStringList>

class QHeaderView;
class QLayout;
class QMainWindow;
class QObject;
class QScreen;
class QTabWidget;
class QWidget;

/// Helpers for widgets, their windows and their ancestors.
///
/// \code
/// WidgetUtils::restoreDialogSize(dialog, settings.value(key).toSize());
/// WidgetUtils::showAnimated(dialog, 200);
/// \endcode
///
/// No function takes or transfers ownership. Widgets and objects passed in must not be null, which
/// is not checked; only findParentLayout() accepts a null layout. No state is kept and nothing is
/// logged.
///
/// Thread: the GUI thread; parentsList() may be called from any thread as long as the objects do
/// not change.
class ORVAUTILS_EXPORT WidgetUtils
{
public:
    // Layouts and tabs

    /// The layout that contains \a w directly, searched in the layout of \a parent as by the next
    /// overload; null when there is none.
    static QLayout* findParentLayout(QWidget* parent, QWidget* w);

    /// The layout that contains \a w directly: \a layout itself or the first found in the layouts
    /// nested in it, item by item. Null when there is none, and for a layout that is null or empty.
    /// Layouts of widgets within the layout are not searched.
    static QLayout* findParentLayout(QLayout* layout, QWidget* w);

    /// Makes the text of every tab black if the operating system's product version
    /// (QSysInfo::productVersion()) is "10.16" or later, in the order of
    /// StringUtils::compareVersion(). Below that, and if the version is not a number, nothing
    /// happens. The name of the system is not checked. Tabs that are added later are not black.
    static void fixColorTabBar(QTabWidget* tabWidget);

    // Screens, sizes and places

    /// The screen that shows most of \a widget, shown or not; the first of the application if none
    /// shows any part of it. Null only when there are no screens.
    static QScreen* widgetScreen(QWidget* widget);

    /// Gives \a dialog the size \a size, as saveDialogSize() stored it, and centres it on the
    /// available area of its screen as moveDialogToCenterOfScreen() does.
    ///
    /// When \a size is invalid or taller than that area, the height becomes that of the area. The
    /// width is taken as it is, also when it is wider than the area; Qt keeps the dialog within its
    /// minimum and maximum sizes, so that an invalid width becomes the minimum.
    static void restoreDialogSize(QWidget* dialog, const QSize& size);

    /// Moves \a widget so that its frame is centred on the available area of its screen: half of
    /// the difference between the area and the frame, in whole pixels rounded towards 0, is to the
    /// left of the frame and above it. A widget that was never shown has no frame yet; its content
    /// is centred.
    static void moveDialogToCenterOfScreen(QWidget* widget);

    /// Moves \a widget so that its frame is centred, in the same way, on QWidget::geometry() of its
    /// parent. The geometry is not mapped to the screen: for a window the parent is meant to be a
    /// window too. Returns false, without moving, when there is no parent widget.
    static bool moveDialogToCenterOfParent(QWidget* widget);

    /// Stores the current size of \a widget, without its frame, in \a size.
    static void saveDialogSize(QWidget* widget, QSize& size);

    /// The whole of \a widget, without its frame, in global coordinates.
    static QRect rectToGlobal(const QWidget* widget);

    /// \a rect of \a widget in global coordinates.
    static QRect mapToGlobal(const QWidget* widget, const QRect& rect);

    /// Lets \a widget keep its place in its layout while it is hidden. The rest of its size policy
    /// stays.
    static void RetainSizeWhenHidden(QWidget* widget);

    // Windows

    /// Rounds the corners of \a widget, at its current size, to quarter circles of \a radius pixels
    /// with a mask. The mask does not follow later changes of the size. With a \a radius of 0 or
    /// less the corners stay square.
    static void createWidgetRoundedMask(QWidget* widget, int radius);

    /// Removes the help button from the title bar: clears Qt::WindowContextHelpButtonHint from the
    /// window flags of \a widget. Qt hides a window whose flags change; call it before show().
    static void removeHelpToolBarButtonOnWindows(QWidget* widget);

    /// Does nothing: header views need no help on the platforms of this library.
    static void customizeHeaderViewOnWindows(QHeaderView* headerView);

    /// Shows \a widget, a window, while its opacity grows evenly from 0 to 1.0 in \a durationMs
    /// milliseconds. The animation deletes itself; it is a child of the widget.
    static void showAnimated(QWidget* widget, int durationMs);

    /// Starts the same animation of \a durationMs milliseconds from 1.0 to 0 and hides \a widget at
    /// once. It is deliberate that hiding does not wait for the animation.
    ///
    /// The animation continues while the window is hidden, and the opacity ends at 0: a plain
    /// show() meanwhile shows a window that fades away, and after it a transparent one. The next
    /// showAnimated() stops the animation and brings the window back; QWidget::setWindowOpacity()
    /// does so without fading, once the animation has ended.
    static void hideAnimated(QWidget* widget, int durationMs);

    /// Lets \a widget delete itself when it is closed (Qt::WA_DeleteOnClose).
    static void setDeleteOnClose(QWidget* widget);

    /// The first of the application's top-level widgets that is a QMainWindow, shown or not, or
    /// null. If there are several, the order is Qt's and should not be relied on.
    static QMainWindow* topLevelMainWindow();

    // Ancestors

    /// The class names of the ancestors of \a object, nearest first, up to the root. Its own class
    /// is not among them: for an object without a parent the list is empty.
    ///
    /// \code
    /// WidgetUtils::parentsList(okButton); // {"QDialogButtonBox", "QDialog", "QMainWindow"}
    /// \endcode
    static QStringList parentsList(QObject* object);

    /// Appends the class names that parentsList() gives for \a object to \a list.
    static void parentsListPrivate(QObject* object, QStringList& list);
};

#endif // ORVAUTILS_WIDGETUTILS_H
