// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// LiteralTest: shared by the tests of PHP and JavaScript literals. Both languages get the same
// values, and the same expected text except for maps.

#ifndef LITERALTEST_H
#define LITERALTEST_H

#include "Written.h"

#include <QObject>
#include <QString>
#include <QVariant>

/// The functions of a language, and its notation for maps.
struct LiteralLanguage
{
    const char* interpreter;
    const char* mapStart;
    const char* keyEnd;
    const char* mapEnd;
    void (*formatValue)(QTextStream*, const QVariant&);
    void (*formatTexts)(QTextStream*, const QStringList&);
    void (*formatNumbers)(QTextStream*, const QList<int>&);
    void (*formatList)(QTextStream*, const QVariantList&);
    void (*formatMap)(QTextStream*, const QVariantMap&);
};

/// The base of the test of one language; the tests of the base class run first.
class LiteralTest : public QObject
{
    Q_OBJECT

protected:
    explicit LiteralTest(const LiteralLanguage& language);

    /// A program that prints the value of \a literal as JSON.
    virtual QByteArray scriptFor(const QByteArray& literal) const = 0;

    /// The literal of \a value.
    QString literal(const QVariant& value) const;
    /// \a utf8 with "«" replaced by what opens a map, "»" by what closes one, and "→" by what
    /// follows a key.
    QString inLanguage(const QString& utf8) const;
    /// The full path of the interpreter; empty if it is not installed.
    QString interpreter() const { return mInterpreter; }
    /// The value that the interpreter reads from \a literal, as JSON; empty if it rejects it.
    QByteArray readAsJson(const QString& literal) const;

    /// Adds rows with a value and what a reader makes of it, for values that change on the way in
    /// any language.
    static void addQuirkRows();
    /// Compares the rows with what the interpreter reads.
    void compareQuirks() const;

private Q_SLOTS:
    void initTestCase();
    void literals_data();
    void literals();
    void keys_data();
    void keys();
    void arrays();
    void maps();
    void blocksMeetAnywhere();
    void streamIsLeftAsItWas();
    void indentationDoesNotApply();
    void deepNesting_data();
    void deepNesting();
    void deepNestingOnASmallStack_data() { deepNesting_data(); }
    void deepNestingOnASmallStack();
    void codeEndsAtANul();
    void largeDocumentsAreStreamed_data();
    void largeDocumentsAreStreamed();
    void faithfulValuesAreReadBack();

private:
    const LiteralLanguage mLanguage;
    QString mInterpreter;
};

#endif // LITERALTEST_H
