// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// GalleryWindow: the list of pages, and the selected page next to it.

#ifndef GALLERYWINDOW_H
#define GALLERYWINDOW_H

#include <QMainWindow>
#include <QStringList>

class QListWidget;
class QStackedWidget;

class GalleryWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit GalleryWindow(QWidget* parent = nullptr);

    int pageCount() const;
    int currentPage() const;
    void setCurrentPage(int index);

    /// The short name of a page, suitable as a file name.
    QString pageId(int index) const;

    /// The window size at which no page scrolls.
    QSize sizeForAllPages() const;

private:
    void makeMenu();
    void turnPage(int step);

    QStringList mIds;
    QListWidget* mList;
    QStackedWidget* mPages;
};

#endif // GALLERYWINDOW_H
