// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "CommandLine.h"

#include "Languages.h"

#include <QCommandLineParser>

namespace {

void addOptions(QCommandLineParser* parser)
{
    parser->addOptions({
        // Not addHelpOption(): it also adds options of Qt that do not apply to this program.
        {{QStringLiteral("h"), QStringLiteral("help")}, CommandLine::tr("Show this help.")},
        {{QStringLiteral("v"), QStringLiteral("version")}, CommandLine::tr("Show the version.")},
        {{QStringLiteral("q"), QStringLiteral("quiet")},
         CommandLine::tr("Print nothing but failures.")},
        {QStringLiteral("verbose"), CommandLine::tr("Show the way that each failure took.")},
        {QStringLiteral("json"),
         CommandLine::tr("Print what happens for other programs: a JSON object in each line.")},
        {{QStringLiteral("w"), QStringLiteral("watch")},
         CommandLine::tr("Go on and publish what changes in PROJECT, until Ctrl-C.")},
        {QStringLiteral("force"),
         CommandLine::tr("Publish into a SITE that this program has not made, or that shows "
                         "another project. What it replaces there is lost.")},
        {QStringLiteral("accept-truncated"),
         CommandLine::tr("Publish photographs that break off; what is missing is grey.")},
        {{QStringLiteral("j"), QStringLiteral("jobs")},
         CommandLine::tr("Import so many photographs at a time; else as many as the processor "
                         "works on."),
         CommandLine::tr("number")},
        {{QStringLiteral("l"), QStringLiteral("language")},
         CommandLine::tr("Speak this language (%1); else the system's.")
             .arg(Languages::available().join(QLatin1String(", "))),
         CommandLine::tr("code")},
    });
}

} // namespace

QString CommandLine::language(const QStringList& arguments)
{
    QCommandLineParser parser;
    addOptions(&parser);
    parser.parse(arguments);
    return parser.value(QStringLiteral("language"));
}

CommandLine CommandLine::parse(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        tr("Imports the photographs of a shop project upright into a web site and makes the pages "
           "that show them.\n\n"
           "  shop-publisher PROJECT SITE    publishes the project\n"
           "  shop-publisher check PROJECT   says everything that is wrong in it, writes nothing\n"
           "  shop-publisher init FOLDER     begins a project: a shop.json, and a README beside it"
           "\n\n"
           "Careful: in SITE the program replaces its pages and pictures, removes those whose "
           "photographs have gone, and makes static/ equal to that of PROJECT: whatever else is in "
           "there is lost. A SITE that it has not made is refused.\n\n"
           "Exit code: 0 all imported, 1 some failed, 2 bad usage, 130 stopped by Ctrl-C,\n"
           "3 the project is open in another instance."));
    addOptions(&parser);
    parser.addPositionalArgument(
        QStringLiteral("PROJECT"),
        tr("Folder that holds photos/, or a plain folder of photographs (JPEG, PNG, GIF, SVG, "
           "WebP, TIFF)."));
    parser.addPositionalArgument(QStringLiteral("SITE"),
                                 tr("Folder of the web site, made when missing."));

    CommandLine result;
    if (!parser.parse(arguments)) {
        result.refuse(parser.errorText());
        return result;
    }
    const auto isSet = [&parser](const char* name) { return parser.isSet(QLatin1String(name)); };
    result.quiet = isSet("quiet");
    result.verbose = isSet("verbose");
    result.json = isSet("json");
    result.watch = isSet("watch");
    result.options.force = isSet("force");
    result.options.import.acceptTruncated = isSet("accept-truncated");
    if (isSet("help") || isSet("version")) {
        result.request = ShowText;
        result.text = isSet("help") ? parser.helpText().trimmed()
                                    : QCoreApplication::applicationName() + QLatin1Char(' ')
                + QCoreApplication::applicationVersion();
        return result;
    }
    result.takeFolders(parser.positionalArguments());
    const QString jobs = parser.value(QStringLiteral("jobs"));
    result.options.import.jobs = jobs.toInt();
    if (isSet("jobs") && (jobs.toInt() < 1 || jobs.toInt() > 256))
        result.refuse(
            tr("The number of jobs \"%1\" is not a whole number from 1 to 256.").arg(jobs));
    return result;
}

void CommandLine::takeFolders(QStringList folders)
{
    const QString command = folders.value(0);
    request = command == QLatin1String("check") ? Check
        : command == QLatin1String("init")      ? Init
                                                : Publish;
    if (request != Publish) {
        folders.removeFirst();
        if (folders.size() != 1)
            refuse(tr("One folder is needed after \"%1\"; %2 given.")
                       .arg(command, QString::number(folders.size())));
    } else if (folders.size() != 2) {
        refuse(tr("Two folders are needed, PROJECT and SITE; %1 given.").arg(folders.size()));
    }
    // An empty path would silently mean the current folder.
    if (request != BadUsage && folders.contains(QString()))
        refuse(tr("The name of a folder is empty."));
    project = folders.value(0);
    site = folders.value(1);
}

void CommandLine::refuse(const QString& reason)
{
    request = BadUsage;
    text = reason;
}
