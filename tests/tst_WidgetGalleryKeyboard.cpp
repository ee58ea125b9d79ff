// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The window of the example program widget-gallery, used with the keyboard only. All keys are sent
// to the window, like those of a keyboard, and reach the widget with the focus.

#include "Columns.h"
#include "GalleryWindow.h"
#include "Sample.h"
#include "SystemCalls.h"

#include <CoreApplicationUtils.h>

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <QTableWidget>
#include <QtTest>

#include <memory>

class tst_WidgetGalleryKeyboard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void arrowsTurnThePages();
    void lettersFindAPage();
    void shortcutsTurnThePages();
    void altPLeadsBackToTheList();
    void menuOpensByItsMnemonic();
    void tabReachesEveryControl_data();
    void tabReachesEveryControl();
    void mnemonicsLeadToTheirControls_data();
    void mnemonicsLeadToTheirControls();
    void focusScrollsThePage();
    void nothingScrollsInTheLargestWindow_data();
    void nothingScrollsInTheLargestWindow();
    void everySampleShowsItsCode_data();
    void everySampleShowsItsCode();

    void detectsTheSecretWord();
    void deletesPhotographs();
    void replacesTheDecimalKey();
    void countsOnTheBell();
    void changesAMessage();
    void changesACorner();
    void changesTheOpacity();
    void changesAFolder();
    void fadesANotice();
    void hidesThePicture();
    void findsAFont();
    void choosesACurrency();
    void measures();
    void measuresAFolder();
    void measuresFoldersAtOnce();
    void stopsMeasuringWithItsWindow();
    void replacesASite();
    void showsErrorLines();

private:
    void addPages();
    void openPage(const char* id);
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void type(const char* text);
    QWidget* page() const;
    QWidget* focus() const { return mWindow->focusWidget(); }
    QImage picture(const char* canvas) const;

    template <typename T>
    T* find(const char* name) const
    {
        T* widget = mWindow->findChild<T*>(QString::fromLatin1(name));
        if (!widget)
            qFatal("no widget %s", name);
        return widget;
    }

    std::unique_ptr<GalleryWindow> mWindow;
    QByteArray mFunction; ///< the test function that the window was made for
};

void tst_WidgetGalleryKeyboard::initTestCase()
{
    CoreApplicationUtils::setApplicationName(QStringLiteral("Widget Gallery"));
    CoreApplicationUtils::setApplicationCode(CoreApplicationUtils::Dunvale);
}

void tst_WidgetGalleryKeyboard::init()
{
    // The rows of a test share a window, because creating it takes most of the time.
    const QByteArray function = QTest::currentTestFunction();
    if (mWindow && mFunction == function) {
        key(Qt::Key_P, Qt::AltModifier);
        return;
    }
    mFunction = function;
    mWindow = std::make_unique<GalleryWindow>();
    mWindow->show();
    mWindow->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(mWindow.get()));
    QCOMPARE(focus(), static_cast<QWidget*>(find<QListWidget>("pages")));
}

void tst_WidgetGalleryKeyboard::cleanupTestCase()
{
    mWindow.reset();
}

void tst_WidgetGalleryKeyboard::addPages()
{
    const auto row = columns<QByteArray>("id");
    const GalleryWindow window;
    for (int i = 0; i < window.pageCount(); ++i)
        row(qPrintable(window.pageId(i)), window.pageId(i).toLatin1());
}

/// Moves through the list with the arrow key to the page.
void tst_WidgetGalleryKeyboard::openPage(const char* id)
{
    key(Qt::Key_Home);
    for (int i = 0; i < mWindow->pageCount(); ++i) {
        if (mWindow->pageId(mWindow->currentPage()) == QLatin1String(id))
            return;
        key(Qt::Key_Down);
    }
    qFatal("no page %s", id);
}

void tst_WidgetGalleryKeyboard::key(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(mWindow->windowHandle(), key, modifiers);
    QApplication::processEvents();
}

void tst_WidgetGalleryKeyboard::type(const char* text)
{
    for (; *text; ++text) {
        QTest::keyClick(mWindow->windowHandle(), *text);
        QApplication::processEvents();
    }
}

QWidget* tst_WidgetGalleryKeyboard::page() const
{
    for (QScrollArea* area : mWindow->findChildren<QScrollArea*>()) {
        if (area->isVisible())
            return area;
    }
    return nullptr;
}

QImage tst_WidgetGalleryKeyboard::picture(const char* canvas) const
{
    return find<QWidget>(canvas)->grab().toImage();
}

void tst_WidgetGalleryKeyboard::arrowsTurnThePages()
{
    QCOMPARE(mWindow->windowTitle(), QStringLiteral("Widget Gallery"));
    QCOMPARE(mWindow->pageCount(), 8);
    QCOMPARE(mWindow->currentPage(), 0);
    key(Qt::Key_Down);
    QCOMPARE(mWindow->currentPage(), 1);
    key(Qt::Key_Up);
    QCOMPARE(mWindow->currentPage(), 0);
    key(Qt::Key_Up);
    QCOMPARE(mWindow->currentPage(), 0);
    key(Qt::Key_End);
    QCOMPARE(mWindow->currentPage(), 7);
    key(Qt::Key_Home);
    QCOMPARE(mWindow->currentPage(), 0);
}

void tst_WidgetGalleryKeyboard::lettersFindAPage()
{
    type("we");
    QCOMPARE(mWindow->pageId(mWindow->currentPage()), QStringLiteral("fonts"));
}

void tst_WidgetGalleryKeyboard::shortcutsTurnThePages()
{
    // From inside a page as well, where the list does not have the focus.
    openPage("keys");
    key(Qt::Key_S, Qt::AltModifier);
    const int start = mWindow->currentPage();
    key(Qt::Key_PageDown, Qt::ControlModifier);
    QCOMPARE(mWindow->currentPage(), start + 1);
    for (int i = 1; i < mWindow->pageCount(); ++i)
        key(Qt::Key_PageDown, Qt::ControlModifier);
    QCOMPARE(mWindow->currentPage(), start);
    for (int i = 0; i < start + 1; ++i)
        key(Qt::Key_PageUp, Qt::ControlModifier);
    QCOMPARE(mWindow->currentPage(), mWindow->pageCount() - 1);
    QCOMPARE(find<QListWidget>("pages")->currentRow(), mWindow->pageCount() - 1);
}

void tst_WidgetGalleryKeyboard::altPLeadsBackToTheList()
{
    openPage("colours");
    key(Qt::Key_U, Qt::AltModifier);
    QCOMPARE(focus(), static_cast<QWidget*>(find<QSpinBox>("unread")));
    key(Qt::Key_P, Qt::AltModifier);
    QCOMPARE(focus(), static_cast<QWidget*>(find<QListWidget>("pages")));
}

void tst_WidgetGalleryKeyboard::menuOpensByItsMnemonic()
{
    QVERIFY(!QApplication::activePopupWidget());
    key(Qt::Key_G, Qt::AltModifier);
    QTRY_VERIFY(QApplication::activePopupWidget());
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_N);
    QTRY_COMPARE(mWindow->currentPage(), 1);
    QVERIFY(!QApplication::activePopupWidget());
}

void tst_WidgetGalleryKeyboard::tabReachesEveryControl_data()
{
    addPages();
}

void tst_WidgetGalleryKeyboard::tabReachesEveryControl()
{
    QFETCH(QByteArray, id);
    openPage(id.constData());
    QSet<QWidget*> expected;
    for (QWidget* widget : page()->findChildren<QWidget*>()) {
        if (widget->isVisible() && widget->isEnabled() && !widget->focusProxy()
            && (widget->focusPolicy() & Qt::TabFocus))
            expected.insert(widget);
    }

    QVector<QWidget*> reached;
    QWidget* const list = focus();
    key(Qt::Key_Tab);
    QCOMPARE(focus(), page());
    key(Qt::Key_Tab);
    while (focus() != list && reached.size() <= expected.size()) {
        reached.append(focus());
        key(Qt::Key_Tab);
    }
    QCOMPARE(focus(), list);
    QCOMPARE(reached.size(), expected.size());
    for (QWidget* widget : reached)
        QVERIFY2(expected.remove(widget), qPrintable(widget->objectName()));

    // In visual order: from top to bottom, and from left to right in a line.
    for (int i = 1; i < reached.size(); ++i) {
        const QPoint before = reached[i - 1]->mapTo(mWindow.get(), QPoint());
        const QPoint after = reached[i]->mapTo(mWindow.get(), QPoint());
        const bool below = after.y() >= before.y() + reached[i - 1]->height();
        QVERIFY2(below || after.x() > before.x(), qPrintable(reached[i]->objectName()));
    }

    key(Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(focus(), reached.isEmpty() ? page() : reached.last());
}

void tst_WidgetGalleryKeyboard::mnemonicsLeadToTheirControls_data()
{
    addPages();
}

void tst_WidgetGalleryKeyboard::mnemonicsLeadToTheirControls()
{
    QFETCH(QByteArray, id);
    openPage(id.constData());
    QStringList mnemonics = {QStringLiteral("Alt+G"), QStringLiteral("Alt+P")};
    for (QAbstractButton* button : page()->findChildren<QAbstractButton*>()) {
        if (!button->text().isEmpty())
            mnemonics.append(button->shortcut().toString());
    }
    for (QLabel* label : page()->findChildren<QLabel*>()) {
        if (!label->buddy())
            continue;
        const QKeySequence mnemonic = QKeySequence::mnemonic(label->text());
        QVERIFY2(!mnemonic.isEmpty(), qPrintable(label->text()));
        mnemonics.append(mnemonic.toString());
        key(Qt::Key(mnemonic[0] & ~int(Qt::AltModifier)), Qt::AltModifier);
        QCOMPARE(focus(), label->buddy());
    }
    QVERIFY(!mnemonics.contains(QString()));
    QVERIFY2(mnemonics.removeDuplicates() == 0, qPrintable(mnemonics.join(QLatin1Char(' '))));
}

void tst_WidgetGalleryKeyboard::focusScrollsThePage()
{
    mWindow->resize(700, 320);
    openPage("shapes");
    auto* area = static_cast<QScrollArea*>(page());
    auto* last = find<QSpinBox>("bottomLeft");
    const auto isSeen = [&] {
        const int top = last->mapTo(area->viewport(), QPoint()).y();
        return top >= 0 && top + last->height() <= area->viewport()->height();
    };
    QVERIFY(!isSeen());
    key(Qt::Key_P, Qt::AltModifier);
    while (focus() != last)
        key(Qt::Key_Tab);
    QVERIFY(isSeen());
}

void tst_WidgetGalleryKeyboard::nothingScrollsInTheLargestWindow_data()
{
    addPages();
}

void tst_WidgetGalleryKeyboard::nothingScrollsInTheLargestWindow()
{
    QFETCH(QByteArray, id);
    openPage(id.constData());
    mWindow->resize(mWindow->sizeForAllPages());
    QApplication::processEvents();
    auto* area = static_cast<QScrollArea*>(page());
    QCOMPARE(area->verticalScrollBar()->maximum(), 0);
    QCOMPARE(area->horizontalScrollBar()->maximum(), 0);
    for (QTableWidget* table : area->findChildren<QTableWidget*>()) {
        QCOMPARE(table->verticalScrollBar()->maximum(), 0);
        QCOMPARE(table->horizontalScrollBar()->maximum(), 0);
    }
}

void tst_WidgetGalleryKeyboard::everySampleShowsItsCode_data()
{
    addPages();
}

void tst_WidgetGalleryKeyboard::everySampleShowsItsCode()
{
    QFETCH(QByteArray, id);
    openPage(id.constData());
    int panels = 0;
    for (QLabel* label : page()->findChildren<QLabel*>()) {
        const auto* panel = dynamic_cast<CodePanel*>(label);
        if (!panel)
            continue;
        ++panels;
        const QString code = panel->code();
        QVERIFY2(code.contains(QLatin1Char('(')) || code.contains(QLatin1Char('=')),
                 qPrintable(code));
        QVERIFY2(!code.contains(QStringLiteral("//!")), qPrintable(code));
        QVERIFY2(!code.startsWith(QLatin1Char(' ')), qPrintable(code));
        // Nothing is cut off.
        QVERIFY(panel->width() >= panel->sizeHint().width());
        QVERIFY(panel->height() >= panel->sizeHint().height());
    }
    QVERIFY(panels >= 3);
}

void tst_WidgetGalleryKeyboard::detectsTheSecretWord()
{
    openPage("keys");
    auto* answer = find<QLabel>("detected");
    key(Qt::Key_T, Qt::AltModifier);
    type("diagnostic");
    QCOMPARE(answer->text(), QStringLiteral("Not typed yet."));
    type("s");
    QCOMPARE(answer->text(), QStringLiteral("Typed 1 time(s)."));
    type("DIAGNOSTICS");
    QCOMPARE(answer->text(), QStringLiteral("Typed 2 time(s)."));
    // The field received all keys nevertheless.
    QCOMPARE(find<QLineEdit>("typed")->text(), QStringLiteral("diagnosticsDIAGNOSTICS"));

    key(Qt::Key_S, Qt::AltModifier); // which selects the word
    type("ab");
    key(Qt::Key_T, Qt::AltModifier);
    type("aab");
    QCOMPARE(answer->text(), QStringLiteral("Typed 2 time(s)."));
    type("ab");
    QCOMPARE(answer->text(), QStringLiteral("Typed 3 time(s)."));
}

void tst_WidgetGalleryKeyboard::deletesPhotographs()
{
    openPage("keys");
    auto* list = find<QListWidget>("photographs");
    key(Qt::Key_D, Qt::AltModifier);
    key(Qt::Key_Down);
    key(Qt::Key_Delete);
    QCOMPARE(list->count(), 3);
    QVERIFY(list->findItems(QStringLiteral("boat.jpg"), Qt::MatchExactly).isEmpty());
    key(Qt::Key_Backspace);
    QCOMPARE(list->count(), 2);
    for (int i = 0; i < 3; ++i)
        key(Qt::Key_Delete);
    QCOMPARE(list->count(), 0);
}

void tst_WidgetGalleryKeyboard::replacesTheDecimalKey()
{
    openPage("keys");
    auto* answer = find<QLabel>("formattedPrice");
    QCOMPARE(answer->text(), QStringLiteral("12.50 €"));
    key(Qt::Key_R, Qt::AltModifier);
    for (const char* text : {"0,7", "0.7"}) {
        key(Qt::Key_A, Qt::ControlModifier);
        type(text);
        QCOMPARE(find<QLineEdit>("price")->text(), QStringLiteral("0.7"));
        QCOMPARE(answer->text(), QStringLiteral("0.70 €"));
    }
}

void tst_WidgetGalleryKeyboard::countsOnTheBell()
{
    openPage("colours");
    const QImage seven = picture("bell");
    key(Qt::Key_U, Qt::AltModifier);
    key(Qt::Key_Up);
    QCOMPARE(find<QSpinBox>("unread")->value(), 8);
    const QImage eight = picture("bell");
    QVERIFY(eight != seven);
    key(Qt::Key_A, Qt::ControlModifier);
    type("0");
    QVERIFY(picture("bell") != eight);
    key(Qt::Key_A, Qt::ControlModifier);
    type("7");
    QCOMPARE(picture("bell"), seven);
}

void tst_WidgetGalleryKeyboard::changesAMessage()
{
    openPage("shapes");
    const QImage before = picture("messageCanvas");
    key(Qt::Key_M, Qt::AltModifier);
    type("other");
    QVERIFY(picture("messageCanvas") != before);
}

void tst_WidgetGalleryKeyboard::changesACorner()
{
    openPage("shapes");
    const QImage before = picture("radiiCanvas");
    key(Qt::Key_I, Qt::AltModifier);
    key(Qt::Key_PageDown);
    QCOMPARE(find<QSpinBox>("bottomRight")->value(), 50);
    const QImage after = picture("radiiCanvas");
    // Only the bottom right corner has changed.
    const int x = before.width() / 2;
    const int y = before.height() / 2;
    QVERIFY(after.copy(x, y, x, y) != before.copy(x, y, x, y));
    QCOMPARE(after.copy(0, 0, x, 2 * y), before.copy(0, 0, x, 2 * y));
    QCOMPARE(after.copy(0, 0, 2 * x, y), before.copy(0, 0, 2 * x, y));
}

void tst_WidgetGalleryKeyboard::changesTheOpacity()
{
    openPage("pictures");
    const QImage before = picture("opacityCanvas");
    key(Qt::Key_O, Qt::AltModifier);
    key(Qt::Key_Home);
    QCOMPARE(find<QSlider>("opacity")->value(), 0);
    QVERIFY(picture("opacityCanvas") != before);
    key(Qt::Key_End);
    QCOMPARE(find<QSlider>("opacity")->value(), 100);
}

void tst_WidgetGalleryKeyboard::changesAFolder()
{
    openPage("windows");
    const QImage before = picture("folderCanvas");
    key(Qt::Key_W, Qt::AltModifier);
    key(Qt::Key_PageDown);
    QCOMPARE(find<QSlider>("width")->value(), 150);
    const QImage narrower = picture("folderCanvas");
    QVERIFY(narrower != before);
    key(Qt::Key_F, Qt::AltModifier);
    type("/a");
    QVERIFY(picture("folderCanvas") != narrower);
}

void tst_WidgetGalleryKeyboard::fadesANotice()
{
    openPage("windows");
    auto* state = find<QLabel>("noticeState");
    key(Qt::Key_D, Qt::AltModifier);
    key(Qt::Key_A, Qt::ControlModifier);
    type("50");
    key(Qt::Key_I, Qt::AltModifier); // a button is pressed for a moment before it acts
    QTRY_COMPARE(state->text(), QStringLiteral("The notice is shown."));
    auto* notice = find<QLabel>("notice");
    QVERIFY(notice->isVisible());
    QTRY_COMPARE(notice->windowOpacity(), 1.0);
    // In the centre of the window.
    const QPoint apart = notice->geometry().center() - mWindow->geometry().center();
    QVERIFY2(apart.manhattanLength() <= 60, "but for the frames of the windows");
    // The offscreen platform activates every window that appears.
    if (QGuiApplication::platformName() != QLatin1String("offscreen"))
        QVERIFY(mWindow->isActiveWindow());
    mWindow->activateWindow();
    key(Qt::Key_O, Qt::AltModifier);
    QTRY_COMPARE(state->text(), QStringLiteral("The notice is hidden."));
    QVERIFY(!notice->isVisible());
    QTRY_COMPARE(notice->windowOpacity(), 0.0);
    key(Qt::Key_I, Qt::AltModifier);
    QTRY_VERIFY(notice->isVisible());
    QTRY_COMPARE(notice->windowOpacity(), 1.0);
    // The window is closed while the notice is shown.
}

void tst_WidgetGalleryKeyboard::hidesThePicture()
{
    openPage("windows");
    auto* shown = find<QCheckBox>("shown");
    auto* hidden = find<QWidget>("picture");
    const QPoint place = shown->pos();
    key(Qt::Key_S, Qt::AltModifier);
    QTRY_VERIFY(!shown->isChecked());
    QVERIFY(!hidden->isVisible());
    QCOMPARE(shown->pos(), place);
    key(Qt::Key_Space);
    QVERIFY(hidden->isVisible());
}

void tst_WidgetGalleryKeyboard::findsAFont()
{
    openPage("fonts");
    auto* fonts = find<QListWidget>("fonts");
    auto* weights = find<QTableWidget>("weights");
    QCOMPARE(fonts->currentItem()->text(), QStringLiteral("Open Sans"));
    QCOMPARE(find<QLabel>("validName")->text(), QStringLiteral("Open Sans"));
    key(Qt::Key_F, Qt::AltModifier);
    type("pacifico");
    QCOMPARE(fonts->currentItem()->text(), QStringLiteral("Pacifico"));
    // A family with one style.
    QCOMPARE(weights->rowCount(), 1);
    QCOMPARE(weights->item(0, 0)->text(), QStringLiteral("Normal weight"));
    QCOMPARE(weights->item(0, 1)->text(), QStringLiteral("✓"));
    QCOMPARE(weights->item(0, 2)->text(), QString());
    type("!");
    QCOMPARE(fonts->currentRow(), -1);
    QCOMPARE(weights->rowCount(), 0);
    key(Qt::Key_W, Qt::AltModifier);
    type("no font has this name");
    QCOMPARE(find<QLabel>("validName")->text(), QStringLiteral("no such font"));
}

void tst_WidgetGalleryKeyboard::choosesACurrency()
{
    openPage("currencies");
    auto* tag = find<QLabel>("priceTag");
    // 1249.905 has no exact binary representation; an error of a cent would show here.
    QCOMPARE(tag->text(), QStringLiteral("1249.91 €"));
    key(Qt::Key_C, Qt::AltModifier);
    type("GBP");
    QCOMPARE(tag->text(), QStringLiteral("1249.91 £"));
    key(Qt::Key_A, Qt::AltModifier);
    key(Qt::Key_A, Qt::ControlModifier);
    type("0.125");
    QCOMPARE(tag->text(), QStringLiteral("0.13 £"));
}

void tst_WidgetGalleryKeyboard::measures()
{
    openPage("fonts");
    auto* report = find<QLabel>("report");
    QCOMPARE(report->text(), QStringLiteral("Not measured yet."));
    key(Qt::Key_M, Qt::AltModifier);
    QTRY_VERIFY2(report->text().startsWith(QStringLiteral("Font catalogue Speed total =")),
                 qPrintable(report->text()));
}

void tst_WidgetGalleryKeyboard::measuresAFolder()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("photo")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(1536));
    file.close();
    openPage("work");
    find<QLineEdit>("measured")->setText(folder.path());
    key(Qt::Key_M, Qt::AltModifier);
    QTRY_COMPARE(find<QLabel>("size")->text(), QStringLiteral("1.50 kB"));
    find<QLineEdit>("measured")->setText(folder.path() + QStringLiteral("/none"));
    QTRY_VERIFY((key(Qt::Key_M, Qt::AltModifier),
                 find<QLabel>("size")->text().endsWith(QStringLiteral("/none does not exist"))));
}

void tst_WidgetGalleryKeyboard::measuresFoldersAtOnce()
{
    QTemporaryDir folders;
    QStringList texts;
    QStringList paths;
    for (int i = 0; i < 3; ++i) {
        paths.append(folders.filePath(QString::number(i)));
        QVERIFY(QDir().mkdir(paths.last()));
        QFile file(paths.last() + QStringLiteral("/photo"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(100 * (i + 1)));
        texts.append(QStringLiteral("%1 B").arg(100 * (i + 1)));
    }
    openPage("work");
    find<QLineEdit>("measured")->setText(paths.join(QDir::listSeparator()));
    key(Qt::Key_M, Qt::AltModifier);
    QTRY_COMPARE(find<QLabel>("size")->text(), texts.join(QLatin1Char('\n')));
}

void tst_WidgetGalleryKeyboard::stopsMeasuringWithItsWindow()
{
    // The window waits for measurements that are still running, and is destroyed with its threads.
    openPage("work");
    find<QLineEdit>("measured")
        ->setText(QStringLiteral("/usr") + QDir::listSeparator() + QStringLiteral("/usr/lib"));
    key(Qt::Key_M, Qt::AltModifier);
    key(Qt::Key_S, Qt::AltModifier);
    QTRY_VERIFY(find<QLabel>("size")->text().contains(QLatin1Char('\n')));
    key(Qt::Key_M, Qt::AltModifier);
}

void tst_WidgetGalleryKeyboard::replacesASite()
{
    SKIP_ON_WINDOWS("a folder that is watched is not moved");
    openPage("work");
    key(Qt::Key_B, Qt::AltModifier);
    QTRY_COMPARE(find<QLabel>("site")->text(), QStringLiteral("1 file(s) in the site."));
    key(Qt::Key_E, Qt::AltModifier);
    QTRY_COMPARE(find<QLabel>("site")->text(), QStringLiteral("0 file(s) in the site."));
}

void tst_WidgetGalleryKeyboard::showsErrorLines()
{
    openPage("work");
    auto* const lines = find<QLabel>("errorLines");
    for (int i = 0; i < 2; ++i) {
        lines->clear();
        key(Qt::Key_W, Qt::AltModifier);
        QTRY_VERIFY(lines->text().contains(QStringLiteral("beach.jpg cannot be copied")));
        QVERIFY2(lines->text().contains(QStringLiteral("\n  ")), qPrintable(lines->text()));
    }
    QVERIFY2(lines->toolTip().startsWith(QStringLiteral("ErrorableCode(")),
             qPrintable(lines->toolTip()));
}

QTEST_MAIN(tst_WidgetGalleryKeyboard)

#include "tst_WidgetGalleryKeyboard.moc"
