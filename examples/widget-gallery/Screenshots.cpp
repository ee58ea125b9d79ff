// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Screenshots.h"

#include "GalleryWindow.h"

#include <QCoreApplication>
#include <QDir>
#include <QPixmap>
#include <QSaveFile>

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("Screenshots", text);
}

} // namespace

bool saveScreenshots(GalleryWindow* window, const QString& folder,
                     QString* reason)
{
    const QDir dir(folder);
    if (!dir.mkpath(QStringLiteral("."))) {
        *reason = tr("The folder %1 cannot be made.").arg(folder);
        return false;
    }
    window->setAttribute(Qt::WA_DontShowOnScreen);
    window->resize(window->sizeForAllPages());
    window->show();
    for (int i = 0; i < window->pageCount(); ++i) {
        window->setCurrentPage(i);
        QCoreApplication::processEvents();
        QPixmap page = window->grab();
        // A picture with twice the pixels, not one with twice the density.
        page.setDevicePixelRatio(1);
        QSaveFile file(
            dir.filePath(window->pageId(i) + QStringLiteral(".png")));
        if (!file.open(QIODevice::WriteOnly) || !page.save(&file, "PNG")
            || !file.commit()) {
            *reason = tr("%1 cannot be saved: %2")
                          .arg(file.fileName(), file.errorString());
            return false;
        }
    }
    return true;
}
