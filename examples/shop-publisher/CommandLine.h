// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// CommandLine: what the user asked for.

#ifndef COMMANDLINE_H
#define COMMANDLINE_H

#include "Publication.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

struct CommandLine
{
    Q_DECLARE_TR_FUNCTIONS(CommandLine)

public:
    enum Request {
        Publish, ///< \a project and \a site are set
        Check, ///< \a project is set
        Init, ///< \a project, which is to be made, is set
        ShowText, ///< help or version: print \a text and succeed
        BadUsage ///< \a text says what is wrong
    };

    Request request = BadUsage;
    QString project;
    QString site;
    bool quiet = false;
    bool verbose = false;
    bool json = false;
    bool watch = false;
    PublicationOptions options;
    QString text;

    /// \a arguments start with the program's name. The folders are not checked here. The texts are
    /// in the language of the program, which must be chosen first: see language().
    static CommandLine parse(const QStringList& arguments);

    /// The language that \a arguments ask for; empty if they name none. Other errors in them are
    /// ignored.
    static QString language(const QStringList& arguments);

private:
    void takeFolders(QStringList folders);
    void refuse(const QString& reason);
};

#endif // COMMANDLINE_H
