// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Page.h"

#include "Sample.h"

#include <DrawUtils.h>

#include <QLabel>
#include <QVBoxLayout>

Page::Page(const QString& title, const QString& introduction,
           const QString& source, const QVector<Exhibit>& exhibits)
{
    auto* heading = new QLabel(title);
    DrawUtils::setWidgetTextPixelSize(heading, 22);
    DrawUtils::setWidgetTextBold(heading, true);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(18, 12, 18, 14);
    layout->setSpacing(12);
    layout->addWidget(heading);
    layout->addWidget(new QLabel(introduction));

    QVector<Sample*> samples;
    int width = 0;
    for (const Exhibit& exhibit : exhibits) {
        const QString code =
            Sample::codeFromSource(source, QString::fromLatin1(exhibit.code));
        samples.append(new Sample(exhibit.title, exhibit.widget, code));
        layout->addWidget(samples.last());
        width = qMax(width, samples.last()->neededWidth());
    }
    layout->addStretch();
    for (auto sample = samples.constBegin(); sample != samples.constEnd();
         ++sample)
        (*sample)->setSampleWidth(width);
}
