// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Failure: one thing that could not be published, and why. Collected while the program works and
// told together at the end.

#ifndef FAILURE_H
#define FAILURE_H

#include <QString>
#include <QVector>

struct Failure
{
    QString subject; ///< what failed, as a person knows it: "bowls/blue bowl.jpg"
    QString reason; ///< why, to be read after the subject: "cannot be decoded (…)"
};

using Failures = QVector<Failure>;

#endif // FAILURE_H
