// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The page of what a support request needs: the machine, the application, its
// folders, its speed.

#include "Layouts.h"
#include "Page.h"
#include "Pages.h"

#include <ApplicationUtils.h>
#include <ComputerIdentifier.h>
#include <CoreApplicationUtils.h>
#include <FileUtils.h>
#include <GoogleFontFile.h>
#include <GoogleFontLoader.h>
#include <SpeedTestAnalyzer.h>

#include <QFormLayout>
#include <QLabel>
#include <QPushButton>

namespace {

/// Rows of a name and a value; an empty value shows as a dash.
class Facts : public QWidget
{
public:
    Facts()
        : mLayout(new QFormLayout(this))
    {
        mLayout->setContentsMargins(0, 0, 0, 0);
        mLayout->setVerticalSpacing(4);
    }

    void add(const QString& name, const QString& value)
    {
        QLabel* label =
            Layouts::plainText(value.isEmpty() ? QStringLiteral("–") : value);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        auto* heading = new QLabel(name);
        heading->setMinimumWidth(110);
        mLayout->addRow(heading, label);
    }

private:
    QFormLayout* mLayout;
};

QWidget* machine()
{
    auto* facts = new Facts;
    //! [machine]
    facts->add(Page::tr("Product"), ComputerIdentifier::productId());
    facts->add(Page::tr("Address"), ComputerIdentifier::primaryMACAddress());
    facts->add(Page::tr("Machine"), ComputerIdentifier::uniqueIdentifier());
    facts->add(Page::tr("Hash"), ComputerIdentifier::hashedUniqueIdentifier());
    //! [machine]
    return facts;
}

QWidget* application()
{
    auto* facts = new Facts;
    //! [application]
    facts->add(Page::tr("Name"), CoreApplicationUtils::applicationGuiName());
    facts->add(Page::tr("Version"), CoreApplicationUtils::applicationVersion());
    facts->add(Page::tr("Key"), CoreApplicationUtils::applicationKey());
    facts->add(Page::tr("Modes"),
               ApplicationUtils::labelDeveloperMode_QualifMode());
    //! [application]
    return facts;
}

QWidget* folders()
{
    auto* facts = new Facts;
    const auto add = [facts](const QString& name, QString path) {
        facts->add(name,
                   FileUtils::elidedFolder(facts->fontMetrics(), path, 280));
    };
    //! [folders]
    add(Page::tr("Documents"), ApplicationUtils::pathDocuments());
    add(Page::tr("Pictures"), ApplicationUtils::pathImages());
    add(Page::tr("Temporary"), ApplicationUtils::tempPath());
    add(Page::tr("Settings"), ApplicationUtils::pathApplicationSettings());
    //! [folders]
    return facts;
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
    auto* report = Layouts::plainText(measured());
    report->setObjectName(QStringLiteral("report"));
    auto* button = new QPushButton(Page::tr("&Measure again"));
    button->setObjectName(QStringLiteral("measure"));
    QObject::connect(button, &QPushButton::clicked, report,
                     [report] { report->setText(measured()); });
    return Layouts::column({report, Layouts::row({button})});
}

} // namespace

Page* makeMachinePage(const QString& title)
{
    auto* page = new Page(title,
                          Page::tr("What a support request should say: which "
                                   "machine, which program, how fast."),
                          QStringLiteral("MachinePage.cpp"));
    page->addSample(Page::tr("The machine's identity"), machine(), "machine");
    page->addSample(Page::tr("The application's identity"), application(),
                    "application");
    page->addSample(Page::tr("Its folders"), folders(), "folders");
    page->addSample(Page::tr("A stopwatch with laps"), stopwatch(), "speed");
    return page;
}
