// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// A process is killed with SIGKILL at random moments while it saves photographs: afterwards each
// photograph is as it was before a save or after it.
//
// The killed process is this program itself in another role, which saves continuously and counts
// the begin and the end of each save in shared memory, so that the number of kills during a save is
// known.
//
// ORVAUTILS_KILLS=200 sets the number of kills, divided equally among the ways of saving, instead
// of ten each; ORVAUTILS_KILLS_SEED=N repeats the moments of a run.

#include "KillMoments.h"

#include "ChildRole.h"
#include "Columns.h"
#include "Sandbox.h"

#include <ExifEditor.h>
#include <FileUtils.h>
#include <QExifImageHeader.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QtTest>

#include <atomic>
#include <cstdio>
#include <functional>

#ifdef Q_OS_LINUX
#include <csignal>
#include <sys/prctl.h>
#endif

namespace {

const int stepCount = 40;

/// A photograph that is saved with different tags in each step. State 0 is before the first save.
struct Photograph
{
    QByteArray name;
    int dataSize; ///< bytes after the segments
    /// The content of the camera's segment before the first save; empty if there is none.
    int cameraBlock;
    /// The size of the raw value in each step.
    std::function<int(int)> valueSize;
    /// Whether it is saved with ExifEditor, not with QExifImageHeader.
    bool isEdited;
};

const QVector<Photograph>& photographs()
{
    const auto constant = [](int size) { return [size](int) { return size; }; };
    const auto growing = [](int first, int by) {
        return [first, by](int step) { return first + by * step; };
    };
    static const QVector<Photograph> all{
        // 40 bytes of directories around the value and 12 bytes of JPEG before: all in one page.
        {"one block", 30000, 4000 + 40, constant(4000), false},
        {"two blocks", 30000, 5000 + 40, constant(5000), false},
        {"sixteen blocks", 1500000, 65000 + 40, constant(65000), false},
        {"padded", 1500000, 65487 + 40, growing(65000, -1500), false},
        {"small steps", 30000, 0, growing(8, 3), false},
        {"large steps", 400000, 0, growing(1000, 1500), false},
        {"large file", 3000000, 0, growing(20000, 1000), false},
        {"edited within a block", 30000, 0, constant(2000), true},
        {"edited over many blocks", 400000, 0, constant(30000), true},
        {"edited and growing", 400000, 0, growing(100, 35), true},
    };
    return all;
}

QByteArray bigEndian(int number)
{
    QByteArray bytes;
    return bytes.append(char(number >> 8)).append(char(number & 0xFF));
}

QByteArray exifSegment(const QByteArray& block)
{
    return "\xFF\xE1" + bigEndian(int(block.size() + 8)) + QByteArray("Exif\0\0", 6) + block;
}

/// The tags of a step. Every byte of the value contains the step.
void fill(QExifImageHeader* header, const Photograph& photograph, int step)
{
    const QByteArray value(photograph.valueSize(step), char('0' + step));
    header->setValue(QExifImageHeader::MakerNote, QExifValue(value));
}

bool edit(ExifEditor* editor, const Photograph& photograph, int step)
{
    QExifImageHeader header;
    fill(&header, photograph, step);
    editor->setValue(QExifImageHeader::MakerNote, header.value(QExifImageHeader::MakerNote));
    return !editor->isEmpty();
}

/// Saves the tags of a step into the photograph at a path or in a device.
template <typename Place>
bool saveStep(const Photograph& photograph, int step, Place place)
{
    if (photograph.isEdited) {
        ExifEditor editor;
        return editor.load(place) && edit(&editor, photograph, step) && editor.save(place);
    }
    QExifImageHeader header;
    fill(&header, photograph, step);
    return header.saveToJpeg(place);
}

/// The block with these tags, according to the format: IFD0 with only the pointer, then the Exif
/// directory with the value, whose offset is 2 bytes before it.
QByteArray blockOf(const Photograph& photograph, int step)
{
    const int size = photograph.valueSize(step);
    const auto u32 = [](int number) {
        return QByteArray().append(char(number & 0xFF)).append(char(number >> 8)).append(2, '\0');
    };
    return QByteArray("II*\0\x08\0\0\0", 8) + QByteArray("\x01\0\x69\x87\x04\0\x01\0\0\0", 10)
        + u32(26) + u32(0) + QByteArray("\x01\0\x7C\x92\x07\0", 6) + u32(size) + u32(26 + 12)
        + QByteArray(size, char('0' + step));
}

/// All valid states of a photograph: before the first save, and after each step.
QVector<QByteArray> statesOf(const Photograph& photograph)
{
    const QByteArray begin("\xFF\xD8");
    QByteArray data = "\xFF\xDA" + bigEndian(12) + QByteArray(10, '\x01');
    for (int i = 0; data.size() < photograph.dataSize; ++i)
        data += QByteArray::number(i);
    data += "\xFF\xD9";
    if (photograph.cameraBlock == 0) {
        const QByteArray jfif = "\xFF\xE0" + bigEndian(16) + QByteArray("JFIF\0", 5)
            + QByteArray("\1\1\0\0\1\0\1\0\0", 9);
        QVector<QByteArray> states{begin + jfif + data};
        for (int step = 0; photograph.isEdited && step < stepCount; ++step) {
            QBuffer buffer;
            buffer.setData(states.last());
            if (!buffer.open(QIODevice::ReadWrite) || !saveStep(photograph, step, &buffer))
                qFatal("cannot edit a photograph");
            states.append(buffer.data());
        }
        if (photograph.isEdited)
            return states;
        for (int step = 0; step < stepCount; ++step)
            states.append(begin + jfif + exifSegment(blockOf(photograph, step)) + data);
        return states;
    }
    QVector<QByteArray> states{begin + exifSegment(QByteArray(photograph.cameraBlock, 'c')) + data};
    for (int step = 0; step < stepCount; ++step) {
        const QByteArray block = blockOf(photograph, step);
        const QByteArray padding(photograph.cameraBlock - block.size(), '\0');
        states.append(begin + exifSegment(block + padding) + data);
    }
    return states;
}

// The process to be killed

/// The counter in shared memory. Odd while a save is in progress.
using Counter = std::atomic<quint64>;

Counter* counterIn(QFile* file)
{
    return file->open(QIODevice::ReadWrite)
        ? reinterpret_cast<Counter*>(file->map(0, sizeof(Counter)))
        : nullptr;
}

/// Saves forever: all steps, then again from the original photograph.
int saveUntilKilled()
{
#ifdef Q_OS_LINUX
    prctl(PR_SET_PDEATHSIG, SIGKILL); // in case the test ends first
#endif
    const QString path = QString::fromLocal8Bit(qgetenv("ORVAUTILS_KILLS_PATH"));
    const Photograph photograph =
        photographs().value(qEnvironmentVariableIntValue("ORVAUTILS_KILLS_PHOTOGRAPH"));
    // Outside of the folder, which must contain nothing but the photograph.
    const QString fresh = QFileInfo(path).path() + QStringLiteral(".fresh");
    const QByteArray original = statesOf(photograph).first();
    QFile file(QString::fromLocal8Bit(qgetenv("ORVAUTILS_KILLS_COUNTER")));
    Counter* const counter = counterIn(&file);
    if (!counter)
        return 3;
    for (;;) {
        for (int step = 0; step < stepCount; ++step) {
            counter->fetch_add(1);
            if (!saveStep(photograph, step, path))
                return 4;
            counter->fetch_add(1);
        }
        QFile draft(fresh);
        if (!draft.open(QIODevice::WriteOnly) || draft.write(original) != original.size())
            return 5;
        draft.close();
        if (std::rename(QFile::encodeName(fresh).constData(), QFile::encodeName(path).constData())
            != 0)
            return 5;
    }
}

/// Replaces a folder tree forever by one whose files all contain the same letter.
int replaceUntilKilled()
{
#ifdef Q_OS_LINUX
    prctl(PR_SET_PDEATHSIG, SIGKILL); // in case the test ends first
#endif
    const QString root = QString::fromLocal8Bit(qgetenv("ORVAUTILS_KILLS_PATH"));
    QFile file(QString::fromLocal8Bit(qgetenv("ORVAUTILS_KILLS_COUNTER")));
    Counter* const counter = counterIn(&file);
    if (!counter)
        return 3;
    for (int turn = 0;; ++turn) {
        const QString source = root + QStringLiteral("/source%1").arg(turn % 2);
        counter->fetch_add(1);
        if (!FileUtils::replaceDir(source, root + QStringLiteral("/tree")))
            return 4;
        counter->fetch_add(1);
    }
}

} // namespace

class tst_Kills : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void states_data();
    void states();
    void savedPhotograph_data();
    void savedPhotograph();
    void replacedTree();
    void cleanupTestCase();

private:
    quint64 killWhile(const QString& role, int index, const QString& path);

    KillMoments mMoments;
    int mKills = 0;
    int mDuringSaves = 0;
    int mMixtures = 0;
    int mLeftBehind = 0;
};

void tst_Kills::states_data()
{
    const auto row = columns<int>("index");
    for (int i = 0; i < photographs().size(); ++i)
        row(photographs().at(i).name.constData(), i);
}

// Without kills, the saves lead to the expected states.
void tst_Kills::states()
{
    QFETCH(int, index);
    const Photograph photograph = photographs().at(index);
    const QVector<QByteArray> states = statesOf(photograph);
    const Sandbox folder;
    const QString path = folder.file(QStringLiteral("file.jpg"), states.first());
    for (int step = 0; step < stepCount; ++step) {
        QVERIFY(saveStep(photograph, step, path));
        QVERIFY2(contentOf(path) == states.at(step + 1), qPrintable(QString::number(step)));
    }
}

void tst_Kills::savedPhotograph_data()
{
    states_data();
}

void tst_Kills::savedPhotograph()
{
    QFETCH(int, index);
    const Photograph photograph = photographs().at(index);
    const QVector<QByteArray> states = statesOf(photograph);
    // Without waiting for a disk, more kills come between two bytes.
    const Sandbox onDisk;
    const Sandbox inMemory(folderInMemory());

    QStringList mixtures;
    for (int kill = 0; kill < KillMoments::countInEach(int(photographs().size())); ++kill) {
        const QString photoFolder =
            (kill % 2 == 0 ? onDisk : inMemory).folder(QStringLiteral("photo"));
        const QString path = photoFolder + QStringLiteral("/file.jpg");
        writeFile(path, states.first());
        const quint64 counted = killWhile(QStringLiteral("saves until it is killed"), index, path);
        QVERIFY(counted > 0);
        ++mKills;
        mDuringSaves += int(counted % 2);

        const QByteArray left = contentOf(path);
        if (!states.contains(left)) {
            ++mMixtures;
            mixtures.append(QStringLiteral("kill %1 after %2 saves: %3 bytes")
                                .arg(kill)
                                .arg(counted / 2)
                                .arg(left.size()));
        }
        mLeftBehind += int(QDir(photoFolder).entryList(QDir::Files | QDir::Hidden).size()) - 1;

        // Whatever was left, the next save succeeds.
        QVERIFY(saveStep(photograph, stepCount - 1, path));
        if (mixtures.isEmpty() && !photograph.isEdited)
            QVERIFY(states.contains(contentOf(path)));
        QExifImageHeader again;
        QVERIFY(again.loadFromJpeg(path));
        QVERIFY(again.contains(QExifImageHeader::MakerNote));
        QVERIFY(QDir(photoFolder).removeRecursively());
    }
    QVERIFY2(mixtures.isEmpty(), qPrintable(mixtures.join(QLatin1Char('\n'))));
}

// A tree that is being replaced is complete, old or new, at every moment.
void tst_Kills::replacedTree()
{
    int duringReplacements = 0;
    for (int kill = 0; kill < KillMoments::countInEach(int(photographs().size())); ++kill) {
        const Sandbox sandbox(kill % 2 == 0 ? QDir::tempPath() : folderInMemory());
        QMap<QString, QByteArray> trees[2];
        for (int tree = 0; tree < 2; ++tree) {
            for (int i = 0; i < 40; ++i)
                sandbox.file(QStringLiteral("source%1/%2/%3").arg(tree).arg(i % 4).arg(i),
                             QByteArray(1000 * i, char('a' + tree)));
            trees[tree] = filesBelow(sandbox(QStringLiteral("source%1").arg(tree)));
        }
        QVERIFY(FileUtils::replaceDir(sandbox(QStringLiteral("source0")),
                                      sandbox(QStringLiteral("tree"))));
        const quint64 counted =
            killWhile(QStringLiteral("replaces until it is killed"), 0, sandbox.root());
        QVERIFY(counted > 0);
        duringReplacements += int(counted % 2);
        const QMap<QString, QByteArray> left = filesBelow(sandbox(QStringLiteral("tree")));
        QVERIFY2(left == trees[0] || left == trees[1],
                 qPrintable(QStringLiteral("kill %1 left %2 files").arg(kill).arg(left.size())));
    }
    qInfo("kills in replaceDir: %d during a replacement", duringReplacements);
}

/// The counter of the process when it was killed; 0 if that failed.
quint64 tst_Kills::killWhile(const QString& role, int index, const QString& path)
{
    const Sandbox folder;
    QFile counterFile(folder.file(QStringLiteral("counter"), QByteArray(sizeof(Counter), '\0')));
    Counter* const counter = counterIn(&counterFile);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ORVAUTILS_KILLS_PATH"), path);
    environment.insert(QStringLiteral("ORVAUTILS_KILLS_PHOTOGRAPH"), QString::number(index));
    environment.insert(QStringLiteral("ORVAUTILS_KILLS_COUNTER"), counterFile.fileName());
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--child-role"), role});
    if (!counter || !process.waitForStarted())
        return 0;
    while (counter->load() == 0 && process.state() == QProcess::Running)
        process.waitForFinished(1);
    mMoments.wait(30000);
    process.kill();
    const bool killed = process.waitForFinished() && process.exitStatus() == QProcess::CrashExit;
    return killed ? counter->load() : 0;
}

void tst_Kills::cleanupTestCase()
{
    qInfo("kills: %d in saves, %d of them during a save, seed %u; mixtures: %d; copies left "
          "beside the photograph: %d",
          mKills, mDuringSaves, mMoments.seed(), mMixtures, mLeftBehind);
}

int main(int argc, char** argv)
{
    if (const ChildRole role = childRole(argc, argv,
                                         {{"saves until it is killed", saveUntilKilled},
                                          {"replaces until it is killed", replaceUntilKilled}}))
        return role();
    KillMoments::allowTime();
    QCoreApplication application(argc, argv);
    tst_Kills test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_Kills.moc"
