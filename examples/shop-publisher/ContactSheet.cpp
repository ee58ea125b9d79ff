// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ContactSheet.h"

#include "Html.h"
#include "Languages.h"

#include <HTMLUtils.h>
#include <ImageUtils.h>

#include <QFileInfo>
#include <QTextStream>

namespace {

// Light and dark follow the reader's system. Photographs are letterboxed into square frames, so
// that rows stay even; a picture that may be transparent lies on a light table in both schemes,
// since it was drawn for a light page.
const char style[] = R"css(
:root {
  color-scheme: light dark;
  --page: #faf8f5; --frame: #efebe5; --ink: #2b2622; --soft: #7a7068; --line: #ded7ce;
  --table: #f4f1ec; --accent: #a4502d;
}
@media (prefers-color-scheme: dark) {
  :root {
    --page: #191715; --frame: #24211e; --ink: #efe9e2; --soft: #a3988d; --line: #38332e;
    --table: #e4dfd8; --accent: #e39a72;
  }
}
* { box-sizing: border-box; }
body {
  margin: 0 auto; max-width: 84rem; padding: clamp(1rem, 3vw, 2.5rem);
  background: var(--page); color: var(--ink);
  font: 1rem/1.5 system-ui, -apple-system, "Segoe UI", Roboto, "Helvetica Neue", sans-serif;
}
header { margin-bottom: 2rem; padding-bottom: 1rem; border-bottom: 1px solid var(--line); }
h1 { margin: 0; font-size: clamp(1.5rem, 4vw, 2.25rem); line-height: 1.2; }
h1, h2 { font-weight: 600; letter-spacing: -.01em; overflow-wrap: anywhere; }
h2 { margin: 2.5rem 0 1rem; font-size: 1.25rem; }
header p, .empty { margin: .25rem 0 0; color: var(--soft); }
header a { margin-left: .5rem; color: var(--accent); }
.sheet {
  display: grid; gap: clamp(.9rem, 2vw, 1.75rem); margin: 0; padding: 0; list-style: none;
  grid-template-columns: repeat(auto-fill, minmax(clamp(9.5rem, 21vw, 20rem), 1fr));
}
figure { margin: 0; }
figure a {
  display: block; position: relative; aspect-ratio: 1; overflow: hidden;
  border-radius: .5rem; background: var(--frame);
  outline: 1px solid var(--line); outline-offset: -1px; transition: outline-color .15s;
}
figure a:hover, figure a:focus-visible { outline: 2px solid var(--accent); }
figure a.table { background: var(--table); }
figure img { position: absolute; inset: 0; width: 100%; height: 100%; object-fit: scale-down; }
figure img.drawing { object-fit: contain; }
figure .table img { padding: 6%; }
figcaption { margin-top: .5rem; font-size: .875rem; line-height: 1.35; }
figcaption bdi {
  display: -webkit-box; -webkit-box-orient: vertical; -webkit-line-clamp: 2; overflow: hidden;
  overflow-wrap: anywhere;
}
figcaption span { color: var(--soft); font-variant-numeric: tabular-nums; }
)css";

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

void writePicture(QTextStream& html, const PublishedPicture& picture)
{
    const QString fileName = QFileInfo(picture.name).fileName();
    const bool drawing = ImageUtils::imageNameIsVectoriel(fileName);
    const bool photograph = fileName.endsWith(QLatin1String(".jpg"), Qt::CaseInsensitive)
        || fileName.endsWith(QLatin1String(".jpeg"), Qt::CaseInsensitive);

    html << "<li><figure>\n<a href=\"" << Html::address(QLatin1String("images/") + picture.name)
         << '"' << (photograph ? "" : " class=\"table\"") << "><img src=\""
         << Html::address(QLatin1String("thumbs/") + picture.name) << '"'
         << (drawing ? " class=\"drawing\"" : "") << " alt=\""
         << HTMLUtils::escaped(alternativeText(picture.name)) << "\" width=\""
         << picture.thumbSize.width() << "\" height=\"" << picture.thumbSize.height()
         << "\" loading=\"lazy\"></a>\n"
         << "<figcaption><bdi title=\"" << HTMLUtils::escaped(fileName) << "\">"
         << HTMLUtils::escaped(fileName) << "</bdi>";
    if (drawing)
        html << "<span>SVG</span>";
    else
        html << "<span>" << picture.imageSize.width() << " &times; " << picture.imageSize.height()
             << "</span>";
    html << "</figcaption>\n</figure></li>\n";
}

} // namespace

QByteArray ContactSheet::html() const
{
    QByteArray page;
    QTextStream html(&page, QIODevice::WriteOnly);
    html.setCodec("UTF-8");

    html << "<!DOCTYPE html>\n<html lang=\"" << Languages::current()
         << "\">\n<head>\n<meta charset=\"utf-8\">\n"
         << "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
         << "<meta name=\"generator\" content=\""
         << HTMLUtils::escaped(QCoreApplication::applicationName()) << "\">\n<title>"
         << HTMLUtils::escaped(mTitle) << "</title>\n<style>" << style
         << "</style>\n</head>\n<body>\n<header>\n<h1><bdi>" << HTMLUtils::escaped(mTitle)
         << "</bdi></h1>\n<p>"
         << HTMLUtils::escaped(tr("%n photograph(s)", nullptr, mPictures.size())) << "</p>\n";
    if (!mLinks.isEmpty()) {
        html << "<p>" << HTMLUtils::escaped(tr("Shop:"));
        for (const auto& link : mLinks)
            html << " <a href=\"" << Html::address(link.first) << "\">"
                 << HTMLUtils::escaped(link.second) << "</a>";
        html << "</p>\n";
    }
    html << "</header>\n<main>\n";

    if (mPictures.isEmpty())
        html << "<p class=\"empty\">" << HTMLUtils::escaped(tr("There is nothing to show yet."))
             << "</p>\n";
    for (int i = 0; i < mPictures.size();) {
        const QString folder = folderOf(mPictures.at(i).name);
        html << "<section>\n";
        if (!folder.isEmpty())
            html << "<h2><bdi>" << HTMLUtils::escaped(folder) << "</bdi></h2>\n";
        html << "<ul class=\"sheet\">\n";
        for (; i < mPictures.size() && folderOf(mPictures.at(i).name) == folder; ++i)
            writePicture(html, mPictures.at(i));
        html << "</ul>\n</section>\n";
    }
    html << "</main>\n</body>\n</html>\n";
    html.flush();
    return page;
}
