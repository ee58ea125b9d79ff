// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The examples that consist of one file: run as processes, as users run them, and their windows
// driven from this process.

#include "ChildProgram.h"
#include "Columns.h"
#include "Sandbox.h"
#include "TestPictures.h"
#include "Text.h"

// The windows.
#define main importPhotosMain
#include "import-photos.cpp"
#undef main
#define main priceEditorMain
#include "price-editor.cpp"
#undef main

#include <QtTest>

namespace {

QString program(const char* name)
{
    return text(EXAMPLE_PROGRAMS "/") + text(name);
}

/// The text next to the label \a name of the form \a window.
QString valueOf(const QWidget& window, const char* name)
{
    const auto* const form = qobject_cast<const QFormLayout*>(window.layout());
    for (int row = 0; row < form->rowCount(); ++row) {
        QLayoutItem* const label = form->itemAt(row, QFormLayout::LabelRole);
        QLayoutItem* const field = form->itemAt(row, QFormLayout::FieldRole);
        if (label && qobject_cast<QLabel*>(label->widget())->text() == text(name))
            return qobject_cast<QLabel*>(field->widget())->text();
    }
    return QString();
}

QByteArray jpeg()
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    picture(64, 48).save(&buffer, "jpeg");
    return bytes;
}

} // namespace

class tst_ExamplePrograms : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void shortPrograms_data();
    void shortPrograms();
    void priceEditor();
    void priceEditorTakesRates();
    void importPhotos();
    void importPhotosSaysWhy();
    void importPhotosIsCancelled();
    void usage_data();
    void usage();
    void mirrorFolder();

private:
    QTemporaryDir mFolder;
};

void tst_ExamplePrograms::initTestCase()
{
    QLocale::setDefault(QLocale(text("fr_FR")));
    QVERIFY(mFolder.isValid());
}

void tst_ExamplePrograms::shortPrograms_data()
{
    const auto row = columns<QString>("file");
    for (const char* name : {"import-photos.cpp", "mirror-folder.cpp", "price-editor.cpp"})
        row(name, text(EXAMPLES_DIR "/") + text(name));
}

/// What can be read without waiting.
void tst_ExamplePrograms::shortPrograms()
{
    QFETCH(QString, file);
    const QByteArray source = contentOf(file);
    QVERIFY(source.startsWith("// SPDX"));
    QVERIFY2(source.count('\n') < 120, QByteArray::number(source.count('\n')));
}

// price-editor

void tst_ExamplePrograms::priceEditor()
{
    PriceEditor editor;
    editor.show();
    const auto split = [&] {
        const QString all = valueOf(editor, "Net") + QLatin1Char('|') + valueOf(editor, "Tax")
            + QLatin1Char('|') + valueOf(editor, "Gross");
        return QString(all)
            .replace(QChar(0x202f), QLatin1Char(' '))
            .replace(QChar(0xa0), QLatin1Char(' '));
    };
    const QList<QComboBox*> boxes = editor.findChildren<QComboBox*>();
    auto* const price = editor.findChild<QLineEdit*>();
    QCOMPARE(boxes.size(), 4);
    QComboBox* const kind = boxes.at(0);
    QComboBox* const currency = boxes.at(1);
    QComboBox* const country = boxes.at(2);
    QComboBox* const rate = boxes.at(3);

    // 29.40 euros with 20 % of French tax.
    QCOMPARE(price->text(), text("29,40"));
    QCOMPARE(rate->count(), 4);
    QCOMPARE(rate->itemText(1), text("5,5 % – Alternative reduced rate"));
    QCOMPARE(split(), text("24,50 €|4,90 €|29,40 €"));
    rate->setCurrentIndex(1);
    QCOMPARE(split(), text("27,87 €|1,53 €|29,40 €"));
    kind->setCurrentIndex(1);
    QCOMPARE(split(), text("29,40 €|1,62 €|31,02 €"));
    country->setCurrentText(text("DK"));
    QCOMPARE(rate->count(), 1);
    QCOMPARE(split(), text("29,40 €|7,35 €|36,75 €"));
    currency->setCurrentText(text("JPY"));
    price->clear();
    QTest::keyClicks(price, text("1250"));
    QCOMPARE(split(), text("1 250 ¥|313 ¥|1 563 ¥"));
    QTest::keyClicks(price, text("x"));
    QCOMPARE(split(), text("–|–|–"));
}

void tst_ExamplePrograms::priceEditorTakesRates()
{
    SKIP_ON_WINDOWS("no signal stops a program there");
    const QString rates = mFolder.filePath(text("rates.json"));
    writeFile(rates, "{}");
    const ChildResult refused = runChildProgram(program("price-editor"), {rates});
    QCOMPARE(refused.exitCode, 1);
    QVERIFY(refused.errors.contains(rates + text(": The file has no valid date")));

    // With a window of its own it runs until that is closed.
    QProcess process;
    process.start(program("price-editor"), QStringList());
    QVERIFY(process.waitForStarted());
    QVERIFY(!process.waitForFinished(300));
    process.terminate();
    QVERIFY(process.waitForFinished());
}

// import-photos

void tst_ExamplePrograms::importPhotos()
{
    const QString first = mFolder.filePath(text("a/boat.jpg"));
    const QString second = mFolder.filePath(text("b/boat.jpg"));
    writeFile(first, jpeg());
    writeFile(second, jpeg());
    const QString site = mFolder.filePath(text("site"));
    const ChildResult result = runChildProgram(program("import-photos"), {site, first, second});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(QDir(site).entryList(QDir::Files),
             QStringList({text("boat (1).jpg"), text("boat.jpg")}));
}

void tst_ExamplePrograms::importPhotosSaysWhy()
{
    const QString good = mFolder.filePath(text("a/good.jpg"));
    const QString bad = mFolder.filePath(text("a/bad.jpg"));
    writeFile(good, jpeg());
    writeFile(bad, "no picture");
    ImportDialog dialog(mFolder.filePath(text("site2")), {bad, good});
    dialog.show();
    auto* const reasons = dialog.findChild<QListWidget*>();
    auto* const button = dialog.findChild<QPushButton*>();
    QTRY_COMPARE(button->text(), text("Close"));
    QCOMPARE(dialog.findChild<QProgressBar*>()->value(), 2);
    QVERIFY(dialog.isVisible() && reasons->isVisible());
    QCOMPARE(reasons->count(), 1);
    QVERIFY(reasons->item(0)->text().contains(text("bad.jpg")));
    QVERIFY2(reasons->item(0)->toolTip().startsWith(bad + text("\nImageImportResult(NotAnImage")),
             qPrintable(reasons->item(0)->toolTip()));
    QVERIFY(QFile::exists(mFolder.filePath(text("site2/good.jpg"))));
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
}

void tst_ExamplePrograms::importPhotosIsCancelled()
{
    const QString photo = mFolder.filePath(text("a/many.jpg"));
    writeFile(photo, jpeg());
    QStringList photos;
    for (int i = 0; i < 500; ++i)
        photos += photo;
    ImportDialog dialog(mFolder.filePath(text("site3")), photos);
    dialog.show();
    QTest::mouseClick(dialog.findChild<QPushButton*>(), Qt::LeftButton);
    QTRY_VERIFY(!dialog.isVisible());
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QVERIFY(QDir(mFolder.filePath(text("site3"))).entryList(QDir::Files).size() < 500);
}

void tst_ExamplePrograms::usage_data()
{
    const auto row = columns<QStringList>("arguments");
    row("import-photos", QStringList(text("site")));
    row("mirror-folder", QStringList(text("project")));
}

void tst_ExamplePrograms::usage()
{
    QFETCH(QStringList, arguments);
    const char* const name = QTest::currentDataTag();
    const ChildResult result = runChildProgram(program(name), arguments);
    QCOMPARE(result.exitCode, 2);
    const QStringList lines = result.output + result.errors;
    QVERIFY(lines.filter(text("Usage: ") + text(name)).size() == 1);
}

// mirror-folder

void tst_ExamplePrograms::mirrorFolder()
{
    SKIP_ON_WINDOWS("no signal stops a program there");
    const QString project = mFolder.filePath(text("project"));
    const QString mirror = mFolder.filePath(text("mirror"));
    writeFile(project + text("/a/one.txt"), "1");
    const QStringList arguments{project, mirror};

    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program("mirror-folder"), arguments);
    QByteArray output;
    const auto said = [&](const QString& line) {
        output += process.readAll();
        return output.contains(line.toUtf8() + '\n');
    };
    QTRY_VERIFY2_WITH_TIMEOUT(said(text("Watching ") + project), output, 30000);
    QCOMPARE(contentOf(mirror + text("/a/one.txt")), QByteArray("1"));
    QVERIFY(!QFile::exists(mirror + text("/lockfile")));

    // Only one at a time.
    const ChildResult second = runChildProgram(program("mirror-folder"), arguments);
    QCOMPARE(second.exitCode, 1);
    QVERIFY(second.output.filter(text("process %1").arg(process.processId())).size() == 1);

    writeFile(project + text("/a/two.txt"), "2");
    QTRY_VERIFY2_WITH_TIMEOUT(said(text("copied ") + mirror + text("/a/two.txt")), output, 30000);
    QTRY_COMPARE(contentOf(mirror + text("/a/two.txt")), QByteArray("2"));
    QVERIFY(QFile::remove(project + text("/a/one.txt")));
    QTRY_VERIFY2_WITH_TIMEOUT(said(text("removed ") + mirror + text("/a/one.txt")), output, 30000);

    // The lock of a process that was killed does not block it.
    process.kill();
    QVERIFY(process.waitForFinished());
    QVERIFY(QFile::exists(project + text("/lockfile")));
    QProcess next;
    next.start(program("mirror-folder"), arguments);
    QTRY_VERIFY2_WITH_TIMEOUT((output += next.readAll()).count("Watching") == 2, output, 30000);
    next.kill();
    QVERIFY(next.waitForFinished());

    const ChildResult none =
        runChildProgram(program("mirror-folder"), {mFolder.filePath(text("none")), mirror});
    QCOMPARE(none.exitCode, 1);
    QVERIFY(QFile::exists(mirror + text("/a/two.txt")));
}

QTEST_MAIN(tst_ExamplePrograms)
#include "tst_ExamplePrograms.moc"
