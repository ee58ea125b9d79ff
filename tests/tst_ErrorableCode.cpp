// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ErrorableCode.h"

#include "Columns.h"
#include "Errorable.h"

#include <QtTest>

#include <algorithm>
#include <type_traits>

Q_DECLARE_METATYPE(ErrorableCode)

namespace {

ErrorableCode makeCode(const QString& context, qint32 number)
{
    ErrorableCode code;
    code.context = context;
    code.code = number;
    return code;
}

/// Fills the fields that do not identify the error.
void fillOtherFields(ErrorableCode* code)
{
    code->addCallStep(QStringLiteral("a.cpp:1"));
    code->details = QStringLiteral("details");
    code->mEnumText = QStringLiteral("Text");
}

} // namespace

class tst_ErrorableCode : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void fields();
    void valid_data();
    void valid();
    void equal_data();
    void equal();
    void less_data();
    void less();
    void callSteps();
    void callStepsNE();
    void toString_data();
    void toString();
    void copies();
    void messages();
    void debugOutput_data();
    void debugOutput();
};

void tst_ErrorableCode::cleanup()
{
    Errorable::sErrorMessages.clear();
    Errorable::sOverriddenErrorMessage.clear();
}

void tst_ErrorableCode::fields()
{
    const ErrorableCode none;
    QCOMPARE(none.context, QStringLiteral("ErrorableCode : N0 ERROR"));
    QCOMPARE(none.code, qint32(-1));
    QCOMPARE(none.callSteps, QStringList());
    QCOMPARE(none.details, QString());
    QCOMPARE(none.mEnumText, QString());
    QCOMPARE(none.enumText(), QString());
    static_assert(std::is_same<decltype(ErrorableCode::code), qint32>::value, "");

    // The order of the fields in memory.
    const char* const start = reinterpret_cast<const char*>(&none);
    QVector<qptrdiff> offsets;
    for (const void* const field :
         {static_cast<const void*>(&none.context), static_cast<const void*>(&none.code),
          static_cast<const void*>(&none.callSteps), static_cast<const void*>(&none.details),
          static_cast<const void*>(&none.mEnumText)})
        offsets.append(static_cast<const char*>(field) - start);
    QVERIFY(std::is_sorted(offsets.cbegin(), offsets.cend()));

    ErrorableCode named;
    named.mEnumText = QStringLiteral("CopyFailed");
    QCOMPARE(named.enumText(), QStringLiteral("CopyFailed"));
}

void tst_ErrorableCode::valid_data()
{
    const auto row = columns<QString, int, bool>("context", "number", "expected");
    const QString none = QStringLiteral("ErrorableCode : N0 ERROR");
    row("no error", none, -1, false);
    row("only the code", none, 0, true);
    row("only the context", "Files", -1, true);
    row("empty context", QString(), -1, true);
    row("another case", "ErrorableCode : N0 error", -1, true);
    row("both", "Files", 3, true);
}

void tst_ErrorableCode::valid()
{
    QFETCH(QString, context);
    QFETCH(int, number);
    QFETCH(bool, expected);
    ErrorableCode code = makeCode(context, number);
    QCOMPARE(code.isValid(), expected);
    fillOtherFields(&code);
    QCOMPARE(code.isValid(), expected); // the other fields are ignored
}

void tst_ErrorableCode::equal_data()
{
    const auto row = columns<QString, int, bool>("context", "number", "expected");
    row("same", "A", 12, true);
    row("another code", "A", 13, false);
    row("another context", "B", 12, false);
    row("same text of both together", "A1", 2, false);
}

void tst_ErrorableCode::equal()
{
    QFETCH(QString, context);
    QFETCH(int, number);
    QFETCH(bool, expected);
    ErrorableCode other = makeCode(context, number);
    const ErrorableCode code = makeCode(QStringLiteral("A"), 12);
    QCOMPARE(code == other, expected);
    fillOtherFields(&other);
    QCOMPARE(code == other, expected); // the other fields are ignored
}

void tst_ErrorableCode::less_data()
{
    const auto row = columns<QString, int, QString, int, bool, bool>(
        "leftContext", "leftCode", "rightContext", "rightCode", "isLess", "isGreater");
    const QString a = QStringLiteral("A");
    row("same", a, 1, a, 1, false, false);
    row("A10 before A9", a, 10, a, 9, true, false);
    row("A9 before A90", a, 9, a, 90, true, false);
    row("A12 and A12", a, 12, "A1", 2, false, false);
    row("A-1 before A0", a, -1, a, 0, true, false);
    row("A-1 before A-2", a, -1, a, -2, true, false);
    row("by context", a, 9, "B", 1, true, false);
    row("capitals first", "B", 1, "a", 1, true, false);
    row("by code unit, not by language", "z", 1, "\u00e9", 1, true, false);
}

void tst_ErrorableCode::less()
{
    QFETCH(QString, leftContext);
    QFETCH(int, leftCode);
    QFETCH(QString, rightContext);
    QFETCH(int, rightCode);
    QFETCH(bool, isLess);
    QFETCH(bool, isGreater);
    const ErrorableCode left = makeCode(leftContext, leftCode);
    const ErrorableCode right = makeCode(rightContext, rightCode);
    QCOMPARE(left < right, isLess);
    QCOMPARE(right < left, isGreater);
}

void tst_ErrorableCode::callSteps()
{
    ErrorableCode code;
    code.addCallStep(QStringLiteral("b.cpp:2"));
    code.addCallStep(QStringLiteral("a.cpp:1"));
    code.addCallStep(QStringLiteral("b.cpp:2"));
    QCOMPARE(code.callSteps,
             QStringList({QStringLiteral("b.cpp:2"), QStringLiteral("a.cpp:1"),
                          QStringLiteral("b.cpp:2")}));
}

void tst_ErrorableCode::callStepsNE()
{
    ErrorableCode code;
    code.addCallStepsNE(QStringList());
    QCOMPARE(code.callSteps, QStringList());
    code.addCallStep(QStringLiteral("a.cpp:1"));
    code.addCallStepsNE({QStringLiteral("View"), QStringLiteral("Window")});
    QCOMPARE(code.callSteps,
             QStringList({QStringLiteral("a.cpp:1"), QStringLiteral("View (NE)"),
                          QStringLiteral("Window (NE)")}));
}

void tst_ErrorableCode::toString_data()
{
    const auto row = columns<QString, int, QStringList, QString, QString, QString, QString>(
        "context", "number", "steps", "details", "enumText", "text", "callStack");
    const QString files = QStringLiteral("Files");
    const QString copyFailed = QStringLiteral("CopyFailed");
    row("no details", files, 3, QStringList(), QString(), copyFailed, "Files:CopyFailed (#3) ()",
        "\n#Call Stack empty");
    row("one step", files, 3, QStringList(QStringLiteral("a.cpp:1")), "disk full", copyFailed,
        "Files:CopyFailed (#3) (disk full)", "\n#Call Stack\n=>a.cpp:1");
    row("two steps", files, -3, QStringList({QStringLiteral("a.cpp:1"), QStringLiteral("W (NE)")}),
        QString(), QString(), "Files: (#-3) ()", "\n#Call Stack\n=>a.cpp:1\n=>W (NE)");
    row("one empty step", files, 3, QStringList(QString()), QString(), copyFailed,
        "Files:CopyFailed (#3) ()", "\n#Call Stack\n=>");
    row("no error", "ErrorableCode : N0 ERROR", -1, QStringList(), QString(), QString(),
        "ErrorableCode : N0 ERROR: (#-1) ()", "\n#Call Stack empty");
    row("placeholders in the values", "%2 %4", 3, QStringList(QStringLiteral("%1")), "%1%2%3%4",
        "%3 %1 %99", "%2 %4:%3 %1 %99 (#3) (%1%2%3%4)", "\n#Call Stack\n=>%1");
}

void tst_ErrorableCode::toString()
{
    QFETCH(QString, context);
    QFETCH(int, number);
    QFETCH(QStringList, steps);
    QFETCH(QString, details);
    QFETCH(QString, enumText);
    QFETCH(QString, text);
    QFETCH(QString, callStack);
    ErrorableCode code = makeCode(context, number);
    code.callSteps = steps;
    code.details = details;
    code.mEnumText = enumText;
    QCOMPARE(code.toString(false), text);
    QCOMPARE(code.toString(true), QString(text + callStack));
}

void tst_ErrorableCode::copies()
{
    ErrorableCode code = makeCode(QStringLiteral("Files"), 3);
    code.details = QStringLiteral("details");
    code.mEnumText = QStringLiteral("Text");
    code.addCallStep(QStringLiteral("a.cpp:1"));
    ErrorableCode copy = code;
    QCOMPARE(copy.toString(true), code.toString(true));
    copy.addCallStep(QStringLiteral("b.cpp:2"));
    QCOMPARE(code.callSteps, QStringList(QStringLiteral("a.cpp:1")));
}

void tst_ErrorableCode::messages()
{
    ErrorableCode code = makeCode(QStringLiteral("Files"), 3);
    QCOMPARE(code.errorMessage(), QStringLiteral("Files: (#3) ()"));
    QCOMPARE(code.overriddenErrorMessage(), QStringLiteral("Files: (#3) ()"));
    Errorable::sErrorMessages[code] = QStringLiteral("A file could not be copied.");
    QCOMPARE(code.errorMessage(), QStringLiteral("A file could not be copied."));
    QCOMPARE(code.overriddenErrorMessage(), QStringLiteral("A file could not be copied."));
    Errorable::sOverriddenErrorMessage[code] = QStringLiteral("Please look at the disk.");
    QCOMPARE(code.errorMessage(), QStringLiteral("A file could not be copied."));
    QCOMPARE(code.overriddenErrorMessage(), QStringLiteral("Please look at the disk."));
}

void tst_ErrorableCode::debugOutput_data()
{
    const auto row = columns<ErrorableCode, QString>("code", "text");
    ErrorableCode code;
    row("no error", code, "ErrorableCode()");
    code.details = QStringLiteral("details");
    code.addCallStep(QStringLiteral("a.cpp:1"));
    row("no error with other fields", code, "ErrorableCode()");
    code = makeCode(QStringLiteral("Files"), 3);
    code.mEnumText = QStringLiteral("CopyFailed");
    row("without steps", code, R"x(ErrorableCode("Files:CopyFailed (#3) ()"))x");
    code.details = QStringLiteral("disk full");
    code.addCallStep(QStringLiteral("copier.cpp:12"));
    code.addCallStep(QStringLiteral("W (NE)"));
    row("with steps", code,
        R"x(ErrorableCode("Files:CopyFailed (#3) (disk full)", ("copier.cpp:12", "W (NE)")))x");
}

void tst_ErrorableCode::debugOutput()
{
    QFETCH(ErrorableCode, code);
    QFETCH(QString, text);
    QString output;
    QDebug(&output) << code << 1; // the format of what follows is unchanged
    QCOMPARE(output, text + QStringLiteral(" 1 "));
}

QTEST_GUILESS_MAIN(tst_ErrorableCode)
#include "tst_ErrorableCode.moc"
