// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ErrorableCode: identifies an error and records the path along which it travelled.

#ifndef ORVAUTILS_ERRORABLECODE_H
#define ORVAUTILS_ERRORABLECODE_H

#include "orvautils_export.h"

#include <QString>
#include <QStringList>

class QDebug;

/// A value that identifies one error by its context and number, and carries the steps along which
/// it travelled through a tree of objects (see Errorable).
///
/// \code
/// ErrorableCode code;
/// code.context = QStringLiteral("Files");
/// code.code = 3;
/// code.mEnumText = QStringLiteral("CopyFailed");
/// code.toString(false); // "Files:CopyFailed (#3) ()"
/// \endcode
///
/// A plain value: copies are independent, and the functions may be called on any thread as long as
/// no two threads share an object. errorMessage() and overriddenErrorMessage() also read the tables
/// of Errorable.
class ORVAUTILS_EXPORT ErrorableCode
{
public:
    /// The owner or domain of the error, a class name or similar.
    QString context = QStringLiteral("ErrorableCode : N0 ERROR");
    /// The number of the error within its context.
    qint32 code = -1;
    /// The path of the error, the oldest step first.
    QStringList callSteps;
    /// Free text with further information.
    QString details;
    /// The symbolic name of the code. Read through enumText().
    QString mEnumText;

    /// The no-error value.
    ErrorableCode();

    /// Whether this is an error: false exactly when both context and code are those of the no-error
    /// value, whatever the other fields contain.
    bool isValid() const;

    /// True when context and code are equal. The other fields do not count. operator<, which is
    /// coarser, is not used.
    bool operator==(const ErrorableCode& other) const;

    /// Compares the texts made of the context followed by the code in decimal.
    ///
    /// The comparison is deliberately textual: "A" with code 10 comes before "A" with code 9, and
    /// "A" with code 12 is equivalent to "A1" with code 2, so that a table ordered by this operator
    /// treats the two as one key although they are not equal.
    bool operator<(const ErrorableCode& other) const;

    /// Appends one step to the path.
    void addCallStep(const QString& step);

    /// Appends every step in the given order, each followed by " (NE)": the objects that it names
    /// are not Errorable.
    void addCallStepsNE(const QStringList& steps);

    /// The symbolic name of the code, empty if it has none.
    QString enumText() const;

    /// "context:enum text (#code) (details)". With \a withCallStack, "#Call Stack" and every step,
    /// preceded by "=>", follow on separate lines:
    ///
    /// \code
    /// Files:CopyFailed (#3) (disk full)
    /// #Call Stack
    /// =>copier.cpp:12
    /// =>document.cpp:40
    /// \endcode
    ///
    /// Without any step the second line is "#Call Stack empty". The fields are inserted as they
    /// are: a "%1" in one of them is kept.
    QString toString(bool withCallStack) const;

    /// The message of this error: Errorable::errorMessage(*this).
    QString errorMessage() const;

    /// The message that replaces it if there is one: Errorable::overriddenErrorMessage(*this).
    QString overriddenErrorMessage() const;
};

/// Writes \a code with its steps, or "ErrorableCode()" for the no-error value:
///
/// \code
/// qDebug() << document.error();
/// // ErrorableCode("Files:CopyFailed (#3) (disk full)", ("copier.cpp:12", "document.cpp:40"))
/// \endcode
///
/// \relates ErrorableCode
ORVAUTILS_EXPORT QDebug operator<<(QDebug debug, const ErrorableCode& code);

#endif // ORVAUTILS_ERRORABLECODE_H
