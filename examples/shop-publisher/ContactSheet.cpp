// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Pages.h"

#include "Languages.h"
#include "Template.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace {

const int picturesOnAPage = 200;

QString folderOf(const QString& name)
{
    return name.left(qMax(0, name.lastIndexOf(QLatin1Char('/'))));
}

/// What the file name says about the picture, for those who cannot see it.
QString alternativeText(const QString& name)
{
    const QFileInfo file(name);
    QString words = file.completeBaseName();
    words.replace(QLatin1Char('_'), QLatin1Char(' ')).replace(QLatin1Char('-'), QLatin1Char(' '));
    words = words.simplified();
    return words.isEmpty() ? file.fileName() : words;
}

QVariantMap valuesOf(const PublishedPicture& picture)
{
    const QString fileName = QFileInfo(picture.name).fileName();
    const QVariantMap values = PageParts::picture(picture, alternativeText(picture.name));
    const QSize size = picture.imageSize;
    return Template::with(
        values,
        Template::values(
            {{"file", fileName}, {"imageWidth", size.width()}, {"imageHeight", size.height()}}));
}

} // namespace

QVector<SiteFile> ContactSheet::files(const QString& title,
                                      const QVector<PublishedPicture>& pictures, bool isFrontPage)
{
    const QString language = Languages::current();
    const int count = int(pictures.size());
    const QVariantMap texts = PageParts::texts(language);
    const QVariantMap values =
        Template::with(texts,
                       Template::values({{"lang", language},
                                         {"generator", QCoreApplication::applicationName()},
                                         {"title", title},
                                         {"count", tr("%n photograph(s)", nullptr, count)},
                                         {"emptyText", tr("There is nothing to show yet.")},
                                         {"shop", isFrontPage ? QString() : tr("To the shop")}}));
    const QStringList names = PageParts::names(
        isFrontPage ? QStringLiteral("index.html") : QStringLiteral("photographs.html"),
        QStringLiteral("photographs-%1.html"), count, picturesOnAPage);

    QVector<SiteFile> files;
    for (int page = 0, i = 0; page < names.size(); ++page) {
        const int end = qMin(count, i + picturesOnAPage);
        QVariantList folders;
        while (i < end) {
            const QString folder = folderOf(pictures.at(i).name);
            QVariantList list;
            for (; i < end && folderOf(pictures.at(i).name) == folder; ++i)
                list.append(valuesOf(pictures.at(i)));
            folders.append(Template::values({{"folder", folder}, {"pictures", list}}));
        }
        const QVariantMap own = Template::values(
            {{"folders", folders}, {"pager", PageParts::pager(texts, names, page)}});
        files.append(
            {names.at(page),
             Template::fill(QStringLiteral("photographs.html"), Template::with(values, own))});
    }
    return files;
}
