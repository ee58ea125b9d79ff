// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The page of windows that fade in and out, and of what else dialogs need.

#include "Canvas.h"
#include "Layouts.h"
#include "Page.h"
#include "Pages.h"
#include "Pictures.h"

#include <DrawUtils.h>
#include <QObjectEventFilter.h>
#include <WidgetUtils.h>

#include <QCheckBox>
#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
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

/// The buttons and their notice, which is made when it is first shown.
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

    // The notice belongs to the window; it goes first, since its end shows in
    // the label of this widget.
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
        //! [hide]
        WidgetUtils::hideAnimated(notice, duration);
        //! [hide]
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

void drawBoat(QPainter* painter, const QRect& rect)
{
    painter->drawPixmap(rect, Pictures::boat(rect.size() * 2));
}

QWidget* roundedPicture()
{
    auto* picture = new Canvas(QSize(160, 100), drawBoat);
    //! [mask]
    WidgetUtils::createWidgetRoundedMask(picture, 24);
    //! [mask]
    return picture;
}

QWidget* hiddenPicture()
{
    auto* picture = new Canvas(QSize(112, 70), drawBoat);
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

} // namespace

Page* makeFadePage(const QString& title)
{
    auto* page = new Page(title,
                          Page::tr("A notice that comes and goes softly, in "
                                   "the middle of its parent."),
                          QStringLiteral("FadePage.cpp"));
    page->addSample(Page::tr("Fade in"), new FadeControls, "show");
    page->addSample(Page::tr("Fade out"),
                    Layouts::plainText(
                        Page::tr("The notice is hidden at once; its opacity\n"
                                 "goes on to 0 behind the scene.")),
                    "hide");
    page->addSample(Page::tr("Know when it happens"),
                    Layouts::plainText(Page::tr(
                        "An event filter written where it is needed.")),
                    "watch");
    page->addSample(Page::tr("Rounded corners"), roundedPicture(), "mask");
    page->addSample(Page::tr("A hidden widget that keeps its place"),
                    hiddenPicture(), "retain");
    return page;
}
