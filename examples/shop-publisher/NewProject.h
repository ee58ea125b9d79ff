// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// NewProject: what an owner begins with.

#ifndef NEWPROJECT_H
#define NEWPROJECT_H

#include <QCoreApplication>
#include <QString>

class NewProject
{
    Q_DECLARE_TR_FUNCTIONS(NewProject)

public:
    /// Writes a shop.json, and a README.md in the program's language that explains it, into
    /// \a folder, which is made with its sub-folder photos/ where it is missing. A file that is
    /// there already is never replaced: then nothing is written, and \a reason says why.
    static bool write(const QString& folder, QString* reason);
};

#endif // NEWPROJECT_H
