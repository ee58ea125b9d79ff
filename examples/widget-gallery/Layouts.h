// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Layouts: the few arrangements that samples are made of.

#ifndef LAYOUTS_H
#define LAYOUTS_H

#include <QString>

#include <initializer_list>
#include <utility>

class QLabel;
class QSlider;
class QWidget;

namespace Layouts {

/// The widgets below each other, at the left.
QWidget* column(std::initializer_list<QWidget*> widgets);

/// The widgets beside each other, at the left.
QWidget* row(std::initializer_list<QWidget*> widgets);

/// \a widget behind its label; the mnemonic in \a text gives it the focus.
QWidget* labelled(const QString& text, QWidget* widget);

/// Labels and their widgets, in two columns as all forms of the gallery have
/// them; the mnemonic of a label gives its widget the focus.
QWidget* form(std::initializer_list<std::pair<QString, QWidget*>> rows);

/// What a slider of the gallery can have.
struct Scale
{
    int minimum;
    int maximum;
    int value;
    int page;
    int width; ///< of the slider at least, in pixels
};

/// A horizontal slider that is found by \a name.
QSlider* slider(const QString& name, const Scale& scale);

/// A plain text that is not taken for HTML.
QLabel* plainText(const QString& text = QString());

} // namespace Layouts

#endif // LAYOUTS_H
