// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// FileSystemGuiService: shows a file and starts a program through the desktop.

#ifndef ORVAUTILS_FILESYSTEMGUISERVICE_H
#define ORVAUTILS_FILESYSTEMGUISERVICE_H

#include "orvautils_export.h"

#include <QString>
#include <QStringList>

class QObject;

/// Runs the platform's command `open`, found through PATH. Nothing is detected, reported or logged:
/// if the command is missing or fails, nothing happens, and the result is still true.
///
/// \code
/// FileSystemGuiService::revealInFileExplorer(project + QStringLiteral("/images/boat.jpg"));
/// \endcode
class ORVAUTILS_EXPORT FileSystemGuiService
{
public:
    /// Selects the file \a path in the file manager: runs `open -R <path>` and waits for it to
    /// finish. Always true.
    static bool revealInFileExplorer(const QString& path);

    /// Starts \a program with its \a arguments: `open -a <program> <arguments>`, without waiting.
    /// The command's process belongs to \a parent, which closes it when it is deleted; with a null
    /// \a parent it is never deleted. Requires a thread with an event loop. Always true.
    static bool openProgram(QObject* parent, const QString& program, const QStringList& arguments);
};

#endif // ORVAUTILS_FILESYSTEMGUISERVICE_H
