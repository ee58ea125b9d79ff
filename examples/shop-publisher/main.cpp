// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// shop-publisher PROJECT SITE: a small host program of the library.
//
// It tells the library who it is, makes the application object and chooses its language. Then it
// reads the command line, takes the project's lock, lets a thread import the photographs and write
// the pages, shows the progress meanwhile, and says what came of it. With --watch it goes on and
// publishes what changes. Ctrl-C asks the thread, or the watch, to stop.

#include "CommandLine.h"
#include "Console.h"
#include "Languages.h"
#include "Project.h"
#include "ProjectLock.h"
#include "Publication.h"
#include "ShopPage.h"
#include "Site.h"
#include "StopSignals.h"
#include "Watch.h"

#include <CoreApplicationUtils.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QGuiApplication>

#include <csignal>
#include <memory>

namespace {

enum ExitCode { AllImported = 0, SomeFailed = 1, BadUsage = 2, ProjectIsOpen = 3, Stopped = 130 };

/// The texts of this file.
class Program
{
    Q_DECLARE_TR_FUNCTIONS(Program)
};

/// What Qt and the library log is for developers. The program tells failures in its own words.
void dropMessage(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text)
{
    if (type == QtFatalMsg)
        Console::printError(text + QLatin1Char('\n'));
}

void setIdentity()
{
    CoreApplicationUtils::setApplicationName(QStringLiteral("shop-publisher"));
    CoreApplicationUtils::setApplicationVersion(QStringLiteral(SHOP_PUBLISHER_VERSION));
    CoreApplicationUtils::setApplicationCompanyName(QStringLiteral("OrvaUtils"));
    // The member of the family that goes by its own name.
    CoreApplicationUtils::setApplicationCode(CoreApplicationUtils::Dunvale);
}

/// The GUI application object, which pictures with text need, for a program that opens no window.
std::unique_ptr<QGuiApplication> makeApplication(int& argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Outside a desktop session Qt makes itself a runtime folder in the temporary folder and says
    // so. This program needs none and writes nowhere but in the site: while Qt starts, the
    // temporary folder is a place where nothing can be made.
    const bool hasTemporaryFolder = qEnvironmentVariableIsSet("TMPDIR");
    const QByteArray temporaryFolder = qgetenv("TMPDIR");
    qputenv("TMPDIR", "/dev/null");
    auto application = std::make_unique<QGuiApplication>(argc, argv);
    if (hasTemporaryFolder)
        qputenv("TMPDIR", temporaryFolder);
    else
        qunsetenv("TMPDIR");
    return application;
}

ExitCode refuse(const QString& reason)
{
    Console::printError(QLatin1String("shop-publisher: ") + Console::printable(reason)
                        + QLatin1Char('\n') + Program::tr("Try 'shop-publisher --help' for more.")
                        + QLatin1Char('\n'));
    return BadUsage;
}

/// Another instance works on the project: \a reason says, line by line, which.
ExitCode refuseOpenProject(const QString& reason)
{
    QString shown;
    const QStringList lines = reason.split(QLatin1Char('\n'));
    for (const QString& line : lines)
        shown += (shown.isEmpty() ? QLatin1String("shop-publisher: ") : QLatin1String("  "))
            + Console::printable(line) + QLatin1Char('\n');
    Console::printError(shown);
    return ProjectIsOpen;
}

/// Runs the thread to its end, with the event loop for progress and signals.
void runToItsEnd(PublicationThread* thread, StopSignals* stopSignals, Console* console)
{
    QEventLoop loop;
    // The texts by value: the copy that the thread keeps is let go after this one, and the thread
    // sanitizer sees it by the count of the two.
    QObject::connect(thread, &Thread::progressThread, &loop,
                     [console](QString whole, QString step) { console->progress(whole, step); });
    QObject::connect(stopSignals, &StopSignals::stopRequested, thread,
                     &Thread::requestInterruption);
    QObject::connect(thread, &QThread::finished, &loop, &QEventLoop::quit);
    thread->start();
    loop.exec();
    thread->wait();
    console->end();
}

void summarise(const Publication& publication, const Site& site, Console* console)
{
    const QString page = site.folder() + QLatin1String("/index.html");
    if (publication.stopped())
        console->say(Program::tr("Stopped: %1 of %n photograph(s) imported, no page written",
                                 nullptr, publication.photographs())
                         .arg(publication.imported()));
    else if (!publication.pageWritten())
        return;
    else
        console->say(
            Program::tr("%1 of %n photograph(s) imported: %2", nullptr, publication.photographs())
                .arg(QString::number(publication.imported()), page));
    const QStringList unpublished = publication.unpublished();
    if (!unpublished.isEmpty())
        console->say(Program::tr("Not published, because of their kind: %1")
                         .arg(unpublished.join(QLatin1String(", "))));
    const QStringList languages = publication.shopLanguages();
    for (const QString& language : languages)
        console->say(Program::tr("Shop: %1")
                         .arg(site.folder() + QLatin1Char('/') + ShopPage::fileName(language)));
}

ExitCode publish(const Project& project, Site* site, StopSignals* stopSignals,
                 const CommandLine& commandLine)
{
    Console console(commandLine.quiet);
    Published published = site->record();
    PublicationOptions options;
    options.import.acceptTruncated = commandLine.acceptTruncated;
    options.import.jobs = commandLine.jobs;
    options.force = commandLine.force;
    Publication publication(project, site, &published, options);
    PublicationThread thread(&publication);
    // A signal that comes when all is done still ends the watch.
    std::unique_ptr<Watch> watch;
    if (commandLine.watch) {
        watch = std::make_unique<Watch>(project, site, &published, options, commandLine.quiet,
                                        commandLine.verbose);
        QObject::connect(stopSignals, &StopSignals::stopRequested, watch.get(), &Watch::stop);
    }
    runToItsEnd(&thread, stopSignals, &console);

    const QVector<ErrorableCode> failures = publication.failures();
    summarise(publication, *site, &console);
    console.report(failures, commandLine.verbose);
    if (publication.stopped())
        return Stopped;
    if (watch) {
        watch->run(failures);
        return Stopped;
    }
    return failures.isEmpty() ? AllImported : SomeFailed;
}

} // namespace

int main(int argc, char* argv[])
{
    qInstallMessageHandler(dropMessage);
    setIdentity();
    // Whoever reads our output may go; the site is finished all the same.
#ifdef SIGPIPE
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
#endif
    const auto application = makeApplication(argc, argv);
    CoreApplicationUtils::initStartupVars();
    // Before anything is made in the site, and until it is tidy again.
    StopSignals stopSignals;

    const QStringList arguments = QCoreApplication::arguments();
    const QString language = CommandLine::language(arguments);
    if (!Languages::choose(language))
        return refuse(Program::tr("There are no texts in the language %1, only in: %2.")
                          .arg(language, Languages::available().join(QLatin1String(", "))));
    const CommandLine commandLine = CommandLine::parse(arguments);
    if (commandLine.request == CommandLine::ShowText) {
        Console::print(commandLine.text);
        return AllImported;
    }
    if (commandLine.request == CommandLine::BadUsage)
        return refuse(commandLine.text);

    const Project project(commandLine.project);
    if (!project.exists())
        return refuse(Program::tr("There is no folder %1.").arg(commandLine.project));
    Site site(commandLine.site);
    QString reason = site.refusal(project);
    if (!reason.isEmpty())
        return refuse(reason);
    reason = commandLine.force ? QString() : site.ownersRefusal();
    if (!reason.isEmpty())
        return refuse(reason);
    ProjectLock lock;
    if (!lock.take(project, &reason))
        return refuseOpenProject(reason);
    if (!lock.isHeld() && commandLine.verbose)
        Console(commandLine.quiet)
            .say(Program::tr("No lock: the project's folder %1 cannot be written to")
                     .arg(project.folder()));
    const Site::Opened opened = site.open(&reason);
    if (opened == Site::InUse)
        return refuseOpenProject(reason);
    if (opened == Site::NotWritable)
        return refuse(reason);
    return publish(project, &site, &stopSignals, commandLine);
}
