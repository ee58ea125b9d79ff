// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// PublisherTest: the base of all tests of shop-publisher. Each test function has a folder with an
// empty project and, after the program has run, its site.

#ifndef PUBLISHERTEST_H
#define PUBLISHERTEST_H

#include "Sandbox.h"
#include "ShopPublisherRun.h"

#include <QtTest>

#include <memory>

/// The base of a test class. Slots may be overridden.
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

    /// Runs the program and waits until it ends.
    Outcome publish(const QStringList& options = QStringList()) const
    {
        return run(options + QStringList{mProject, mSite}, mHome);
    }

    /// Starts the program and leaves it running.
    void start(QProcess* process, const QStringList& options = QStringList()) const
    {
        process->setProcessEnvironment(environmentFor(mHome));
        process->start(QStringLiteral(SHOP_PUBLISHER), options + QStringList{mProject, mSite});
        if (!process->waitForStarted())
            qFatal("cannot start the program");
    }

    /// Starts the program and, once it has printed something, terminates it as \c kill does.
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
