// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ChildProgram: a test program that starts itself again, to observe what happens only once in a
// process: the time before the application object exists, the end of the program, and the folder
// that it was started from.

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
    bool exitedNormally = false; ///< false if it crashed or was killed
    int exitCode = -1;
    QStringList output; ///< lines of standard output
    QStringList errors; ///< lines of standard error
};

/// Runs \a program with \a arguments and waits up to a minute for it to finish. The child inherits
/// this environment, changed by \a environment; a variable with a null value is removed.
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

/// The main() of a test that starts itself again with the arguments "--child" and a mode, which \a
/// runAsChild then carries out.
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
