// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "CommandLine.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("CommandLine", text);
}

} // namespace

CommandLine CommandLine::parse(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        tr("Imports the photographs of a shop project upright into a web site and makes a page "
           "that shows them.\n\n"
           "Exit code: 0 all imported, 1 some failed, 2 bad usage."));
    // Not addHelpOption(): it also brings options of Qt that mean nothing to this program.
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  tr("Show this help."));
    const QCommandLineOption version({QStringLiteral("v"), QStringLiteral("version")},
                                     tr("Show the version."));
    const QCommandLineOption quiet({QStringLiteral("q"), QStringLiteral("quiet")},
                                   tr("Print nothing but failures."));
    parser.addOption(help);
    parser.addOption(version);
    parser.addOption(quiet);
    parser.addPositionalArgument(
        QStringLiteral("PROJECT"),
        tr("Folder that holds photos/, or a plain folder of photographs (JPEG, PNG, GIF, SVG)."));
    parser.addPositionalArgument(
        QStringLiteral("SITE"),
        tr("Folder of the web site, made when missing: images/, thumbs/ and index.html."));

    CommandLine result;
    if (!parser.parse(arguments)) {
        result.text = parser.errorText();
        return result;
    }
    if (parser.isSet(help) || parser.isSet(version)) {
        result.request = ShowText;
        result.text = parser.isSet(help) ? parser.helpText()
                                         : QCoreApplication::applicationName() + QLatin1Char(' ')
                + QCoreApplication::applicationVersion() + QLatin1Char('\n');
        return result;
    }
    const QStringList folders = parser.positionalArguments();
    if (folders.size() != 2) {
        result.text = tr("Two folders are needed, PROJECT and SITE; %1 given.").arg(folders.size());
        return result;
    }
    // An empty path would silently mean the current folder.
    if (folders.contains(QString())) {
        result.text = tr("The name of a folder is empty.");
        return result;
    }
    result.request = Publish;
    result.project = folders.at(0);
    result.site = folders.at(1);
    result.quiet = parser.isSet(quiet);
    return result;
}
