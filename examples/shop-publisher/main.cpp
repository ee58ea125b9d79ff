// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// shop-publisher PROJECT SITE: a small host program of the library.
//
// It tells the application who it is, makes the application object, and then does its work: reads
// the command line, looks the project through, imports each photograph into the site and writes the
// page that shows them.

#include "CommandLine.h"
#include "Console.h"
#include "ContactSheet.h"
#include "LogKeeper.h"
#include "PictureImporter.h"
#include "Project.h"
#include "Site.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <csignal>
#include <memory>

namespace {

enum ExitCode { AllImported = 0, SomeFailed = 1, BadUsage = 2 };

QString tr(const char* text)
{
    return QCoreApplication::translate("shop-publisher", text);
}

/// The GUI application object, which pictures with text need, for a program that opens no window.
std::unique_ptr<QGuiApplication> makeApplication(int& argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Outside a desktop session Qt makes itself a runtime folder in the temporary folder and says
    // so. This program needs none and writes nowhere but in the site: while Qt starts, the
    // temporary folder is a place where nothing can be made, and the complaint is kept back.
    const bool hasTemporaryFolder = qEnvironmentVariableIsSet("TMPDIR");
    const QByteArray temporaryFolder = qgetenv("TMPDIR");
    qputenv("TMPDIR", "/dev/null");
    const LogKeeper log;
    auto application = std::make_unique<QGuiApplication>(argc, argv);
    if (hasTemporaryFolder)
        qputenv("TMPDIR", temporaryFolder);
    else
        qunsetenv("TMPDIR");
    return application;
}

ExitCode refuse(const QString& reason)
{
    Console::printError(tr("shop-publisher: %1\nTry 'shop-publisher --help' for more.\n")
                            .arg(Console::printable(reason)));
    return BadUsage;
}

ExitCode publish(const Project& project, Site* site, Console* console)
{
    Failures failures;
    const QVector<Photograph> photographs = project.photographs(&failures);
    ContactSheet sheet(project.title());
    int imported = 0;
    {
        PictureImporter importer(site);
        console->begin(photographs.size());
        for (const Photograph& photograph : photographs) {
            console->started(photograph.name);
            PublishedPicture picture;
            QString reason;
            if (importer.import(photograph, &picture, &reason)) {
                sheet.add(picture);
                ++imported;
            } else {
                failures.append({photograph.name, reason});
            }
            console->finished(photograph.name, reason);
        }
        console->end();
    }

    const QString page = QStringLiteral("index.html");
    QString reason;
    if (!site->write(page, sheet.html(), &reason))
        failures.append({page, reason});
    else if (photographs.isEmpty())
        console->say(tr("No photograph found in %1").arg(project.photosFolder()));
    else
        console->say(tr("%1 of %2 photographs imported: %3")
                         .arg(imported)
                         .arg(photographs.size())
                         .arg(site->folder() + QLatin1Char('/') + page));
    console->report(failures);
    return failures.isEmpty() ? AllImported : SomeFailed;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication::setApplicationName(QStringLiteral("shop-publisher"));
    QCoreApplication::setApplicationVersion(QStringLiteral(SHOP_PUBLISHER_VERSION));

    // Whoever reads our output may go; the site is finished all the same.
    std::signal(SIGPIPE, SIG_IGN);
    const auto application = makeApplication(argc, argv);

    const CommandLine commandLine = CommandLine::parse(QCoreApplication::arguments());
    if (commandLine.request == CommandLine::ShowText) {
        Console::print(commandLine.text);
        return AllImported;
    }
    if (commandLine.request == CommandLine::BadUsage)
        return refuse(commandLine.text);

    const Project project(commandLine.project);
    if (!project.exists())
        return refuse(tr("There is no folder %1.").arg(commandLine.project));
    Site site(commandLine.site);
    QString reason = site.refusal(project);
    if (!reason.isEmpty() || !site.open(&reason))
        return refuse(reason);

    Console console(commandLine.quiet);
    return publish(project, &site, &console);
}
