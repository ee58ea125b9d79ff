// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// A minimal program that links to the library and uses one function of each class in the package.

#include <ApplicationUtils.h>
#include <ColorUtils.h>
#include <ComputerIdentifier.h>
#include <CoreAppUrlUtils.h>
#include <CoreApplicationUtils.h>
#include <CurrencyUtils.h>
#include <DateUtils.h>
#include <DirectorySynchronizer.h>
#include <DirectoryWatcher.h>
#include <DrawUtils.h>
#include <DrawingCountOptions.h>
#include <DrawingCountZoneHelper.h>
#include <Errorable.h>
#include <ErrorableCode.h>
#include <EventUtils.h>
#include <ExifEditor.h>
#include <ExifUtils.h>
#include <FileSystemGuiService.h>
#include <FileUtils.h>
#include <FlagsUtils.h>
#include <GenericThread.h>
#include <GoogleFontFile.h>
#include <GoogleFontItem.h>
#include <GoogleFontLoader.h>
#include <GoogleFontWeightDetail.h>
#include <HTMLUtils.h>
#include <ImageImport.h>
#include <ImageImportResult.h>
#include <ImageImporter.h>
#include <ImageUtils.h>
#include <JsCodeHelpers.h>
#include <KeyPressCheatCodeDetection.h>
#include <ListUtils.h>
#include <LocalisationTools.h>
#include <LocalizationUtils.h>
#include <MathUtils.h>
#include <MetaObjectUtils.h>
#include <MetricSystemUtils.h>
#include <NetUtils.h>
#include <PhpCodeHelpers.h>
#include <PhpUtil.h>
#include <ProjectFileLocker.h>
#include <QExifImageHeader.h>
#include <QExifValue.h>
#include <QObjectEventFilter.h>
#include <SpeedTestAnalyzer.h>
#include <StringUtils.h>
#include <TaxeRatesUtils.h>
#include <TextStreamUTF8.h>
#include <Thread.h>
#include <Threadable.h>
#include <TimeUtils.h>
#include <TypeUtils.h>
#include <UnitTestInfo.h>
#include <WidgetUtils.h>

#include <QApplication>
#include <QBuffer>
#include <QImage>
#include <QKeyEvent>
#include <QPainter>
#include <QTemporaryDir>

#include <functional>

namespace {

// Called before main(), when the library's own objects may not be initialised.
const double rateBeforeMain = TaxeRatesUtils::europeanTax(QStringLiteral("AT"), 0);

// Parts of a static library that a linker drops if nothing refers to them: the embedded files,
// objects that are initialised before main(), the meta-objects of its classes.
bool hasAllOfTheLibrary()
{
    GoogleFontLoader fonts;
    const QStringList names = fonts.fontNames();
    Thread thread;
    const QMetaObject* const meta = thread.metaObject();
    return rateBeforeMain == 20 && TaxeRatesUtils::europeanTax(QStringLiteral("GB"), 0) == 20
        && names.contains(QStringLiteral("ABeeZee"))
        && names.contains(QStringLiteral("Zilla Slab Highlight"))
        && CurrencyUtils::currencyNumericCode(QStringLiteral("EUR")) == 978
        && ImageUtils::createTransparentPixmap(QImage(), Qt::red, 50).size() == QSize(20, 20)
        && !ImageUtils::importImage(QString(), QString(), ImageImport())
        && !ImageImporter().isRunning() && qstrcmp(meta->className(), "Thread") == 0
        && meta->indexOfSignal("progressThread(QString,QString)") >= 0;
}

// Functions for the frame of an application.
bool usesTheFrame()
{
    QObject object;
    KeyPressCheatCodeDetection(&object).setKey(QStringLiteral("shop"));
    QObjectEventFilter filter(&object);
    QKeyEvent backspace(QEvent::KeyPress, Qt::Key_Backspace, Qt::NoModifier);
    Qt::ItemFlags flags;
    FlagsUtils::setFlag(flags, Qt::ItemIsEditable, true);
    CoreApplicationUtils::setApplicationName(QStringLiteral("consumer"));
    return CoreApplicationUtils::applicationGuiName() == QStringLiteral("consumer")
        && ApplicationUtils::pathApplicationSettings().endsWith(QStringLiteral("/consumer/"))
        && EventUtils::match_KeyDelete(&backspace) && flags == Qt::ItemIsEditable
        && ListUtils::allObjectIsSameClass({&object})
        && MetaObjectUtils::hasMethod(&object, SLOT(deleteLater()))
        && WidgetUtils::parentsList(&filter) == QStringList(QStringLiteral("QObject"));
}

// Functions for a shop. The fonts and the tax rates are embedded files, which must also be found in
// a static library.
bool usesTheShop()
{
    GoogleFontLoader fonts;
    const auto kilogram = MetricSystemUtils::symbol(
        MetricSystemUtils::Weight, MetricSystemUtils::Metric, MetricSystemUtils::ShortSymbol);
    return fonts.validName(QStringLiteral("opensans")) == QStringLiteral("Open Sans")
        && TaxeRatesUtils::europeanTax(QStringLiteral("fr"), 1) == 5.5
        && CurrencyUtils::formatPrice(12.5, QStringLiteral("EUR")) == QStringLiteral("12.50 \u20ac")
        && kilogram == QStringLiteral("Kg");
}

bool usesTheLanguages()
{
    const QString address = QStringLiteral("https://example.org/");
    return LocalisationTools::trQtMessages(LocalisationTools::ButtonCancel)
        == QStringLiteral("Cancel")
        && LocalizationUtils::isoLangCodeToString(QStringLiteral("fr")) == QStringLiteral("French")
        && CoreAppUrlUtils::mapUrlApplication(address, nullptr, {}) == address;
}

bool usesFilesAndPictures()
{
    const QTemporaryDir folder;
    const QString photo = folder.path() + QStringLiteral("/a.jpg");
    QImage image(40, 20, QImage::Format_RGB32);
    image.fill(Qt::red);
    QPainter painter(&image);
    DrawUtils::drawUndefinedRectOblique(&painter, image.rect());
    const QRect badge =
        DrawingCountZoneHelper::boundingRect(&painter, QStringLiteral("1"), DrawingCountOptions());
    painter.end();

    // Linked, but not called: it would start something on this desktop.
    const std::function<bool(QObject*, QString, QStringList)> openProgram =
        &FileSystemGuiService::openProgram;
    ProjectFileLocker locker;
    DirectoryWatcher watcher;
    DirectorySynchronizer synchronizer;
    ExifEditor editor;
    editor.setOrientation(6);
    QExifImageHeader header;
    header.setValue(QExifImageHeader::Orientation, QExifValue(quint16(6)));
    return locker.openNewProjectFile(folder.path() + QStringLiteral("/shop"))
        && ImageUtils::writeProgressiveImage(image, photo, "jpeg", 80) && header.saveToJpeg(photo)
        && ExifUtils::imageExifRotation(photo) == 90
        && FileUtils::writeFileContent(folder.path() + QStringLiteral("/x/b.txt"), "b")
        && synchronizer.fullSync(folder.path() + QStringLiteral("/x"),
                                 folder.path() + QStringLiteral("/y"))
        && FileUtils::md5(folder.path() + QStringLiteral("/y/b.txt"))
        == FileUtils::md5FromDatas("b")
        && watcher.setPath(folder.path()) && badge.isValid()
        && ColorUtils::colorToCss(Qt::red) == QStringLiteral("#ff0000") && openProgram;
}

bool usesTextAndCode()
{
    QString page;
    TextStreamUTF8 stream(&page, QIODevice::WriteOnly);
    PhpCodeHelpers::formatPhpArray(&stream, QList<int>({1, 2}));
    JsCodeHelpers::formatJavascriptArray(&stream, QList<int>({3}));
    stream.flush();
    const QDateTime now = QDateTime::currentDateTime();
    return page == QStringLiteral("[1,2][3]")
        && PhpUtil::formatPhpString(QStringLiteral("a")) == QStringLiteral("\"a\"")
        && HTMLUtils::cssWeightToQtWeight(400) == 50
        && NetUtils::checkInternetAdress(QStringLiteral("https://example.org"))
        && StringUtils::removeAccents(QStringLiteral("\u00e9")) == QStringLiteral("e")
        && TimeUtils::msecToString(1000, TimeUtils::Second) == QStringLiteral("1sec")
        && DateUtils::dateTimeToStringAccordingNow(now, Qt::ISODate)
               .startsWith(QStringLiteral("Today"));
}

class Part : public QObject, public Errorable
{
    // Errors travel along such objects.
};

ErrorableCode firstError()
{
    ErrorableCode code;
    code.code = 1;
    return code;
}

// Before main(), and with a static library before the library's own static objects are initialised.
const bool messagesAreFilled = [] {
    Errorable::sErrorMessages[firstError()] = QStringLiteral("The first error");
    return true;
}();

bool usesErrorsThreadsAndDiagnostics()
{
    Part parent;
    Part child;
    parent._addErrorableChild(child, __FILE__, __LINE__);
    child._setError(firstError());

    Thread thread;
    Threadable worker;
    thread.addThreadableChild(worker);
    SpeedTestAnalyzer speed(QStringLiteral("consumer"));
    speed << QStringLiteral("step");
    ComputerIdentifier::primaryMACAddress();
    return parent.error() == firstError() && messagesAreFilled
        && parent.errorMessage() == QStringLiteral("The first error")
        && !worker.isInterruptionRequested() && !thread.isCancelRequested()
        && MathUtils::random(5, 5) == 5 && TypeUtils::demangle("i") == QStringLiteral("int")
        && speed.elapsed() >= 0;
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    const struct
    {
        const char* name;
        bool (*works)();
    } parts[] = {
        {"what the library carries", hasAllOfTheLibrary},
        {"the frame", usesTheFrame},
        {"the shop", usesTheShop},
        {"the languages", usesTheLanguages},
        {"files and pictures", usesFilesAndPictures},
        {"text and code", usesTextAndCode},
        {"errors, threads and diagnostics", usesErrorsThreadsAndDiagnostics},
    };
    int failures = 0;
    for (const auto& part : parts) {
        if (part.works())
            continue;
        qWarning("consumer: %s: not as expected", part.name);
        ++failures;
    }
    return failures;
}
