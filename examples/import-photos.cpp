// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// import-photos: imports photographs for a web site, with a progress bar, a Cancel button, and the
// reason for each photograph that could not be imported.
//
//     import-photos DESTINATION PHOTO...

#include <ImageImporter.h>
#include <StringUtils.h>

#include <QApplication>
#include <QDebug>
#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

class ImportDialog : public QDialog
{
public:
    ImportDialog(const QString& destination, const QStringList& photos)
        : mPhotos(photos)
    {
        setWindowTitle(QStringLiteral("Import photographs"));
        auto* const layout = new QVBoxLayout(this);
        layout->addWidget(mBar);
        layout->addWidget(mReasons);
        layout->addWidget(mButton);
        mReasons->setWordWrap(true);
        mReasons->hide();
        setMinimumWidth(480);

        connect(mImporter, &ImageImporter::progress, this, [this](int done, int total) {
            mBar->setMaximum(total);
            mBar->setValue(done);
        });
        connect(mImporter, &ImageImporter::imported, this,
                [this](int index, const ImageImportResult& result) { report(index, result); });
        connect(mImporter, &ImageImporter::finished, this,
                [this](bool complete) { finish(complete); });
        connect(mButton, &QPushButton::clicked, this, [this] { reject(); });

        addPhotos(QDir(destination));
        mImporter->start();
    }

    /// Cancels the import. The dialog closes when no import is running any more.
    void reject() override
    {
        if (mImporter->isRunning())
            mImporter->cancel();
        else
            QDialog::reject();
    }

private:
    /// Adds all photographs, no two of them under the same name.
    void addPhotos(const QDir& destination)
    {
        ImageImport how;
        how.maxSize = QSize(1600, 1600);
        how.metadata = ImageImport::AllButLocation;
        QStringList names;
        for (const QString& photo : mPhotos) {
            const QFileInfo file(photo);
            names += StringUtils::findNoExistantName(names, file.completeBaseName(),
                                                     QStringLiteral(" (%1)"), file.suffix());
            mImporter->add(photo, destination.filePath(names.last()), how);
        }
    }

    void report(int index, const ImageImportResult& result)
    {
        if (result || result.status == ImageImportResult::Cancelled)
            return;
        // The reason names the file without its folder.
        mReasons->addItem(result.error);
        // Support needs the full details.
        QString details = mPhotos.at(index) + QLatin1Char('\n');
        QDebug(&details) << result;
        mReasons->item(mReasons->count() - 1)->setToolTip(details);
        mReasons->show();
    }

    /// Closes the dialog, unless there are reasons to read.
    void finish(bool complete)
    {
        mButton->setText(QStringLiteral("Close"));
        if (mReasons->count() == 0)
            done(complete ? Accepted : Rejected);
    }

    const QStringList mPhotos;
    QProgressBar* const mBar = new QProgressBar(this);
    QListWidget* const mReasons = new QListWidget(this);
    QPushButton* const mButton = new QPushButton(QStringLiteral("Cancel"), this);
    ImageImporter* const mImporter = new ImageImporter(this);
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QStringList arguments = QApplication::arguments().mid(1);
    if (arguments.size() < 2) {
        qWarning("Usage: import-photos DESTINATION PHOTO...");
        return 2;
    }
    const QString destination = arguments.takeFirst();
    ImportDialog dialog(destination, arguments);
    return dialog.exec() == QDialog::Accepted ? 0 : 1;
}
