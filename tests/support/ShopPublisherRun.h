// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ShopPublisherRun: runs the example program as a process. The macro SHOP_PUBLISHER holds the path
// of the program.

#ifndef SHOPPUBLISHERRUN_H
#define SHOPPUBLISHERRUN_H

#include "Sandbox.h"
#include "SystemCalls.h"
#include "Text.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#ifdef Q_OS_LINUX
#include <linux/capability.h>
#include <sys/prctl.h>
#endif

const int allImported = 0;
const int someFailed = 1;
const int badUsage = 2;
const int stopped = 130;

const QColor red(220, 30, 30);
const QColor green(30, 170, 50);
const QColor yellow(240, 220, 40);
const QColor blue(30, 60, 210);

inline QImage corners(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    QPainter painter(&image);
    const int w = width / 2;
    const int h = height / 2;
    painter.fillRect(0, 0, w, h, red);
    painter.fillRect(w, 0, width - w, h, green);
    painter.fillRect(w, h, width - w, height - h, yellow);
    painter.fillRect(0, h, w, height - h, blue);
    return image;
}

inline QByteArray encoded(const QImage& image, const char* format)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format, 90);
    return buffer.data();
}

// Files

/// The content of \a path; empty if it does not exist.
inline QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Everything below \a root except \a except: links with their targets, files with size, time and
/// digest. Two equal snapshots mean that nothing was changed in between.
inline QStringList snapshot(const QString& root, const QString& except)
{
    QStringList lines;
    QDirIterator it(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        if (path == except || path.startsWith(except + QLatin1Char('/')))
            continue;
        const QFileInfo info = it.fileInfo();
        QString line = path;
        if (info.isSymLink()) {
            line += QLatin1String(" -> ") + info.symLinkTarget();
        } else if (info.isFile()) {
            line += QStringLiteral(" %1 %2 ")
                        .arg(info.size())
                        .arg(info.lastModified().toMSecsSinceEpoch());
            line += QString::fromLatin1(
                QCryptographicHash::hash(readFile(path), QCryptographicHash::Sha1).toHex());
        }
        lines.append(line);
    }
    lines.sort();
    return lines;
}

/// The name of the file in which the program keeps a record of each site.
const QString recordName = QStringLiteral(".shop-publisher.json");

/// The paths of all files below \a folder, relative and sorted, including hidden ones but not the
/// record of the program.
inline QStringList filesIn(const QString& folder)
{
    QStringList names;
    QDirIterator it(folder, QDir::Files | QDir::Hidden | QDir::System,
                    QDirIterator::Subdirectories);
    while (it.hasNext())
        names.append(QDir(folder).relativeFilePath(it.next()));
    names.removeAll(recordName);
    names.sort();
    return names;
}

/// The files of a site with their content, without the record, which contains a time.
inline QMap<QString, QByteArray> filesOfSite(const QString& folder)
{
    QMap<QString, QByteArray> files = filesBelow(folder);
    files.remove(recordName);
    return files;
}

// The program

struct Outcome
{
    int exitCode = -1;
    QString out;
    QString err;
};

inline QProcessEnvironment environmentFor(const QString& home)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    environment.remove(QStringLiteral("DISPLAY"));
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
    environment.remove(QStringLiteral("LANGUAGE"));
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    if (!home.isEmpty()) {
        environment.insert(QStringLiteral("HOME"), home);
        environment.insert(QStringLiteral("TMPDIR"), home);
    }
    return environment;
}

/// A process that runs a function before the program starts.
class PreparedProcess : public QProcess
{
public:
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    explicit PreparedProcess(void (*prepare)())
    {
        setChildProcessModifier(prepare);
    }
#else
    explicit PreparedProcess(void (*prepare)())
        : mPrepare(prepare)
    { }

protected:
    void setupChildProcess() override
    {
        mPrepare();
    }

private:
    void (*const mPrepare)();
#endif
};

/// A process whose files cannot grow beyond 30 kB.
class LimitedProcess : public PreparedProcess
{
public:
    LimitedProcess()
        : PreparedProcess(limit)
    { }

private:
    static void limit()
    {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit most = {30000, 30000};
        if (::setrlimit(RLIMIT_FSIZE, &most) != 0)
            ::_exit(126);
    }
};

/// A process that meets refused permissions like an ordinary user, even if root runs it. On Linux
/// it remains root, because nobody else may be able to enter the build folder, but loses the
/// capability to bypass permissions.
class OrdinaryProcess : public PreparedProcess
{
public:
    OrdinaryProcess()
        : PreparedProcess(giveUpRights)
    { }

private:
    static void giveUpRights()
    {
        if (::geteuid() != 0)
            return;
#ifdef Q_OS_LINUX
        for (const int right : {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH}) {
            if (::prctl(PR_CAPBSET_DROP, right, 0, 0, 0) != 0)
                ::_exit(126);
        }
#else
        if (::setuid(65534) != 0)
            ::_exit(126);
#endif
    }
};

/// The output of a program, without the carriage returns that end lines on Windows.
inline QString printed(const QByteArray& bytes)
{
#ifdef Q_OS_WIN
    return QString::fromLocal8Bit(bytes).replace(QLatin1String("\r\n"), QLatin1String("\n"));
#else
    return QString::fromUtf8(bytes);
#endif
}

/// The outcome of a program, after it has ended.
inline Outcome outcomeOf(QProcess& process)
{
    Outcome outcome;
    const bool ended = process.state() == QProcess::NotRunning || process.waitForFinished(240000);
    if (!ended || process.exitStatus() != QProcess::NormalExit) {
        outcome.err = process.errorString() + QString::fromUtf8(process.readAllStandardError());
        return outcome;
    }
    outcome.exitCode = process.exitCode();
    outcome.out = printed(process.readAllStandardOutput());
    outcome.err = printed(process.readAllStandardError());
    return outcome;
}

inline Outcome run(QProcess& process, const QStringList& arguments, const QString& home)
{
    process.setProcessEnvironment(environmentFor(home));
    process.start(QStringLiteral(SHOP_PUBLISHER), arguments);
    return outcomeOf(process);
}

inline Outcome run(const QStringList& arguments, const QString& home = QString())
{
    QProcess process;
    return run(process, arguments, home);
}

/// The path of Chromium; empty if it is not installed.
inline QString chromium()
{
    for (const char* name : {"chromium", "chromium-browser", "google-chrome"}) {
        const QString path = QStandardPaths::findExecutable(QLatin1String(name));
        if (!path.isEmpty())
            return path;
    }
    return QString();
}

/// The output of headless Chromium without any network.
inline QByteArray runChromium(const QStringList& arguments)
{
    QTemporaryDir profile;
    QProcess process;
    process.start(chromium(),
                  QStringList{QStringLiteral("--headless"), QStringLiteral("--no-sandbox"),
                              QStringLiteral("--disable-gpu"), QStringLiteral("--no-first-run"),
                              QStringLiteral("--disable-background-networking"),
                              QStringLiteral("--disable-component-update"),
                              QStringLiteral("--disable-sync"),
                              QStringLiteral("--disable-dev-shm-usage"),
                              QStringLiteral("--host-resolver-rules=MAP * ~NOTFOUND"),
                              QStringLiteral("--hide-scrollbars"),
                              QStringLiteral("--force-device-scale-factor=1"),
                              QStringLiteral("--virtual-time-budget=20000"),
                              QLatin1String("--user-data-dir=") + profile.path()}
                      + arguments);
    if (!process.waitForFinished(120000)) {
        process.kill();
        process.waitForFinished();
        return QByteArray();
    }
    return process.readAllStandardOutput();
}

#endif // SHOPPUBLISHERRUN_H
