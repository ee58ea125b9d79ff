// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// CommandLine: what the user asked for.

#ifndef COMMANDLINE_H
#define COMMANDLINE_H

#include <QString>
#include <QStringList>

struct CommandLine
{
    enum Request {
        ShowWindow,
        SaveScreenshots, ///< \a folder is set
        ShowText, ///< help or version: print \a text and succeed
        BadUsage ///< \a text says what is wrong
    };

    Request request = BadUsage;
    QString folder;
    int scale = 0; ///< 1 to 4; 0 if the user gave none
    QString text;

    /// \a arguments start with the program's name. Needs an application object.
    /// The folder is not checked here.
    static CommandLine parse(const QStringList& arguments);
};

#endif // COMMANDLINE_H
