// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// StaticFiles: what of the project's static folder the site may have.

#ifndef STATICFILES_H
#define STATICFILES_H

#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <QVector>

/// The files below a folder, as they are at one moment. A link is followed to a file in that folder
/// alone: what lies outside was never meant to be published.
class StaticFiles
{
    Q_DECLARE_TR_FUNCTIONS(StaticFiles)

public:
    /// Looks at \a folder, which may itself be a link.
    explicit StaticFiles(const QString& folder);

    /// The paths of the files below the folder, hidden ones too, and of its folders, each before
    /// what is in it.
    QStringList files() const { return mFiles; }
    QStringList folders() const { return mFolders; }

    /// What is left out.
    struct Refusal
    {
        QString name; ///< path below the folder
        QString reason;
    };
    QVector<Refusal> refusals() const { return mRefusals; }

    /// Whether \a mirror, a copy of earlier, has all of them as they are now, and nothing else.
    bool areCopiedIn(const QString& mirror) const;

    /// Whether the file \a copy is not what \a source is now: that was written to since, or the
    /// copy was never completed.
    static bool isStale(const QString& source, const QString& copy);

    /// Copies all of them into \a draft, a folder that is not there yet. On failure \a reason says
    /// why.
    bool copyTo(const QString& draft, QString* reason) const;

private:
    void look(const QString& prefix);

    QString mFolder;
    QStringList mFiles;
    QStringList mFolders;
    QVector<Refusal> mRefusals;
};

#endif // STATICFILES_H
