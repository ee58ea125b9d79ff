// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "LogStream.h"

#include "Columns.h"
#include "LogCapture.h"
#include "logrecord_p.h"

#include <QLoggingCategory>
#include <QtTest>

#include <functional>

using Write = std::function<void(LogStream&)>;
Q_DECLARE_METATYPE(Write)

/// Writes \a value to the record that it receives.
template <typename T>
Write writing(const T& value)
{
    return [value](LogStream& record) { record << value; };
}

class tst_LogStream : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void typeNumbers();
    void emitsOnDestruction();
    void typesAndContext_data();
    void typesAndContext();
    void values_data();
    void values();
    void spacing();
    void filteredByCategory();
    void nullNames();
    void recordOfTheLibrary();
    void recordNamesAnotherFunction();
};

void tst_LogStream::typeNumbers()
{
    QCOMPARE(int(LogType::Info), 1);
    QCOMPARE(int(LogType::Warning), 2);
    QCOMPARE(int(LogType::Critical), 4);
}

void tst_LogStream::emitsOnDestruction()
{
    LogCapture log;
    {
        LogStream record(LogType::Warning, "FileUtils", "copyDir", 42);
        record << QStringLiteral("unable to mkdir");
        QVERIFY(log.records().isEmpty());
    }
    QCOMPARE(log.records().size(), 1);
}

void tst_LogStream::typesAndContext_data()
{
    const auto row = columns<int, int>("type", "qtType");
    row("1 is info", 1, int(QtInfoMsg));
    row("2 is warning", 2, int(QtWarningMsg));
    row("4 is critical", 4, int(QtCriticalMsg));
}

void tst_LogStream::typesAndContext()
{
    QFETCH(int, type);
    QFETCH(int, qtType);
    LogCapture log;
    LogStream(static_cast<LogType>(type), "FileUtils", "copyDir", 42) << "text";
    const QVector<CapturedRecord> records = log.records();
    QCOMPARE(records.size(), 1);
    QCOMPARE(int(records[0].type), qtType);
    QCOMPARE(records[0].category, QByteArray("orvautils"));
    QCOMPARE(records[0].file, QByteArray("FileUtils"));
    QCOMPARE(records[0].function, QByteArray("copyDir"));
    QCOMPARE(records[0].line, 42);
    QCOMPARE(records[0].text, QStringLiteral("text"));
}

void tst_LogStream::values_data()
{
    const auto row = columns<Write, QString>("write", "text");
    row("text", writing(QStringLiteral("a\"b\\ c")), "a\"b\\ c");
    row("accents", writing(QStringLiteral("\u00e9\u20ac")), "\u00e9\u20ac");
    row("empty text", writing(QString()), QString());
    row("outer blanks stay", writing(QStringLiteral(" a ")), " a ");
    row("int", writing(-7), "-7");
    row("unsigned", writing(4294967295u), "4294967295");
    row("64 bit", writing(qint64(-5000000000)), "-5000000000");
    row("unsigned 64 bit", writing(quint64(18446744073709551615u)), "18446744073709551615");
    row("real", writing(0.5), "0.5");
    row("size", writing(QSize(1600, -1)), "QSize(1600, -1)");
}

void tst_LogStream::values()
{
    QFETCH(Write, write);
    QFETCH(QString, text);
    LogCapture log;
    {
        LogStream record(LogType::Info, "f", "g", 1);
        write(record);
    }
    QCOMPARE(log.records().at(0).text, text);
}

void tst_LogStream::spacing()
{
    LogCapture log;
    {
        LogStream record(LogType::Info, "f", "g", 1);
        (record << "a").checkSpacing().checkSpacing();
        (record << 2).checkSpacing();
        record << "b"
               << "c";
        record.checkSpacing();
    }
    QCOMPARE(log.records().at(0).text, QStringLiteral("a 2 bc"));
}

void tst_LogStream::filteredByCategory()
{
    LogCapture log;
    QLoggingCategory::setFilterRules(QStringLiteral("orvautils.info=false"));
    LogStream(LogType::Info, "f", "g", 1) << "dropped";
    LogStream(LogType::Warning, "f", "g", 1) << "kept";
    QLoggingCategory::setFilterRules(QString());
    LogStream(LogType::Info, "f", "g", 1) << "kept again";
    QCOMPARE(log.lines(),
             QStringList({QStringLiteral("warning orvautils f g: kept"),
                          QStringLiteral("info orvautils f g: kept again")}));
}

void tst_LogStream::nullNames()
{
    LogCapture log;
    LogStream(LogType::Critical, nullptr, nullptr, 0) << static_cast<const char*>(nullptr);
    QCOMPARE(log.records().at(0).text, QString());
    QCOMPARE(log.records().at(0).file, QByteArray());
}

void tst_LogStream::recordOfTheLibrary()
{
    LogCapture log;
    const int line = __LINE__ + 1;
    ORVAUTILS_LOG_WARNING() << "unable to copy" << QStringLiteral("/a b") << 3 << QSize(1, 2);
    ORVAUTILS_LOG_INFO() << "one";
    ORVAUTILS_LOG_CRITICAL() << "ends with a blank " << 1;
    const QVector<CapturedRecord> records = log.records();
    QCOMPARE(records.at(0).line, line);
    QCOMPARE(
        log.lines(),
        QStringList(
            {QStringLiteral(
                 "warning orvautils tst_LogStream recordOfTheLibrary: unable to copy /a b 3 "
                 "QSize(1, 2)"),
             QStringLiteral("info orvautils tst_LogStream recordOfTheLibrary: one"),
             QStringLiteral(
                 "critical orvautils tst_LogStream recordOfTheLibrary: ends with a blank  1")}));
}

void tst_LogStream::recordNamesAnotherFunction()
{
    LogCapture log;
    ORVAUTILS_LOG_WARNING_IN("copyDir") << "x";
    QCOMPARE(log.lines(),
             QStringList(QStringLiteral("warning orvautils tst_LogStream copyDir: x")));
}

QTEST_GUILESS_MAIN(tst_LogStream)
#include "tst_LogStream.moc"
