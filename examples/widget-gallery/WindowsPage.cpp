// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The page on windows that fade in and out, widgets that keep their place, and
// paths that are too long for theirs.

#include "Canvas.h"
#include "Layouts.h"
#include "Page.h"
#include "Pages.h"
#include "Pictures.h"

#include <DrawUtils.h>
#include <FileUtils.h>
#include <QObjectEventFilter.h>
#include <WidgetUtils.h>

#include <QCheckBox>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>

namespace {

/// A small window over the gallery that leaves the focus where it is.
QLabel* makeNotice(QWidget* gallery)
{
    auto* notice = new QLabel(Page::tr("The site was published."), gallery,
                              Qt::Tool | Qt::FramelessWindowHint);
    notice->setObjectName(QStringLiteral("notice"));
    notice->setAttribute(Qt::WA_ShowWithoutActivating);
    notice->setAlignment(Qt::AlignCenter);
    notice->resize(280, 80);
    DrawUtils::setBootstrapColor(notice, ColorUtils::Success);
    return notice;
}

/// The buttons and their notice, which is created when it is first shown.
class FadeControls : public QWidget
{
public:
    FadeControls()
        : mDuration(new QSpinBox)
        , mState(Layouts::plainText(Page::tr("The notice is hidden.")))
    {
        mDuration->setObjectName(QStringLiteral("duration"));
        mDuration->setRange(0, 5000);
        mDuration->setSingleStep(100);
        mDuration->setValue(600);
        mDuration->setSuffix(QStringLiteral(" ms"));
        mState->setObjectName(QStringLiteral("noticeState"));
        auto* in = new QPushButton(Page::tr("Fade &in"));
        in->setObjectName(QStringLiteral("fadeIn"));
        auto* out = new QPushButton(Page::tr("Fade &out"));
        out->setObjectName(QStringLiteral("fadeOut"));
        connect(in, &QPushButton::clicked, this, [this] { fadeIn(); });
        connect(out, &QPushButton::clicked, this, [this] { fadeOut(); });

        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(Layouts::row(
            {Layouts::labelled(Page::tr("&Duration"), mDuration), in, out}));
        layout->addWidget(mState);
    }

    // The notice belongs to the window; it is deleted first, because its end is
    // shown in the label of this widget.
    ~FadeControls() override { delete mNotice; }

private:
    void fadeIn()
    {
        if (!mNotice) {
            mNotice = makeNotice(window());
            watch();
        }
        QLabel* const notice = mNotice;
        const int duration = mDuration->value();
        //! [show]
        WidgetUtils::createWidgetRoundedMask(notice, 16);
        WidgetUtils::moveDialogToCenterOfParent(notice);
        WidgetUtils::showAnimated(notice, duration); // milliseconds
        //! [show]
    }

    void fadeOut()
    {
        if (!mNotice)
            return;
        QLabel* const notice = mNotice;
        const int duration = mDuration->value();
        //! [show]
        WidgetUtils::hideAnimated(notice, duration);
        //! [show]
    }

    void watch()
    {
        QLabel* const state = mState;
        //! [watch]
        QObjectEventFilter::filter(mNotice, [state](QObject*, QEvent* event) {
            if (event->type() == QEvent::Show)
                state->setText(Page::tr("The notice is shown."));
            if (event->type() == QEvent::Hide)
                state->setText(Page::tr("The notice is hidden."));
            return false; // the notice gets its events all the same
        });
        //! [watch]
    }

    QSpinBox* mDuration;
    QLabel* mState;
    QPointer<QLabel> mNotice;
};

QWidget* hiddenPicture()
{
    auto* picture =
        new Canvas(QSize(112, 70), [](QPainter* painter, const QRect& rect) {
            painter->drawPixmap(rect, Pictures::boat(rect.size() * 2));
        });
    picture->setObjectName(QStringLiteral("picture"));
    //! [retain]
    WidgetUtils::RetainSizeWhenHidden(picture);
    //! [retain]
    auto* shown = new QCheckBox(Page::tr("&Show the picture"));
    shown->setObjectName(QStringLiteral("shown"));
    shown->setChecked(true);
    QObject::connect(shown, &QCheckBox::toggled, picture, &QWidget::setVisible);
    return Layouts::row(
        {picture, shown,
         Layouts::plainText(Page::tr("Its place stays free."))});
}

/// \a text in a box of \a width pixels.
void drawBox(QPainter* painter, const QPoint& place, const QString& text,
             int width)
{
    const int padding = 4;
    const QRect box(place, QSize(width + 2 * padding, 20));
    painter->fillRect(box, QColor(0xe8, 0xf1, 0xfb));
    painter->drawText(box.adjusted(padding, 0, -padding, 0),
                      Qt::AlignLeft | Qt::AlignVCenter, text);
}

QWidget* ownFolder()
{
    auto* path =
        new QLineEdit(QStringLiteral("/srv/shop/images/summer/beach.jpg"));
    path->setObjectName(QStringLiteral("path"));
    path->setMinimumWidth(270);
    path->setCursorPosition(0);
    auto* width =
        Layouts::slider(QStringLiteral("width"), {10, 380, 170, 20, 270});
    auto* canvas = new Canvas(
        QSize(400, 36), [path, width](QPainter* painter, const QRect&) {
            //! [elided]
            QString folder = path->text();
            const QString text = FileUtils::elidedFolder(
                painter->fontMetrics(), folder, width->value());
            //! [elided]
            drawBox(painter, QPoint(6, 8), text, width->value());
        });
    canvas->setObjectName(QStringLiteral("folderCanvas"));
    const auto redraw = [canvas] { canvas->update(); };
    QObject::connect(path, &QLineEdit::textChanged, canvas, redraw);
    QObject::connect(width, &QSlider::valueChanged, canvas, redraw);
    return Layouts::column({canvas,
                            Layouts::form({{Page::tr("&Folder"), path},
                                           {Page::tr("&Width"), width}})});
}

} // namespace

QVector<Exhibit> windowsExhibits()
{
    return {
        {Page::tr("A notice that fades in and out"), new FadeControls, "show"},
        {Page::tr("Know when it happens"),
         Layouts::plainText(
             Page::tr("An event filter written where it is needed.")),
         "watch"},
        {Page::tr("A hidden widget that keeps its place"), hiddenPicture(),
         "retain"},
        {Page::tr("A path that loses whole folders at its left"), ownFolder(),
         "elided"},
    };
}
