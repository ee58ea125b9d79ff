// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// widget-gallery: a window that shows the library's visual and interactive
// features.
//
// It sets the application's identity, creates the application object, and shows
// the window, or saves a picture of each of its pages.

#include "CommandLine.h"
#include "GalleryWindow.h"
#include "Pictures.h"
#include "Screenshots.h"

#include <ApplicationUtils.h>
#include <CoreApplicationUtils.h>

#include <QApplication>
#include <QFont>
#include <QIcon>
#include <QTextStream>

#include <cstdio>

namespace {

enum ExitCode { AllWell = 0, Failed = 1, BadUsage = 2 };

void tellIdentity()
{
    CoreApplicationUtils::setApplicationName(QStringLiteral("Widget Gallery"));
    CoreApplicationUtils::setApplicationVersion(
        QStringLiteral(WIDGET_GALLERY_VERSION));
    CoreApplicationUtils::setApplicationCompanyName(
        QStringLiteral("OrvaUtils"));
    // The member of the family whose window title is the application's own
    // name.
    CoreApplicationUtils::setApplicationCode(CoreApplicationUtils::Dunvale);
}

/// Read before the application object of the window exists, because the scale
/// and the platform have to be known when it is created.
CommandLine readCommandLine(int& argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    return CommandLine::parse(QCoreApplication::arguments());
}

ExitCode fail(ExitCode code, const QString& reason)
{
    QTextStream(stderr) << "widget-gallery: " << reason << '\n';
    return code;
}

ExitCode takeScreenshots(const QString& folder)
{
    // Without a desktop there is no desktop font; this is about the size that
    // most have.
    QFont font = QApplication::font();
    font.setPixelSize(13);
    QApplication::setFont(font);

    GalleryWindow window;
    QString reason;
    if (!saveScreenshots(&window, folder, &reason))
        return fail(Failed, reason);
    QTextStream(stdout) << QCoreApplication::translate("widget-gallery",
                                                       "%1 pages saved in %2\n")
                               .arg(window.pageCount())
                               .arg(folder);
    return AllWell;
}

} // namespace

int main(int argc, char* argv[])
{
    tellIdentity();

    const CommandLine commandLine = readCommandLine(argc, argv);
    if (commandLine.request == CommandLine::ShowText) {
        QTextStream(stdout) << commandLine.text;
        return AllWell;
    }
    if (commandLine.request == CommandLine::BadUsage) {
        return fail(
            BadUsage,
            commandLine.text
                + QStringLiteral("\nTry 'widget-gallery --help' for more."));
    }
    if (commandLine.request == CommandLine::SaveScreenshots
        && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (commandLine.scale > 0)
        qputenv("QT_SCALE_FACTOR", QByteArray::number(commandLine.scale));

    ApplicationUtils::enableHightDPIMode();
    QApplication application(argc, argv);
    CoreApplicationUtils::initStartupVars();
    QApplication::setWindowIcon(QIcon(Pictures::boat(QSize(128, 128))));

    if (commandLine.request == CommandLine::SaveScreenshots)
        return takeScreenshots(commandLine.folder);
    GalleryWindow window;
    window.show();
    return QApplication::exec();
}
