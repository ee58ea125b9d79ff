// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// PublisherTest: what all test programs of shop-publisher begin with: a folder for each test that
// holds an empty project and, once the program has run, its site.

#ifndef PUBLISHERTEST_H
#define PUBLISHERTEST_H

#include "Sandbox.h"
#include "ShopPublisherRun.h"

#include <QtTest>

#include <memory>

/// The base of a test class. Its slots may be overridden; they are called all the same.
class PublisherTest : public QObject
{
    Q_OBJECT

protected Q_SLOTS:
    void init()
    {
        mSandbox = std::make_unique<Sandbox>();
        mHome = mSandbox->folder(QStringLiteral("home"));
        mProject = mSandbox->folder(QStringLiteral("project"));
        mSite = (*mSandbox)(QStringLiteral("site"));
        mSandbox->folder(QStringLiteral("project/photos"));
    }

    void cleanup() { mSandbox.reset(); }

protected:
    QString root() const { return mSandbox->root(); }
    QString photo(const QString& name) const
    {
        return mProject + QStringLiteral("/photos/") + name;
    }
    QString photo(const char* name) const { return photo(QString::fromUtf8(name)); }
    QByteArray siteFile(const QString& place) const
    {
        return readFile(mSite + QLatin1Char('/') + place);
    }

    /// Runs the program to its end.
    Outcome publish(const QStringList& options = QStringList()) const
    {
        return run(options + QStringList{mProject, mSite}, mHome);
    }

    /// Starts the program and leaves it at work.
    void start(QProcess* process, const QStringList& options = QStringList()) const
    {
        process->setProcessEnvironment(environmentFor(mHome));
        process->start(QStringLiteral(SHOP_PUBLISHER), options + QStringList{mProject, mSite});
        if (!process->waitForStarted())
            qFatal("cannot start the program");
    }

    /// Starts the program and stops it as \c kill does when it has said something.
    Outcome startAndStop(const QStringList& options = QStringList()) const
    {
        QProcess process;
        start(&process, options);
        if (process.waitForReadyRead(60000))
            process.terminate();
        return outcomeOf(process);
    }

    std::unique_ptr<Sandbox> mSandbox;
    QString mHome;
    QString mProject;
    QString mSite;
};

#endif // PUBLISHERTEST_H
