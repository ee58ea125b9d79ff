// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Page.h"

#include "Sample.h"

#include <DrawUtils.h>

#include <QLabel>
#include <QVBoxLayout>

Page::Page(const QString& title, const QString& introduction,
           const QString& source)
    : mSource(source)
    , mLayout(new QVBoxLayout(this))
{
    auto* heading = new QLabel(title);
    DrawUtils::setWidgetTextPixelSize(heading, 22);
    DrawUtils::setWidgetTextBold(heading, true);

    mLayout->setContentsMargins(18, 12, 18, 14);
    mLayout->setSpacing(12);
    mLayout->addWidget(heading);
    mLayout->addWidget(new QLabel(introduction));
    mLayout->addStretch();
}

void Page::addSample(const QString& title, QWidget* sample, const char* name)
{
    const QString code =
        Sample::codeFromSource(mSource, QString::fromLatin1(name));
    mSamples.append(new Sample(title, sample, code));
    // In front of the stretch that keeps the samples together at the top.
    mLayout->insertWidget(mLayout->count() - 1, mSamples.last());

    int width = 0;
    const QVector<Sample*>& samples = mSamples;
    for (const Sample* one : samples)
        width = qMax(width, one->neededWidth());
    for (Sample* one : samples)
        one->setSampleWidth(width);
}
