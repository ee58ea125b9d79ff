// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Pages.h"

#include "Languages.h"
#include "PageParts.h"
#include "Template.h"

#include <ImageUtils.h>

#include <QFileInfo>
#include <QLocale>

namespace {

const int picturesOnAPage = 200;
const QLatin1String otherPages("photographs-%1.html");

QString folderOf(const QString& name)
{
    return name.left(qMax(0, name.lastIndexOf(QLatin1Char('/'))));
}

/// What the file name says of the picture, for those who cannot see it.
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
    QVariantMap values = PageParts::picture(picture, alternativeText(picture.name));
    values.insert(QStringLiteral("file"), fileName);
    values.insert(QStringLiteral("size"),
                  ImageUtils::imageNameIsVectoriel(fileName)
                      ? QStringLiteral("SVG")
                      : QStringLiteral("%1 × %2")
                            .arg(picture.imageSize.width())
                            .arg(picture.imageSize.height()));
    return values;
}

} // namespace

QVector<SiteFile> ContactSheet::files(const QString& title,
                                      const QVector<PublishedPicture>& pictures, bool isFrontPage)
{
    const QString first =
        isFrontPage ? QStringLiteral("index.html") : QStringLiteral("photographs.html");
    const QString language = Languages::current();
    QVariantMap values = PageParts::texts(language);
    const QVariantMap texts = values;
    values.insert(QStringLiteral("lang"), language);
    values.insert(QStringLiteral("generator"), QCoreApplication::applicationName());
    values.insert(QStringLiteral("title"), title);
    values.insert(QStringLiteral("count"), tr("%n photograph(s)", nullptr, int(pictures.size())));
    values.insert(QStringLiteral("emptyText"), tr("There is nothing to show yet."));
    values.insert(QStringLiteral("shop"), isFrontPage ? QString() : tr("To the shop"));

    QVector<SiteFile> files;
    const int pages = qMax(1, (int(pictures.size()) + picturesOnAPage - 1) / picturesOnAPage);
    for (int page = 1; page <= pages; ++page) {
        const int end = qMin(int(pictures.size()), page * picturesOnAPage);
        QVariantList folders;
        for (int i = (page - 1) * picturesOnAPage; i < end;) {
            const QString folder = folderOf(pictures.at(i).name);
            QVariantList list;
            for (; i < end && folderOf(pictures.at(i).name) == folder; ++i)
                list.append(valuesOf(pictures.at(i)));
            folders.append(Template::values({{"folder", folder}, {"pictures", list}}));
        }
        values.insert(QStringLiteral("folders"), folders);
        values.insert(QStringLiteral("pager"),
                      PageParts::pager(texts, first, otherPages, page, pages));
        files.append({PageParts::fileName(first, otherPages, page),
                      Template::fill(QStringLiteral("photographs.html"), values)});
    }
    return files;
}
