// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ImageImporter: imports many pictures on several threads, within a limit for memory.

#ifndef ORVAUTILS_IMAGEIMPORTER_H
#define ORVAUTILS_IMAGEIMPORTER_H

#include "ImageImport.h"
#include "ImageImportResult.h"
#include "orvautils_export.h"

#include <QObject>

#include <memory>

namespace OrvaUtilsPrivate {
class ImageImporterPrivate;
} // namespace OrvaUtilsPrivate

/// Imports any number of pictures as ImageUtils::importImage() does, on threads of its own.
///
/// \code
/// auto* importer = new ImageImporter(this);
/// ImageImport how;
/// how.maxSize = QSize(1600, 1600);
/// for (const QString& photo : photos)
///     importer->add(photo, site + '/' + QFileInfo(photo).fileName(), how);
/// connect(importer, &ImageImporter::progress, bar, [bar](int done, int total) {
///     bar->setMaximum(total);
///     bar->setValue(done);
/// });
/// connect(importer, &ImageImporter::imported, this, [this](int, const ImageImportResult& result) {
///     if (!result)
///         report(result.error);
/// });
/// connect(importer, &ImageImporter::finished, importer, &QObject::deleteLater);
/// importer->start();
/// \endcode
///
/// Pictures are started in the order in which they were added, and each is reported once, when it
/// is done. To limit memory use, a picture waits until its pixels and those of the pictures being
/// imported take no more than 96 MiB together; one that takes more by itself is imported alone.
///
/// All functions are called, and all signals emitted, on the thread that owns the object, which
/// needs an event loop. When the application is about to quit, imports are cancelled.
class ORVAUTILS_EXPORT ImageImporter : public QObject
{
    Q_OBJECT

public:
    /// An importer without pictures, owned by \a parent.
    explicit ImageImporter(QObject* parent = nullptr);

    /// Cancels the imports that are running and waits until they have ended, which takes no longer
    /// than reading or writing one picture. Nothing is emitted.
    ~ImageImporter() override;

    /// Adds the import of \a src as \a dst, as \a how says, and returns its index, starting at 0. A
    /// picture that is added while the importer runs is imported by the same run; one that is added
    /// before waits for start().
    int add(const QString& src, const QString& dst, const ImageImport& how = ImageImport());

    /// How many pictures were added.
    int count() const;

    /// Whether start() was called and finished() has not been emitted since.
    bool isRunning() const;

public Q_SLOTS:
    /// Imports what was added and not imported yet, on \a threads threads; below 1, on as many as
    /// the processor can run at a time. Does nothing while the importer runs. finished() is emitted
    /// even if there is nothing to import.
    void start(int threads = 0);

    /// Ends the run early. Running imports end at their next step and leave their destinations as
    /// they were; these and the pictures that were not started are reported with
    /// ImageImportResult::Cancelled. finished() follows. Does nothing if the importer is not
    /// running.
    void cancel();

Q_SIGNALS:
    /// The picture that add() returned \a index for is done, with \a result.
    void imported(int index, const ImageImportResult& result);

    /// \a done pictures of this run have been imported, out of \a total, which grows when more are
    /// added. Emitted after each imported().
    void progress(int done, int total);

    /// The run has ended, and all its threads with it. \a complete is false if it was cancelled;
    /// pictures that failed for another reason do not count.
    void finished(bool complete);

protected:
    /// Receives the results of the threads.
    void customEvent(QEvent* event) override;

private:
    const std::unique_ptr<OrvaUtilsPrivate::ImageImporterPrivate> d;
};

#endif // ORVAUTILS_IMAGEIMPORTER_H
