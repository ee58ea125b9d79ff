// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "CommandLine.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace {

const int largestScale = 4;

QString tr(const char* text)
{
    return QCoreApplication::translate("CommandLine", text);
}

} // namespace

CommandLine CommandLine::parse(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        tr("Shows what the library offers to the eye and the hand, one page "
           "per topic.\n\n"
           "Exit code: 0 all is well, 1 a picture could not be saved, 2 bad "
           "usage."));
    // Not addHelpOption(): it also adds options of Qt that do not apply to this
    // program.
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  tr("Show this help."));
    const QCommandLineOption version(
        {QStringLiteral("v"), QStringLiteral("version")},
        tr("Show the version."));
    const QCommandLineOption screenshot(
        QStringLiteral("screenshot"),
        tr("Save a picture of each page as a PNG in FOLDER, made when missing, "
           "and end. No display is needed."),
        QStringLiteral("FOLDER"));
    const QCommandLineOption scale(
        QStringLiteral("scale"),
        tr("Device pixels per pixel, 1 to %1.").arg(largestScale),
        QStringLiteral("N"));
    parser.addOption(help);
    parser.addOption(version);
    parser.addOption(screenshot);
    parser.addOption(scale);

    CommandLine result;
    if (!parser.parse(arguments)) {
        result.text = parser.errorText();
        return result;
    }
    if (parser.isSet(help)) {
        result.request = ShowText;
        result.text = parser.helpText();
        return result;
    }
    if (parser.isSet(version)) {
        result.request = ShowText;
        result.text =
            QStringLiteral("widget-gallery " WIDGET_GALLERY_VERSION "\n");
        return result;
    }
    const QStringList others = parser.positionalArguments();
    if (!others.isEmpty()) {
        result.text = tr("\"%1\" is no option.").arg(others.first());
        return result;
    }
    if (parser.isSet(scale)) {
        result.scale = parser.value(scale).toInt();
        if (result.scale < 1 || result.scale > largestScale) {
            result.text =
                tr("The scale \"%1\" is not a whole number from 1 to %2.")
                    .arg(parser.value(scale))
                    .arg(largestScale);
            return result;
        }
    }
    if (parser.isSet(screenshot)) {
        // An empty path would silently mean the current folder.
        result.folder = parser.value(screenshot);
        if (result.folder.isEmpty()) {
            result.text = tr("The name of the folder is empty.");
            return result;
        }
        result.request = SaveScreenshots;
        return result;
    }
    result.request = ShowWindow;
    return result;
}
