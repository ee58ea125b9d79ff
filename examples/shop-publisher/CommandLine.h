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
        Publish, ///< \a project and \a site are set
        ShowText, ///< help or version: print \a text, all is well
        BadUsage ///< \a text says what is wrong
    };

    Request request = BadUsage;
    QString project;
    QString site;
    bool quiet = false;
    QString text;

    /// \a arguments begin with the program's name. The folders are not looked at here.
    static CommandLine parse(const QStringList& arguments);
};

#endif // COMMANDLINE_H
