// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Layouts.h"

#include <QBoxLayout>
#include <QFormLayout>
#include <QLabel>
#include <QSlider>

namespace {

QWidget* arranged(QBoxLayout::Direction direction, int spacing,
                  std::initializer_list<QWidget*> widgets)
{
    auto* box = new QWidget;
    auto* layout = new QBoxLayout(direction, box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(spacing);
    for (QWidget* widget : widgets)
        layout->addWidget(widget);
    layout->addStretch();
    return box;
}

} // namespace

QWidget* Layouts::column(std::initializer_list<QWidget*> widgets)
{
    return arranged(QBoxLayout::TopToBottom, 8, widgets);
}

QWidget* Layouts::row(std::initializer_list<QWidget*> widgets)
{
    return arranged(QBoxLayout::LeftToRight, 12, widgets);
}

QWidget* Layouts::labelled(const QString& text, QWidget* widget)
{
    auto* label = new QLabel(text);
    label->setBuddy(widget);
    return arranged(QBoxLayout::LeftToRight, 8, {label, widget});
}

QWidget* Layouts::form(std::initializer_list<std::pair<QString, QWidget*>> rows)
{
    const int labelWidth = 110;
    auto* box = new QWidget;
    auto* layout = new QFormLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setLabelAlignment(Qt::AlignLeft);
    layout->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    for (const auto& row : rows) {
        auto* label = new QLabel(row.first);
        label->setMinimumWidth(labelWidth);
        label->setBuddy(row.second);
        layout->addRow(label, row.second);
    }
    return box;
}

QSlider* Layouts::slider(const QString& name, const Layouts::Scale& scale)
{
    auto* slider = new QSlider(Qt::Horizontal);
    slider->setObjectName(name);
    slider->setRange(scale.minimum, scale.maximum);
    slider->setValue(scale.value);
    slider->setPageStep(scale.page);
    slider->setMinimumWidth(scale.width);
    return slider;
}

QLabel* Layouts::plainText(const QString& text)
{
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    return label;
}
