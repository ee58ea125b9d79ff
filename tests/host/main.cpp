// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Makes the library log a failure; the test reads it from the host's own log.

#include <DirectorySynchronizer.h>
#include <DirectoryWatcher.h>
#include <FileUtils.h>
#include <KeyPressCheatCodeDetection.h>

int main()
{
    return FileUtils::forceCopy(QStringLiteral("/nowhere/a.txt"), QStringLiteral("/nowhere/b.txt"))
        ? 1
        : 0;
}
