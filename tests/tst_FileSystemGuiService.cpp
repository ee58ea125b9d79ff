// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "FileSystemGuiService.h"

#include "LogCapture.h"
#include "SystemCalls.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

class tst_FileSystemGuiService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void revealWaits();
    void revealOfHostilePath();
    void openProgramDoesNotWait();
    void openProgramBelongsToParent();
    void missingCommand();

private:
    // The arguments of the command, one per line, once it has ended.
    QStringList calledWith() const;
    void installCommand(const QByteArray& body);

    QScopedPointer<QTemporaryDir> mDir;
    QByteArray mPath;
};

void tst_FileSystemGuiService::init()
{
    mDir.reset(new QTemporaryDir);
    QVERIFY(mDir->isValid());
    mPath = qgetenv("PATH");
    // Found first, so that no real command is ever run.
    QVERIFY(qputenv("PATH", QFile::encodeName(mDir->path()) + ':' + mPath));
    installCommand("");
}

void tst_FileSystemGuiService::cleanup()
{
    qputenv("PATH", mPath);
}

void tst_FileSystemGuiService::installCommand(const QByteArray& body)
{
    QFile command(mDir->path() + QStringLiteral("/open"));
    QVERIFY(command.open(QIODevice::WriteOnly));
    const QByteArray script = "#!/bin/sh\n" + body + "\nfor a; do printf '%s\\n' \"$a\"; done > \""
        + QFile::encodeName(mDir->path()) + "/.args\"\nmv \"" + QFile::encodeName(mDir->path())
        + "/.args\" \"" + QFile::encodeName(mDir->path()) + "/args\"\n";
    QCOMPARE(command.write(script), qint64(script.size()));
    command.close();
    QVERIFY(command.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
}

QStringList tst_FileSystemGuiService::calledWith() const
{
    QFile file(mDir->path() + QStringLiteral("/args"));
    if (!file.open(QIODevice::ReadOnly))
        return QStringList(QStringLiteral("(not called)"));
    QStringList arguments = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    arguments.removeLast();
    return arguments;
}

void tst_FileSystemGuiService::revealWaits()
{
    SKIP_ON_WINDOWS("the programs that are called are shell scripts");
    installCommand("sleep 0.2");
    QVERIFY(FileSystemGuiService::revealInFileExplorer(QStringLiteral("/a/b.jpg")));
    // No waiting here: the command has ended.
    QCOMPARE(calledWith(), QStringList({QStringLiteral("-R"), QStringLiteral("/a/b.jpg")}));
}

void tst_FileSystemGuiService::revealOfHostilePath()
{
    SKIP_ON_WINDOWS("the programs that are called are shell scripts");
    const QString path = QStringLiteral("/a b/\u00e9\"$(rm -rf x)';--\\");
    QVERIFY(FileSystemGuiService::revealInFileExplorer(path));
    QCOMPARE(calledWith(), QStringList({QStringLiteral("-R"), path}));
}

void tst_FileSystemGuiService::openProgramDoesNotWait()
{
    SKIP_ON_WINDOWS("the programs that are called are shell scripts");
    const QString gate = mDir->path() + QStringLiteral("/gate");
    installCommand("while [ ! -e \"" + QFile::encodeName(gate) + "\" ]; do sleep 0.02; done");
    QObject parent;
    // Returns although the command waits for something that has not happened yet.
    QVERIFY(FileSystemGuiService::openProgram(
        &parent, QStringLiteral("Picture Viewer"),
        {QStringLiteral("/a b.jpg"), QString(QLatin1String("")), QStringLiteral("-x")}));
    QCOMPARE(calledWith(), QStringList(QStringLiteral("(not called)")));
    const QIODevice::OpenMode mode = parent.findChild<QProcess*>()->openMode();
    QCOMPARE(mode & QIODevice::ReadWrite, QIODevice::OpenMode(QIODevice::ReadWrite));
    QFile file(gate);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QTRY_COMPARE(calledWith(),
                 QStringList({QStringLiteral("-a"), QStringLiteral("Picture Viewer"),
                              QStringLiteral("/a b.jpg"), QString(QLatin1String("")),
                              QStringLiteral("-x")}));
    QTRY_COMPARE(parent.findChild<QProcess*>()->state(), QProcess::NotRunning);
}

void tst_FileSystemGuiService::openProgramBelongsToParent()
{
    QObject parent;
    QVERIFY(FileSystemGuiService::openProgram(&parent, QStringLiteral("Viewer"), QStringList()));
    QVERIFY(FileSystemGuiService::openProgram(&parent, QStringLiteral("Viewer"), QStringList()));
    const QList<QProcess*> processes = parent.findChildren<QProcess*>();
    QCOMPARE(processes.size(), 2);
    for (QProcess* const process : processes) {
        QCOMPARE(process->program(), QStringLiteral("open"));
        QCOMPARE(process->arguments(),
                 QStringList({QStringLiteral("-a"), QStringLiteral("Viewer")}));
        QTRY_COMPARE(process->state(), QProcess::NotRunning);
    }
}

void tst_FileSystemGuiService::missingCommand()
{
    SKIP_ON_WINDOWS("the programs that are called are shell scripts");
    // A PATH without any program.
    QVERIFY(QFile::remove(mDir->path() + QStringLiteral("/open")));
    QVERIFY(qputenv("PATH", QFile::encodeName(mDir->path())));
    LogCapture log;
    QObject parent;
    QVERIFY(FileSystemGuiService::revealInFileExplorer(QStringLiteral("/a")));
    QVERIFY(FileSystemGuiService::openProgram(&parent, QStringLiteral("Viewer"), QStringList()));
    QTRY_COMPARE(parent.findChild<QProcess*>()->state(), QProcess::NotRunning);
    QCOMPARE(log.lines(), QStringList());
}

QTEST_GUILESS_MAIN(tst_FileSystemGuiService)
#include "tst_FileSystemGuiService.moc"
