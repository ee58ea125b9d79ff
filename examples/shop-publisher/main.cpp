// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// shop-publisher PROJECT SITE: a small program that uses the library.
//
// It sets its identity, creates the application object and chooses its language. Then it reads the
// command line, takes the project's lock, has a thread import the photographs and write the pages,
// shows the progress meanwhile, and reports the result. With --watch it keeps running and publishes
// what changes. Ctrl-C asks the thread, or the watch, to stop.

#include "CommandLine.h"
#include "Console.h"
#include "Languages.h"
#include "Pages.h"
#include "Project.h"
#include "Publication.h"
#include "Site.h"
#include "StopSignals.h"
#include "Watch.h"

#include <CoreApplicationUtils.h>
#include <FileUtils.h>
#include <ProjectFileLocker.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QFileInfo>
#include <QGuiApplication>
#include <QJsonArray>
#include <QMap>

#include <csignal>
#include <memory>

namespace {

enum ExitCode { AllImported = 0, SomeFailed = 1, BadUsage = 2, ProjectIsOpen = 3, Stopped = 130 };

/// The texts of this file.
class Program
{
    Q_DECLARE_TR_FUNCTIONS(Program)
};

/// What Qt and the library log is for developers. The program reports failures in its own words.
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
    // Outside a desktop session Qt creates a runtime folder in the temporary folder and logs it.
    // This program needs none and writes nowhere but in the site: while Qt starts, the temporary
    // folder is a path where nothing can be created.
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

/// Says why nothing is done. The hint at the help is useless if another instance has the project
/// open.
ExitCode refuse(const Console& console, const QString& reason, ExitCode code = BadUsage)
{
    const QString hint = Program::tr("Try 'shop-publisher --help' for more.");
    console.complain("refused", reason, code == BadUsage ? hint : QString());
    return code;
}

/// Runs \a publication to its end, with the event loop for progress and signals.
void runToItsEnd(Publication* publication, StopSignals* stopSignals, Console* console)
{
    PublicationThread thread(publication);
    QEventLoop loop;
    // The text by value: the thread's copy is released after this one, which the thread sanitizer
    // sees by their shared reference count.
    QObject::connect(
        &thread, &Thread::progressed, &loop,
        [console](int done, int total, QString step) { console->progress(done, total, step); });
    QObject::connect(stopSignals, &StopSignals::stopRequested, &thread,
                     &Thread::requestInterruption);
    QObject::connect(&thread, &QThread::finished, &loop, &QEventLoop::quit);
    thread.start();
    loop.exec();
    thread.wait();
    console->end();
}

void tellUnpublished(const Publication::Outcome& outcome, const Console& console)
{
    const QStringList& names = outcome.unpublished;
    if (!names.isEmpty())
        console.say("unpublished", {{QStringLiteral("names"), QJsonArray::fromStringList(names)}},
                    Program::tr("Not published, because of their kind: %1")
                        .arg(names.join(QLatin1String(", "))));
}

void summarise(const Publication::Outcome& outcome, const Site& site, const Console& console)
{
    const QString imported = QString::number(outcome.imported);
    const QString page = site.path(QStringLiteral("index.html"));
    QJsonObject facts{{QStringLiteral("photographs"), outcome.photographs},
                      {QStringLiteral("imported"), outcome.imported}};
    if (outcome.stopped) {
        console.say("stopped", facts,
                    Program::tr("Stopped: %1 of %n photograph(s) imported, no page written",
                                nullptr, outcome.photographs)
                        .arg(imported));
    } else if (outcome.pageWritten) {
        facts.insert(QStringLiteral("page"), page);
        console.say("published", facts,
                    Program::tr("%1 of %n photograph(s) imported: %2", nullptr, outcome.photographs)
                        .arg(imported, page));
    } else {
        return;
    }
    tellUnpublished(outcome, console);
    for (const QString& language : outcome.shopLanguages) {
        const QString shop = site.path(ShopPage::fileName(language));
        console.say("shop",
                    {{QStringLiteral("language"), language}, {QStringLiteral("page"), shop}},
                    Program::tr("Shop: %1").arg(shop));
    }
}

ExitCode publish(const Project& project, Site* site, StopSignals* stopSignals,
                 const CommandLine& commandLine, Console* console)
{
    Published published = site->record();
    Publication publication(project, site, &published, commandLine.options);
    std::unique_ptr<Watch> watch;
    if (commandLine.watch) {
        watch = std::make_unique<Watch>(project, site, &published, commandLine.options, console);
        // A signal that arrives when everything is done still ends the watch.
        QObject::connect(stopSignals, &StopSignals::stopRequested, watch.get(), &Watch::stop);
    }
    runToItsEnd(&publication, stopSignals, console);

    const QVector<ErrorableCode> failures = publication.failures();
    summarise(publication.outcome(), *site, *console);
    console->report(failures);
    if (watch && !publication.outcome().stopped)
        watch->run(failures);
    if (watch || publication.outcome().stopped)
        return Stopped;
    return failures.isEmpty() ? AllImported : SomeFailed;
}

/// Publishes nothing, and says what would fail.
ExitCode check(const Project& project, StopSignals* stopSignals, const CommandLine& commandLine,
               Console* console)
{
    Publication publication(project, nullptr, nullptr, commandLine.options);
    runToItsEnd(&publication, stopSignals, console);
    const Publication::Outcome& outcome = publication.outcome();
    const QVector<ErrorableCode> failures = publication.failures();
    if (outcome.stopped)
        return Stopped;
    if (failures.isEmpty())
        console->say("checked", {{QStringLiteral("photographs"), outcome.photographs}},
                     Program::tr("Nothing is wrong: %n photograph(s) can be published", nullptr,
                                 outcome.photographs));
    tellUnpublished(outcome, *console);
    console->report(failures);
    return failures.isEmpty() ? AllImported : SomeFailed;
}

/// Writes what an owner starts with: a shop.json, and a README.md in the program's language that
/// explains it, into \a folder, which is created with its sub-folder photos/ if needed. An existing
/// file is never replaced. Returns why nothing was written; empty if everything was.
QString writeNewProject(const QString& folder)
{
    const QMap<QString, QString> files{
        {QStringLiteral("README.md"), QStringLiteral(":/init/README.%1.md")},
        {QStringLiteral("shop.json"), QStringLiteral(":/init/shop.%1.json")}};
    for (auto file = files.begin(); file != files.end(); ++file) {
        const QFileInfo there(folder + QLatin1Char('/') + file.key());
        if (there.exists() || there.isSymLink())
            return Program::tr("%1 is there already, so nothing was written.")
                .arg(there.filePath());
    }
    if (!FileUtils::fileMkPath(folder + QLatin1String("/photos/")))
        return Program::tr("The folder %1 cannot be made.").arg(folder);
    for (auto file = files.begin(); file != files.end(); ++file) {
        const QString path = folder + QLatin1Char('/') + file.key();
        const QString content = file.value().arg(Languages::current());
        QString why;
        if (!FileUtils::replaceFileContent(path, FileUtils::readFileContent(content), &why))
            return Program::tr("%1 cannot be written (%2).").arg(path, why);
    }
    return QString();
}

ExitCode init(const QString& folder, const Console& console)
{
    const QString reason = writeNewProject(folder);
    if (!reason.isEmpty())
        return refuse(console, reason);
    console.say("begun", {{QStringLiteral("folder"), folder}},
                Program::tr("Begun: %1. Read README.md there, put photographs into photos/, and "
                            "try 'shop-publisher check'.")
                    .arg(folder));
    return AllImported;
}

/// Takes the lock of \a project. If nobody can create one, because its folder is not writable,
/// there is none. Returns false if another instance has it; \a reason says which.
bool lock(const Project& project, ProjectFileLocker* locker, QString* reason)
{
    if (locker->openNewProjectFolder(project.folder(), project.title(), reason))
        return true;
    if (!QFileInfo::exists(project.folder() + QLatin1String("/lockfile"))
        && !QFileInfo(project.folder()).isWritable())
        return true;
    const ProjectFileLocker::LockHolder holder = ProjectFileLocker::holder(project.folder());
    if (holder.processId != 0)
        *reason += QLatin1Char('\n')
            + Program::tr("Held by process %1 (%2) on %3")
                  .arg(QString::number(holder.processId), holder.application, holder.host);
    return false;
}

ExitCode run(const CommandLine& commandLine, StopSignals* stopSignals)
{
    Console console(commandLine.json        ? Console::ForPrograms
                        : commandLine.quiet ? Console::Quiet
                                            : Console::ForPeople,
                    commandLine.verbose);
    if (commandLine.request == CommandLine::ShowText) {
        Console::print(commandLine.text + QLatin1Char('\n'));
        return AllImported;
    }
    if (commandLine.request == CommandLine::BadUsage)
        return refuse(console, commandLine.text);
    if (commandLine.request == CommandLine::Init)
        return init(commandLine.project, console);

    const Project project(commandLine.project);
    if (!project.exists())
        return refuse(console, Program::tr("There is no folder %1.").arg(commandLine.project));
    if (commandLine.request == CommandLine::Check)
        return check(project, stopSignals, commandLine, &console);
    Site site(commandLine.site);
    QString reason = site.refusal(project);
    if (reason.isEmpty() && !commandLine.options.force)
        reason = site.ownersRefusal();
    if (!reason.isEmpty())
        return refuse(console, reason);
    ProjectFileLocker locker;
    if (!lock(project, &locker, &reason))
        return refuse(console, reason, ProjectIsOpen);
    if (locker.lockState() != ProjectFileLocker::LockState::Locked && console.isVerbose())
        console.say("unlocked", {},
                    Program::tr("No lock: the project's folder %1 cannot be written to")
                        .arg(project.folder()));
    const Site::Opened opened = site.open(&reason);
    if (opened != Site::Ready)
        return refuse(console, reason, opened == Site::InUse ? ProjectIsOpen : BadUsage);
    return publish(project, &site, stopSignals, commandLine, &console);
}

} // namespace

int main(int argc, char* argv[])
{
    qInstallMessageHandler(dropMessage);
    setIdentity();
    // The reader of our output may exit; the site is finished all the same.
#ifdef SIGPIPE
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
#endif
    // A file larger than the system allows is treated like one for which the disk has no room.
#ifdef SIGXFSZ
    static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
#endif
    const auto application = makeApplication(argc, argv);
    CoreApplicationUtils::initStartupVars();
    // Before anything is created in the site, and until it is cleaned up again.
    StopSignals stopSignals;

    const QStringList arguments = QCoreApplication::arguments();
    const QString language = CommandLine::language(arguments);
    if (!Languages::choose(language))
        return refuse(Console(Console::ForPeople, false),
                      Program::tr("There are no texts in the language %1, only in: %2.")
                          .arg(language, Languages::available().join(QLatin1String(", "))));
    return run(CommandLine::parse(arguments), &stopSignals);
}
