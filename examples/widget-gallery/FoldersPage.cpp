// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The page on work that takes time or goes wrong: a folder that is measured on
// a thread, a site that is replaced as a whole while it is watched, and an
// error with the path on which it propagated.

#include "Layouts.h"
#include "Page.h"
#include "Pages.h"

#include <DirectoryWatcher.h>
#include <Errorable.h>
#include <FileUtils.h>
#include <GenericThread.h>

#include <QDebug>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMap>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QVBoxLayout>

namespace {

QPushButton* button(const char* name, const QString& text)
{
    auto* made = new QPushButton(text);
    made->setObjectName(QString::fromLatin1(name));
    return made;
}

QLabel* answer(const char* name, const QString& text)
{
    QLabel* const label = Layouts::plainText(text);
    label->setObjectName(QString::fromLatin1(name));
    label->setMinimumWidth(300);
    return label;
}

/// Measures folders, each on a thread of its own, while the window stays
/// responsive.
class Measurement : public QWidget
{
public:
    Measurement()
        : mFolders(new QLineEdit(QDir::homePath()))
        , mSizes(answer("size", Page::tr("Not measured yet.")))
    {
        mFolders->setObjectName(QStringLiteral("measured"));
        mFolders->setMinimumWidth(230);
        auto* start = button("measure", Page::tr("&Measure"));
        auto* halt = button("stop", Page::tr("&Stop"));
        connect(start, &QPushButton::clicked, this, [this] { measure(); });
        connect(halt, &QPushButton::clicked, this, [this] { stop(); });

        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(Layouts::row(
            {Layouts::labelled(Page::tr("&In"), mFolders), start, halt}));
        layout->addWidget(mSizes);
    }

    ~Measurement() override
    {
        //! [stop]
        // All are asked before one is waited for
        stop();
        Thread::waitForAll(mThreads, std::chrono::seconds(3));
        //! [stop]
    }

private:
    void stop() const
    {
        for (const QPointer<Thread>& thread : mThreads) {
            if (thread)
                thread->requestInterruption();
        }
    }

    /// Measures the folders of the field, which are separated as in PATH.
    void measure()
    {
        mThreads.removeAll(nullptr); // they have finished
        if (!mThreads.isEmpty())
            return;
        mAnswers.clear();
        const QStringList folders =
            mFolders->text().split(QDir::listSeparator());
        for (const QString& folder : folders)
            measure(folder);
    }

    void measure(const QString& folder)
    {
        //! [measure]
        const auto sum = [folder] {
            auto* self = static_cast<Thread*>(QThread::currentThread());
            const auto tell = [self](const FileUtils::TreeProgress& tree) {
                Q_EMIT self->progressed(tree.files, tree.totalFiles, tree.path);
                return !self->isInterruptionRequested();
            };
            QString error;
            const qint64 size =
                FileUtils::folderSize(folder, nullptr, nullptr, tell, &error);
            return error.isEmpty() ? FileUtils::fileSizeToString(size) : error;
        };
        Thread* thread = GenericThread::runInGenericThread(
            sum, this, [this, folder](const QVariant& text) {
                show(folder, text.toString());
            });
        //! [measure]
        mThreads.append(thread);
        connect(thread, &Thread::progressed, this, [this, folder](int files) {
            show(folder, Page::tr("%n file(s) …", nullptr, files));
        });
    }

    void show(const QString& folder, const QString& text)
    {
        mAnswers.insert(folder, text);
        const QStringList texts = mAnswers.values();
        mSizes->setText(texts.join(QLatin1Char('\n')));
    }

    QLineEdit* const mFolders;
    QLabel* const mSizes;
    QList<QPointer<Thread>> mThreads;
    QMap<QString, QString> mAnswers;
};

/// A site that is replaced by its draft, and watched.
class Site : public QWidget
{
public:
    Site()
        : mState(answer("site", Page::tr("The site is empty.")))
    {
        QDir().mkpath(path("site"));
        auto* publish = button("publish", Page::tr("Pu&blish"));
        auto* empty = button("empty", Page::tr("&Empty"));
        connect(publish, &QPushButton::clicked, this, [this] { replace(); });
        connect(empty, &QPushButton::clicked, this, [this] {
            FileUtils::removeContentDirectory(path("site"), true);
        });
        watch();

        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(Layouts::row({publish, empty}));
        layout->addWidget(mState);
    }

private:
    QString path(const char* name) const
    {
        return QDir(mFolder.path()).filePath(QString::fromLatin1(name));
    }

    void replace()
    {
        const QString draft = path("draft");
        const QString page = draft + QStringLiteral("/index.html");
        const QByteArray text = "<h1>Shop</h1>";
        QString error;
        const auto show = [this](const FileUtils::TreeProgress& tree) {
            mState->setText(tree.path);
            return isVisible(); // else it is cancelled
        };
        if (!FileUtils::copyDir(path("site"), path("before"), false, show,
                                &error)) {
            mState->setText(error);
            return;
        }
        //! [replace]
        // Each all or nothing: whatever fails, what was there before is whole
        if (!FileUtils::replaceFileContent(page, text, &error)
            || !FileUtils::replaceDir(draft, path("site"), show, &error))
            mState->setText(error);
        //! [replace]
    }

    void watch()
    {
        //! [watch]
        auto* watcher = new DirectoryWatcher(this);
        watcher->setSettleTime(200); // milliseconds without a change
        connect(watcher, &DirectoryWatcher::settled, this, [this, watcher] {
            mState->setText(Page::tr("%n file(s) in the site.", nullptr,
                                     watcher->watchedFiles()));
        });
        connect(watcher, &DirectoryWatcher::unwatched, this,
                [this](const QStringList&, const QString& reason) {
                    mState->setText(reason);
                });
        watcher->setPath(path("site"));
        //! [watch]
    }

    QTemporaryDir mFolder;
    QLabel* const mState;
};

/// Something that can fail, and the object that it works for.
class Worker : public QObject, public Errorable
{
};

QWidget* errors()
{
    auto* lines = answer("errorLines", Page::tr("Nothing is wrong."));
    auto* fail = button("fail", Page::tr("Go &wrong"));
    auto* document = new Worker;
    auto* copier = new Worker;
    document->setParent(lines);
    copier->setParent(document);
    document->ORVAUTILS_ADD_ERRORABLE_CHILD(*copier);
    QObject::connect(fail, &QPushButton::clicked, lines, [=] {
        //! [errors]
        ErrorableCode code;
        code.context = QStringLiteral("Files");
        code.code = 3;
        code.details = Page::tr("beach.jpg cannot be copied");
        copier->ORVAUTILS_SET_ERROR(code);
        // The document knows it, too, and the way that it came
        lines->setText(document->errorLines().join(QLatin1Char('\n')));
        //! [errors]
        QString record; // how a log shows it, in one line
        QDebug(&record) << document->error();
        lines->setToolTip(record.toHtmlEscaped());
        document->clearError();
    });
    return Layouts::column({Layouts::row({fail}), lines});
}

} // namespace

QVector<Exhibit> foldersExhibits()
{
    return {
        {Page::tr("Folders, each measured on a thread"), new Measurement,
         "measure"},
        {Page::tr("A site replaced in one step"), new Site, "replace"},
        {Page::tr("And watched meanwhile"),
         Layouts::plainText(Page::tr("Each change is waited out.")), "watch"},
        {Page::tr("An error, and the way that it came"), errors(), "errors"},
    };
}
