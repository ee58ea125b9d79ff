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
        ShowText, ///< help or version: print \a text, all is well
        BadUsage ///< \a text says what is wrong
    };

    Request request = BadUsage;
    QString folder;
    int scale = 0; ///< 1 to 4; 0 when the user named none
    QString text;

    /// \a arguments begin with the program's name. Needs an application object.
    /// The folder is not looked at here.
    static CommandLine parse(const QStringList& arguments);
};

#endif // COMMANDLINE_H
