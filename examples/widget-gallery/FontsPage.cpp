// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The page on the web fonts that a user can choose from, and on how long it
// takes to read them.

#include "Layouts.h"
#include "Page.h"
#include "Pages.h"

#include <DrawUtils.h>
#include <GoogleFontFile.h>
#include <GoogleFontLoader.h>
#include <SpeedTestAnalyzer.h>

#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTableWidget>

namespace {

QTableWidgetItem* cell(const QString& text, Qt::Alignment alignment)
{
    auto* item = new QTableWidgetItem(text);
    item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    item->setTextAlignment(int(alignment));
    return item;
}

QTableWidget* makeWeightTable()
{
    auto* table = new QTableWidget(0, 3);
    table->setObjectName(QStringLiteral("weights"));
    table->setHorizontalHeaderLabels(
        {Page::tr("Weight"), Page::tr("Upright"), Page::tr("Italic")});
    table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    table->setColumnWidth(1, 80);
    table->setColumnWidth(2, 80);
    table->verticalHeader()->setSectionResizeMode(
        QHeaderView::ResizeToContents);
    table->verticalHeader()->hide();
    // Tab leaves the table, the arrow keys move in it.
    table->setTabKeyNavigation(false);
    table->setFixedSize(400, 190);
    return table;
}

void showWeights(GoogleFontLoader* loader, const QString& family,
                 QTableWidget* table)
{
    table->setRowCount(0);
    const auto addRow = [table](const QString& label,
                                const GoogleFontWeightDetail& detail) {
        const int row = table->rowCount();
        const QString yes = QStringLiteral("✓");
        table->insertRow(row);
        table->setItem(row, 0, cell(label, Qt::AlignLeft | Qt::AlignVCenter));
        table->setItem(
            row, 1, cell(detail.hasNormal ? yes : QString(), Qt::AlignCenter));
        table->setItem(
            row, 2, cell(detail.hasItalic ? yes : QString(), Qt::AlignCenter));
    };
    //! [weights]
    GoogleFontItem item;
    if (!loader->findItemByName(family, item))
        return;
    const auto weights = item.availableWeights();
    for (auto it = weights.begin(); it != weights.end(); ++it)
        addRow(GoogleFontItem::labelWeight(it.key(), false), it.value());
    //! [weights]
}

QListWidget* makeFontList(GoogleFontLoader* loader)
{
    auto* list = new QListWidget;
    list->setObjectName(QStringLiteral("fonts"));
    list->setFixedSize(400, 130);
    list->setUniformItemSizes(true);
    //! [names]
    list->addItems(loader->fontNames());
    //! [names]
    return list;
}

/// Shows in \a list only the names that contain \a text, one of them selected.
void filterList(QListWidget* list, const QString& text)
{
    int first = -1;
    for (int row = 0; row < list->count(); ++row) {
        QListWidgetItem* item = list->item(row);
        item->setHidden(!item->text().contains(text, Qt::CaseInsensitive));
        if (!item->isHidden() && first < 0)
            first = row;
    }
    if (!list->currentItem() || list->currentItem()->isHidden())
        list->setCurrentRow(first);
}

QWidget* makeSpelling(GoogleFontLoader* loader)
{
    auto* edit = new QLineEdit(QStringLiteral(" opensans"));
    edit->setObjectName(QStringLiteral("spelling"));
    auto* answer = Layouts::plainText();
    answer->setObjectName(QStringLiteral("validName"));
    const auto show = [loader, answer](const QString& text) {
        //! [spelling]
        const QString name = loader->validName(text);
        answer->setText(name.isEmpty() ? Page::tr("no such font") : name);
        //! [spelling]
    };
    QObject::connect(edit, &QLineEdit::textChanged, answer, show);
    show(edit->text());
    return Layouts::row(
        {Layouts::form({{Page::tr("&Written as"), edit}}), answer});
}

QString measured()
{
    //! [speed]
    SpeedTestAnalyzer speed(Page::tr("Font catalogue"));
    GoogleFontFile fonts;
    fonts.loadJsonGFontFromFilePath(
        GoogleFontLoader::builinGoogleJsonFilePath());
    speed << Page::tr("read and parse");
    fonts.indexOf(QStringLiteral("Roboto"));
    speed << Page::tr("find a family");
    const QString report = speed.toString();
    //! [speed]
    return report.trimmed();
}

QWidget* stopwatch()
{
    auto* report = Layouts::plainText(Page::tr("Not measured yet."));
    report->setObjectName(QStringLiteral("report"));
    auto* button = new QPushButton(Page::tr("&Measure"));
    button->setObjectName(QStringLiteral("measure"));
    QObject::connect(button, &QPushButton::clicked, report,
                     [report] { report->setText(measured()); });
    return Layouts::column({report, Layouts::row({button})});
}

} // namespace

QVector<Exhibit> fontsExhibits()
{
    QTableWidget* const table = makeWeightTable();
    auto* loader = new GoogleFontLoader(table); // deleted with the page
    auto* filter = new QLineEdit;
    filter->setObjectName(QStringLiteral("filter"));
    filter->setMinimumWidth(240);
    QListWidget* const list = makeFontList(loader);
    QObject::connect(filter, &QLineEdit::textChanged, list,
                     [list](const QString& text) { filterList(list, text); });
    QObject::connect(list, &QListWidget::currentTextChanged, table,
                     [loader, table](const QString& family) {
                         showWeights(loader, family, table);
                     });
    const QList<QListWidgetItem*> openSans =
        list->findItems(QStringLiteral("Open Sans"), Qt::MatchExactly);
    if (openSans.isEmpty())
        list->setCurrentRow(0);
    else
        list->setCurrentItem(openSans.first());

    return {
        {Page::tr("Families"),
         Layouts::column({Layouts::form({{Page::tr("&Find"), filter}}), list}),
         "names"},
        {Page::tr("Weights of the chosen family"), table, "weights"},
        {Page::tr("The catalogue's spelling"), makeSpelling(loader),
         "spelling"},
        {Page::tr("A stopwatch with laps"), stopwatch(), "speed"},
    };
}
