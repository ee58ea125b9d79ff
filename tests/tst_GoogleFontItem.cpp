// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "GoogleFontItem.h"

#include "Bracketing.h"
#include "Columns.h"
#include "LogCapture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

namespace {

QJsonObject json(const QString& text)
{
    return QJsonDocument::fromJson(text.toUtf8()).object();
}

/// A family with the given variants, separated by "|".
GoogleFontItem withVariants(const QString& variants)
{
    QJsonObject object;
    object[QStringLiteral("variants")] =
        QJsonArray::fromStringList(variants.split(QLatin1Char('|')));
    return GoogleFontItem(object);
}

/// The weights as a text that is easy to compare: "400n 700ni" (n upright, i italic).
QString told(const QMap<int, GoogleFontWeightDetail>& weights)
{
    QStringList texts;
    for (auto it = weights.constBegin(); it != weights.constEnd(); ++it) {
        texts += QString::number(it.key()) + (it->hasNormal ? QStringLiteral("n") : QString())
            + (it->hasItalic ? QStringLiteral("i") : QString());
    }
    return texts.join(QLatin1Char(' '));
}

} // namespace

/// A family of which only \a key is known; its value is the name of the data row.
static GoogleFontItem itemOfThisRow(const char* key)
{
    QJsonObject object;
    object[QLatin1String(key)] = QLatin1String(QTest::currentDataTag());
    return GoogleFontItem(object);
}

class tst_GoogleFontItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emptyItem();
    void readsTheObject();
    void otherKeysStay();
    void compressedFamily_data();
    void compressedFamily();
    void lastModified_data();
    void lastModified();
    void lastModifiedAgreesWithQt();
    void variantsInFileOrder();
    void variantsThatAreNoText();
    void commonVariants_data();
    void commonVariants();
    void weights_data();
    void weights();
    void labelWeight_data();
    void labelWeight();
    void labelFromVariant_data();
    void labelFromVariant();
    void labelsAreTranslated();
    void nothingIsLogged();
};

void tst_GoogleFontItem::emptyItem()
{
    const GoogleFontItem byDefault;
    const GoogleFontItem fromEmptyObject{QJsonObject()};
    for (const GoogleFontItem& item : {byDefault, fromEmptyObject}) {
        QCOMPARE(item.family(), QString());
        QCOMPARE(item.compressedFamily(), QString());
        QVERIFY(!item.lastModified().isValid());
        QCOMPARE(item.allVariants(), QStringList());
        QCOMPARE(item.commonVariants(), QStringList());
        QVERIFY(item.availableWeights().isEmpty());
        QVERIFY(item.object().isEmpty());
    }
}

void tst_GoogleFontItem::readsTheObject()
{
    const GoogleFontItem item(json(QStringLiteral(
        R"({"family": "Open Sans", "variants": ["regular", "700", "700italic"],
            "lastModified": "2022-02-24"})")));
    QCOMPARE(item.family(), QStringLiteral("Open Sans"));
    QCOMPARE(item.compressedFamily(), QStringLiteral("OpenSans"));
    QCOMPARE(item.lastModified(), QDate(2022, 2, 24));
    QCOMPARE(item.allVariants(),
             QString(QStringLiteral("regular 700 700italic")).split(QLatin1Char(' ')));
    QCOMPARE(told(item.availableWeights()), QStringLiteral("400n 700ni"));
    const GoogleFontItem copy = item;
    QCOMPARE(copy.family(), QStringLiteral("Open Sans"));
}

void tst_GoogleFontItem::otherKeysStay()
{
    const QJsonObject object = json(QStringLiteral(
        R"({"family": "X", "variants": [], "subsets": ["latin"], "version": "v1", "files": {"a": 1},
            "category": "serif", "kind": "k", "axes": [null]})"));
    QCOMPARE(GoogleFontItem(object).object(), object);
}

void tst_GoogleFontItem::compressedFamily_data()
{
    const auto row = columns<QString>("compressed");
    row("Abel", "Abel");
    row("Open Sans", "OpenSans");
    row(" A  b c ", "Abc");
    // Only blanks are removed.
    row("A\tb-c_d", "A\tb-c_d");
    row("   ", "");
}

void tst_GoogleFontItem::compressedFamily()
{
    QFETCH(QString, compressed);
    QCOMPARE(itemOfThisRow("family").compressedFamily(), compressed);
}

void tst_GoogleFontItem::lastModified_data()
{
    const auto row = columns<QDate>("date");
    row("2022-02-25", QDate(2022, 2, 25));
    row("2024-02-29", QDate(2024, 2, 29));
    row("0001-01-01", QDate(1, 1, 1));
    row("9999-12-31", QDate(9999, 12, 31));
    for (const char* text : {"",
                             "2022",
                             "2022-02",
                             "2022-2-25",
                             "2022-02-5",
                             "2022-02-30",
                             "2022-13-01",
                             "2022-00-01",
                             "0000-01-01",
                             "22-02-25",
                             "-2022-02-25",
                             "12022-02-25",
                             "2022/02/25",
                             "2022-02/25",
                             "2022-02-25 ",
                             " 2022-02-25",
                             "2022-02-25T00:00",
                             "20a2-02-25",
                             "2022-0b-25",
                             "2022-02-2c",
                             "/022-02-25",
                             "2022-02-2:",
                             "25-02-2022",
                             "today"})
        row(text, QDate());
}

void tst_GoogleFontItem::lastModified()
{
    QFETCH(QDate, date);
    QCOMPARE(itemOfThisRow("lastModified").lastModified(), date);
}

void tst_GoogleFontItem::lastModifiedAgreesWithQt()
{
    // Every text of the right form with a month from 00 to 13 and a day from 00 to 32.
    for (const char* year : {"0000", "0004", "1900", "2000", "2022", "2024"}) {
        for (int month = 0; month <= 13; ++month) {
            for (int day = 0; day <= 32; ++day) {
                const QString text = QStringLiteral("%1-%2-%3")
                                         .arg(QLatin1String(year))
                                         .arg(month, 2, 10, QLatin1Char('0'))
                                         .arg(day, 2, 10, QLatin1Char('0'));
                QJsonObject object;
                object[QStringLiteral("lastModified")] = text;
                QCOMPARE(GoogleFontItem(object).lastModified(),
                         QDate::fromString(text, QStringLiteral("yyyy-MM-dd")));
            }
        }
    }
    QVERIFY(!GoogleFontItem(json(QStringLiteral(R"({"lastModified": 20220225})")))
                 .lastModified()
                 .isValid());
}

void tst_GoogleFontItem::variantsInFileOrder()
{
    QCOMPARE(withVariants(QStringLiteral("700|regular|100italic|700")).allVariants(),
             QString(QStringLiteral("700|regular|100italic|700")).split(QLatin1Char('|')));
}

void tst_GoogleFontItem::variantsThatAreNoText()
{
    QCOMPARE(
        GoogleFontItem(json(QStringLiteral(
                           R"({"variants": [700, "regular", null, ["italic"], true, "300"]})")))
            .allVariants(),
        QString(QStringLiteral("regular 300")).split(QLatin1Char(' ')));
    QCOMPARE(GoogleFontItem(json(QStringLiteral(R"({"variants": "regular"})"))).allVariants(),
             QStringList());
    QCOMPARE(GoogleFontItem(json(QStringLiteral(R"({"variants": {"regular": 1}})"))).allVariants(),
             QStringList());
}

void tst_GoogleFontItem::commonVariants_data()
{
    const auto row = columns<QString>("common");
    row("regular", "regular");
    row("700italic|700|italic|regular", "regular|italic|700|700italic");
    row("100|300italic|700italic|regular|900", "regular|700italic");
    row("100|500", "");
    row("Regular|ITALIC|700Italic| 700", "");
    row("regular|regular", "regular");
}

void tst_GoogleFontItem::commonVariants()
{
    QFETCH(QString, common);
    QCOMPARE(withVariants(QLatin1String(QTest::currentDataTag()))
                 .commonVariants()
                 .join(QLatin1Char('|')),
             common);
}

void tst_GoogleFontItem::weights_data()
{
    const auto row = columns<QString>("weights");
    row("regular", "400n");
    row("regular|700|700italic", "400n 700ni");
    row("700italic|700|regular", "400n 700ni");
    row("regular|italic", "400ni");
    row("italic", "400i");
    row("300", "300n");
    row("300italic", "300i");
    row("900|100|regular|500", "100n 400n 500n 900n");
    row("100|100italic|200|200italic|300|300italic|regular|italic|500|500italic|600|"
        "600italic|700|700italic|800|800italic|900|900italic",
        "100ni 200ni 300ni 400ni 500ni 600ni 700ni 800ni 900ni");
    row("700|700", "700n");
    // 400 is only recognised by words.
    row("400", "400");
    row("400italic", "400");
    row("400|regular", "400n");
    row("400|italic", "400i");
    // The weight is found in any case; a style needs the exact name.
    row("Regular", "400");
    row("700Italic", "700");
    row("REGULAR|regular", "400n");
    row("0700", "700");
    row("0700|700", "700n");
    row(" 700", "700");
    row("700 italic", "700");
    row("7italic00", "700");
    row("italic700", "700");
    row("700regular", "400 700");
    row("regular italic", "400");
    row("950", "950n");
    row("-100|-100italic", "-100ni");
    row("0", "0n");
    // No number, no weight.
    row("Italic", "");
    row("bold", "");
    row("700bold", "");
    row("", "");
    row("700.5", "");
    row("99999999999", "");
}

void tst_GoogleFontItem::weights()
{
    QFETCH(QString, weights);
    QCOMPARE(told(withVariants(QLatin1String(QTest::currentDataTag())).availableWeights()),
             weights);
}

void tst_GoogleFontItem::labelWeight_data()
{
    const auto row = columns<int, QString>("weight", "label");
    row("smallest", std::numeric_limits<int>::min(), "Lighter weight (-2147483648)");
    row("-1", -1, "Lighter weight (-1)");
    row("0", 0, "Lighter weight (0)");
    row("300", 300, "Lighter weight (300)");
    row("399", 399, "Lighter weight (399)");
    row("400", 400, "Normal weight");
    row("401", 401, "Bolder weight (401)");
    row("500", 500, "Bolder weight (500)");
    row("699", 699, "Bolder weight (699)");
    row("700", 700, "Bold weight");
    row("701", 701, "Bolder weight (701)");
    row("950", 950, "Bolder weight (950)");
}

void tst_GoogleFontItem::labelWeight()
{
    QFETCH(int, weight);
    QFETCH(QString, label);
    QCOMPARE(GoogleFontItem::labelWeight(weight, false), label);
    QCOMPARE(GoogleFontItem::labelWeight(weight, true), label + QStringLiteral(" (Italic)"));
}

void tst_GoogleFontItem::labelFromVariant_data()
{
    const auto row = columns<QString>("label");
    row("regular", "Normal weight");
    row("REGULAR", "Normal weight");
    row(" regular\t", "Normal weight");
    row("italic", "Normal weight (Italic)");
    row("Italic", "Normal weight (Italic)");
    row(" italic ", "Normal weight (Italic)");
    row("300", "Lighter weight (300)");
    row(" 300 ", "Lighter weight (300)");
    row("300italic", "Lighter weight (300) (Italic)");
    row("400", "Normal weight");
    row("400italic", "Normal weight (Italic)");
    row("500", "Bolder weight (500)");
    row("700", "Bold weight");
    row("700italic", "Bold weight (Italic)");
    row("italic700", "Bold weight (Italic)");
    row("700 italic", "Bold weight (Italic)");
    row("900italic", "Bolder weight (900) (Italic)");
    // Only a lower-case "italic" is removed: the rest is not a number.
    row("700Italic", "Lighter weight (0) (Italic)");
    row("bold", "Lighter weight (0)");
    row("bolditalic", "Lighter weight (0) (Italic)");
    row("regular italic", "Lighter weight (0) (Italic)");
    row("0x2bc", "Lighter weight (0)");
    row("700.0", "Lighter weight (0)");
    row("99999999999", "Lighter weight (0)");
    row("", "Lighter weight (0)");
}

void tst_GoogleFontItem::labelFromVariant()
{
    QFETCH(QString, label);
    QCOMPARE(GoogleFontItem::labelFromVariant(QLatin1String(QTest::currentDataTag())), label);
}

void tst_GoogleFontItem::labelsAreTranslated()
{
    Bracketing translator;
    QCoreApplication::installTranslator(&translator);
    QCOMPARE(GoogleFontItem::labelWeight(300, false),
             QStringLiteral("[GoogleFontItem: Lighter weight (300)]"));
    QCOMPARE(GoogleFontItem::labelWeight(400, false),
             QStringLiteral("[GoogleFontItem: Normal weight]"));
    QCOMPARE(GoogleFontItem::labelWeight(700, false),
             QStringLiteral("[GoogleFontItem: Bold weight]"));
    QCOMPARE(GoogleFontItem::labelWeight(800, false),
             QStringLiteral("[GoogleFontItem: Bolder weight (800)]"));
    // The style is not translated.
    QCOMPARE(GoogleFontItem::labelWeight(700, true),
             QStringLiteral("[GoogleFontItem: Bold weight] (Italic)"));
    QCoreApplication::removeTranslator(&translator);
}

void tst_GoogleFontItem::nothingIsLogged()
{
    LogCapture log;
    const GoogleFontItem item(
        json(QStringLiteral(R"({"family": 1, "variants": [false], "lastModified": "never"})")));
    item.availableWeights();
    item.lastModified();
    GoogleFontItem::labelFromVariant(QStringLiteral("nonsense"));
    QCOMPARE(log.lines(), QStringList());
}

QTEST_GUILESS_MAIN(tst_GoogleFontItem)
#include "tst_GoogleFontItem.moc"
