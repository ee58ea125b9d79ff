// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Layouts: the few layouts that samples are made of.

#ifndef LAYOUTS_H
#define LAYOUTS_H

#include <QString>

#include <initializer_list>
#include <utility>

class QLabel;
class QSlider;
class QWidget;

namespace Layouts {

/// The widgets one below the other, aligned to the left.
QWidget* column(std::initializer_list<QWidget*> widgets);

/// The widgets side by side, aligned to the left.
QWidget* row(std::initializer_list<QWidget*> widgets);

/// \a widget after its label; the mnemonic in \a text gives it the focus.
QWidget* labelled(const QString& text, QWidget* widget);

/// Labels and their widgets, in two columns like all forms of the gallery; the
/// mnemonic of a label gives its widget the focus.
QWidget* form(std::initializer_list<std::pair<QString, QWidget*>> rows);

/// The properties of a slider of the gallery.
struct Scale
{
    int minimum;
    int maximum;
    int value;
    int page;
    int width; ///< minimum width of the slider in pixels
};

/// A horizontal slider with the object name \a name.
QSlider* slider(const QString& name, const Scale& scale);

/// A label whose text is not interpreted as HTML.
QLabel* plainText(const QString& text = QString());

} // namespace Layouts

#endif // LAYOUTS_H
