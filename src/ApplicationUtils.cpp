// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ApplicationUtils.h"

#include "CoreApplicationUtils.h"
#include "folderpath_p.h"
#include "logrecord_p.h"

#include <QDir>
#include <QGuiApplication>
#include <QMimeData>
#include <QRegularExpression>
#include <QScreen>
#include <QStringList>
#include <QWindow>

using namespace OrvaUtilsPrivate;

namespace {

bool homeIsOfTheDeveloper()
{
    return QDir::homePath().contains(QStringLiteral(ORVAUTILS_DEVELOPER_ACCOUNT));
}

// The folder lastComponent of a build tree, or the one in bundleFolder of an installed bundle. Both
// arguments end with "/".
QString shippedFolder(const QString& bundleFolder, const QString& lastComponent)
{
    QString path = QCoreApplication::applicationDirPath();
    if (!ApplicationUtils::detectDeveloperModeOrQualifMode()) {
        path.remove(QStringLiteral("MacOS"));
        return path + bundleFolder + lastComponent;
    }
    for (const char* const pattern :
         {"bin/debug.+\\.app/Contents/MacOS", "bin/release.+\\.app/Contents/MacOS"}) {
        path.remove(QRegularExpression(QString::fromLatin1(pattern),
                                       QRegularExpression::DotMatchesEverythingOption));
    }
    return withSlash(path) + lastComponent;
}

// The native name that one of Qt's own formats contains in quotes, or the whole format.
QString nativeFormat(const QString& format)
{
    if (!format.startsWith(QLatin1String("application/x-qt")) || !format.contains(QLatin1Char('"')))
        return format;
    return format.section(QLatin1Char('"'), 1, 1);
}

} // namespace

// Folders

QString ApplicationUtils::noEmptyStandardLocations(QStandardPaths::StandardLocation location)
{
    const QStringList paths = QStandardPaths::standardLocations(location);
    for (const QString& path : paths) {
        if (!path.trimmed().isEmpty())
            return path + QLatin1Char('/');
    }
    return QString();
}

QString ApplicationUtils::pathDocuments()
{
    return noEmptyStandardLocations(QStandardPaths::DocumentsLocation);
}

QString ApplicationUtils::pathImages()
{
    return noEmptyStandardLocations(QStandardPaths::PicturesLocation);
}

QString ApplicationUtils::tempPath()
{
    if (detectQualificationMode())
        return pathDocuments() + QStringLiteral("Orvanel Temp developper/")
            + CoreApplicationUtils::applicationName() + QLatin1Char('/');
    return noEmptyStandardLocations(QStandardPaths::TempLocation);
}

QString ApplicationUtils::pathSettingsOrvanel()
{
    if (detectQualificationMode())
        return pathDocuments() + QStringLiteral("Orvanel Settings developper/");
    return noEmptyStandardLocations(QStandardPaths::GenericDataLocation)
        + QStringLiteral("Orvanel/");
}

QString ApplicationUtils::pathApplicationSettings()
{
    return pathSettingsOrvanel() + CoreApplicationUtils::applicationName() + QLatin1Char('/');
}

QString ApplicationUtils::pathDatas()
{
    return shippedFolder(QStringLiteral("Resources/"), QStringLiteral("data/"));
}

QString ApplicationUtils::pathExtraBinaries()
{
    return shippedFolder(QStringLiteral("Frameworks/"), QStringLiteral("extraBinaries/"));
}

QString ApplicationUtils::pathVersion()
{
    return pathDatas() + QStringLiteral("version/");
}

QString ApplicationUtils::pathLanguages()
{
    return pathDatas() + QStringLiteral("languages/");
}

// Modes

bool ApplicationUtils::detectQualificationMode()
{
    return QCoreApplication::applicationDirPath().contains(QStringLiteral("bin"));
}

bool ApplicationUtils::detectDeveloperMode()
{
    return detectQualificationMode() && homeIsOfTheDeveloper();
}

bool ApplicationUtils::detectDeveloperModeOrQualifMode()
{
    return detectDeveloperMode() || detectQualificationMode();
}

bool ApplicationUtils::detectIsQuillo()
{
    return detectDeveloperMode() && homeIsOfTheDeveloper();
}

QString ApplicationUtils::labelDeveloperMode_QualifMode()
{
    QString label;
    if (detectDeveloperMode())
        label += QStringLiteral("#dev mode#");
    if (detectQualificationMode()) {
        if (!label.isEmpty())
            label += QLatin1Char(' ');
        label += QStringLiteral("#qualif mode#");
    }
    return label;
}

// Screens, windows and clipboard

void ApplicationUtils::enableHightDPIMode()
{
    if (QCoreApplication::instance()) {
        ORVAUTILS_LOG_CRITICAL() << "enableHightDPIMode() has to be called BEFORE QApplication";
        return;
    }
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED // since Qt 6, where both are always on
        QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps, true);
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, true);
    QT_WARNING_POP
}

double ApplicationUtils::devicePixelRatio(const QWidget* widget)
{
    Q_UNUSED(widget)
    return 1.0;
}

QScreen* ApplicationUtils::screenAt(const QPoint& point)
{
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (const QScreen* screen : screens) {
        const QList<QScreen*> siblings = screen->virtualSiblings();
        for (QScreen* sibling : siblings) {
            if (sibling->geometry().contains(point))
                return sibling;
        }
    }
    return nullptr;
}

bool ApplicationUtils::isDailogAsyncOpeningSafe()
{
    const QWindowList windows = QGuiApplication::allWindows();
    for (const QWindow* window : windows) {
        if (window->modality() != Qt::NonModal)
            return false;
    }
    return true;
}

QMimeData* ApplicationUtils::mimeDataCopy(const QMimeData* source)
{
    auto* copy = new QMimeData;
    const QStringList formats = source->formats();
    for (const QString& format : formats)
        copy->setData(nativeFormat(format), source->data(format));
    return copy;
}
