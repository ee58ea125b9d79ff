// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The smallest program of a user: it uses one function of each class that the package installs.

#include <ApplicationUtils.h>
#include <CoreApplicationUtils.h>
#include <EventUtils.h>
#include <ExifUtils.h>
#include <FileUtils.h>
#include <FlagsUtils.h>
#include <ImageUtils.h>
#include <KeyPressCheatCodeDetection.h>
#include <ListUtils.h>
#include <MetaObjectUtils.h>
#include <QExifImageHeader.h>
#include <QExifValue.h>
#include <QObjectEventFilter.h>
#include <WidgetUtils.h>

#include <QApplication>
#include <QKeyEvent>

namespace {

// What the frame of an application calls.
bool usesTheFrame()
{
    QObject object;
    KeyPressCheatCodeDetection(&object).setKey(QStringLiteral("shop"));
    QObjectEventFilter filter(&object);
    QKeyEvent backspace(QEvent::KeyPress, Qt::Key_Backspace, Qt::NoModifier);
    Qt::ItemFlags flags;
    FlagsUtils::setFlag(flags, Qt::ItemIsEditable, true);
    CoreApplicationUtils::setApplicationName(QStringLiteral("consumer"));
    return CoreApplicationUtils::applicationGuiName() == QStringLiteral("consumer")
        && ApplicationUtils::pathApplicationSettings().endsWith(QStringLiteral("/consumer/"))
        && EventUtils::match_KeyDelete(&backspace) && flags == Qt::ItemIsEditable
        && ListUtils::allObjectIsSameClass({&object})
        && MetaObjectUtils::hasMethod(&object, SLOT(deleteLater()))
        && WidgetUtils::parentsList(&filter) == QStringList(QStringLiteral("QObject"));
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    return usesTheFrame() ? 0 : 1;
}
