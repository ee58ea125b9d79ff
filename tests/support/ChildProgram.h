// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ChildProgram: a test program that runs itself again, for what a process can see only once: the
// time before its application object exists, its end, and the place where its program lies.

#ifndef CHILDPROGRAM_H
#define CHILDPROGRAM_H

#include <QApplication>
#include <QMap>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QtTest>

/// What a child process wrote and how it ended.
struct ChildResult
{
    bool exitedNormally = false; ///< neither crashed nor was stopped
    int exitCode = -1;
    QStringList output; ///< lines of standard output
    QStringList errors; ///< lines of standard error
};

/// Runs \a program with \a arguments to its end, for at most a minute, in this process's
/// environment with \a environment on top of it; an entry with a null text is taken out.
inline ChildResult runChildProgram(const QString& program, const QStringList& arguments,
                                   const QMap<QString, QString>& environment = {})
{
    const auto lines = [](const QByteArray& bytes) {
        QString text = QString::fromUtf8(bytes);
#ifdef Q_OS_WIN
        text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
#endif
        QStringList list = text.split(QLatin1Char('\n'));
        if (list.last().isEmpty())
            list.removeLast();
        return list;
    };

    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    for (auto it = environment.begin(); it != environment.end(); ++it) {
        if (it.value().isNull())
            variables.remove(it.key());
        else
            variables.insert(it.key(), it.value());
    }
    QProcess process;
    process.setProcessEnvironment(variables);
    process.start(program, arguments);
    ChildResult result;
    if (!process.waitForFinished(60000)) {
        process.kill();
        process.waitForFinished();
        result.errors = QStringList(process.errorString());
        return result;
    }
    result.exitedNormally = process.exitStatus() == QProcess::NormalExit;
    result.exitCode = process.exitCode();
    result.output = lines(process.readAllStandardOutput());
    result.errors = lines(process.readAllStandardError());
    return result;
}

/// What main() of a test does that starts itself again with the arguments "--child" and a mode,
/// which \a runAsChild carries out.
template <typename Test, typename Function>
int testOrChild(int argc, char** argv, Function runAsChild)
{
    if (argc == 3 && qstrcmp(argv[1], "--child") == 0)
        return runAsChild(argv[2], argc, argv);
    QApplication application(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

#endif // CHILDPROGRAM_H
