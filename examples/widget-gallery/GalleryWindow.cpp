// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "GalleryWindow.h"

#include "Page.h"
#include "Pages.h"

#include <CoreApplicationUtils.h>
#include <WidgetUtils.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QMenuBar>
#include <QScreen>
#include <QScrollArea>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace {

QKeySequence ctrlAnd(Qt::Key key)
{
    return QKeySequence(int(Qt::ControlModifier) | key);
}

} // namespace

GalleryWindow::GalleryWindow(QWidget* parent)
    : QMainWindow(parent)
    , mList(new QListWidget)
    , mPages(new QStackedWidget)
{
    setWindowTitle(CoreApplicationUtils::applicationGuiName());

    mList->setObjectName(QStringLiteral("pages"));
    mList->setSpacing(1);
    const QVector<Topic> topics = allTopics();
    for (const Topic& topic : topics) {
        auto* area = new QScrollArea;
        area->setWidget(topic.makePage());
        area->setWidgetResizable(true);
        area->setFrameShape(QFrame::NoFrame);
        mPages->addWidget(area);
        mList->addItem(topic.title);
        mIds.append(topic.id);
    }
    mList->setFixedWidth(mList->sizeHintForColumn(0) + 36);

    auto* label = new QLabel(tr("&Pages"));
    label->setBuddy(mList);
    auto* index = new QVBoxLayout;
    index->addWidget(label);
    index->addWidget(mList);

    auto* content = new QWidget;
    auto* layout = new QHBoxLayout(content);
    layout->addLayout(index);
    layout->addWidget(mPages, 1);
    setCentralWidget(content);
    makeMenu();

    connect(mList, &QListWidget::currentRowChanged, mPages,
            &QStackedWidget::setCurrentIndex);
    setCurrentPage(0);
    mList->setFocus();

    const QRect available =
        WidgetUtils::widgetScreen(this)->availableGeometry();
    resize(sizeForAllPages().boundedTo(available.size()));
}

int GalleryWindow::pageCount() const
{
    return int(mIds.size());
}

int GalleryWindow::currentPage() const
{
    return mPages->currentIndex();
}

void GalleryWindow::setCurrentPage(int index)
{
    mList->setCurrentRow(index);
}

QString GalleryWindow::pageId(int index) const
{
    return mIds.value(index);
}

QSize GalleryWindow::sizeForAllPages() const
{
    QSize largest;
    for (int i = 0; i < mPages->count(); ++i) {
        const auto* area = static_cast<QScrollArea*>(mPages->widget(i));
        largest = largest.expandedTo(area->widget()->sizeHint());
    }
    const QMargins margins = centralWidget()->layout()->contentsMargins();
    return {largest.width() + mList->width() + margins.left() + margins.right()
                + centralWidget()->layout()->spacing(),
            largest.height() + menuBar()->sizeHint().height() + margins.top()
                + margins.bottom()};
}

void GalleryWindow::makeMenu()
{
    QMenu* menu = menuBar()->addMenu(tr("&Gallery"));
    QAction* next = menu->addAction(tr("&Next Page"));
    next->setShortcut(ctrlAnd(Qt::Key_PageDown));
    connect(next, &QAction::triggered, this, [this] { turnPage(1); });
    QAction* previous = menu->addAction(tr("&Previous Page"));
    previous->setShortcut(ctrlAnd(Qt::Key_PageUp));
    connect(previous, &QAction::triggered, this, [this] { turnPage(-1); });
    menu->addSeparator();
    QAction* quit = menu->addAction(tr("&Quit"));
    quit->setShortcuts({QKeySequence(QKeySequence::Quit), ctrlAnd(Qt::Key_Q)});
    connect(quit, &QAction::triggered, this, &QWidget::close);
}

void GalleryWindow::turnPage(int step)
{
    setCurrentPage((currentPage() + step + pageCount()) % pageCount());
}
