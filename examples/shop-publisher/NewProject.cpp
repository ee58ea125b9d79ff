// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "NewProject.h"

#include "Languages.h"

#include <FileUtils.h>

#include <QFileInfo>

bool NewProject::write(const QString& folder, QString* reason)
{
    const struct
    {
        QString resource;
        QString path;
    } files[] = {{QStringLiteral(":/init/README.%1.md").arg(Languages::current()),
                  folder + QLatin1String("/README.md")},
                 {QStringLiteral(":/init/shop.%1.json").arg(Languages::current()),
                  folder + QLatin1String("/shop.json")}};
    for (const auto& file : files) {
        if (QFileInfo::exists(file.path) || QFileInfo(file.path).isSymLink()) {
            *reason = tr("%1 is there already, so nothing was written.").arg(file.path);
            return false;
        }
    }
    if (!FileUtils::fileMkPath(folder + QLatin1String("/photos/"))) {
        *reason = tr("The folder %1 cannot be made.").arg(folder);
        return false;
    }
    for (const auto& file : files) {
        QString why;
        if (!FileUtils::replaceFileContent(file.path, FileUtils::readFileContent(file.resource),
                                           &why)) {
            *reason = tr("%1 cannot be written (%2).").arg(file.path, why);
            return false;
        }
    }
    return true;
}
