// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// What scripts/qt-floor must find in a source, and what it must not: a line that ends in "finds:"
// names the expected findings, and no other line may have any. It is parsed by `scripts/qt-floor
// --self-test`, and never run.

// A finding is reported for the line of its use.
// clang-format off

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFontMetrics>
#include <QHostAddress>
#include <QJsonObject>
#include <QRandomGenerator> // finds: <QRandomGenerator>
#include <QStringList>
#include <QThread>
#include <QTimer>
#include <QWidget>

#include <vector>

// ---- Functions ----

QString chopped(const QString& text)
{
    return text.chopped(1); // finds: QString::chopped(int)
}

QString leftOf(const QString& text)
{
    return text.left(1) + text.mid(2) + QString::fromUtf8("a").toLower();
}

bool isEmptyFolder(const QDir& folder)
{
    return folder.isEmpty(); // finds: QDir::isEmpty(QDir::Filters)
}

bool isEmptyText(const QString& text, const QStringList& list)
{
    return text.isEmpty() && list.isEmpty();
}

QDateTime born(const QFileInfo& file)
{
    return file.birthTime(); // finds: QFileInfo::birthTime()
}

QDateTime changed(const QFileInfo& file)
{
    return file.lastModified();
}

// ---- Overloads: some are old, some are new ----

int compared(const QByteArray& bytes)
{
    return bytes.compare("a"); // finds: QByteArray::compare(const char *, Qt::CaseSensitivity)
}

qint64 addedOld(const QDateTime& time)
{
    return time.addMSecs(1).toMSecsSinceEpoch() + QDateTime::fromMSecsSinceEpoch(0).toTime_t();
}

qint64 seconds(const QDateTime& time)
{
    return time.toSecsSinceEpoch(); // finds: QDateTime::toSecsSinceEpoch()
}

QString insertedOld(QString text)
{
    return text.insert(0, QLatin1String("a")).append(QLatin1Char('b')).arg(1);
}

QString argOfTwo(const QString& text)
{
    return text.arg(text, text) + text.arg(2.5);
}

QString argOfLatin1(const QString& text)
{
    return text.arg(QLatin1String("a")); // finds: QString::arg(QLatin1String, int, QChar)
}

// ---- Types and what belongs to them ----

quint32 drawn()
{
    return QRandomGenerator::global()->generate(); // finds: QRandomGenerator::global(), QRandomGenerator::generate(), QRandomGenerator
}

using Clock = QDeadlineTimer; // finds: QDeadlineTimer

bool waits(QThread& thread)
{
    return thread.wait() && thread.wait(100);
}

void (QTimer::*overloaded())(int)
{
    return QOverload<int>::of(&QTimer::start); // finds: QOverload, QNonConstOverload::of(void (QTimer::*)(int))
}

void (QTimer::*chosen())(int)
{
    return static_cast<void (QTimer::*)(int)>(&QTimer::start);
}

// ---- Values ----

int behaviour()
{
    return Qt::SkipEmptyParts; // finds: Qt::SkipEmptyParts
}

QStringList parts(const QString& text)
{
    return text.split(QLatin1Char(','), QString::SkipEmptyParts) + text.split(QLatin1Char(';'));
}

bool opens(QFile& file)
{
    return file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly); // finds: QIODevice::ExistingOnly
}

bool opensOld(QFile& file)
{
    return file.open(QIODevice::ReadWrite | QIODevice::Unbuffered);
}

// ---- Macros and templates ----

int falls(int n)
{
    switch (n) {
    case 1:
        ++n;
        Q_FALLTHROUGH(); // finds: Q_FALLTHROUGH
    default:
        return n;
    }
}

int sum(QList<int>& numbers)
{
    int result = 0;
    for (int number : qAsConst(numbers)) // finds: qAsConst(QList<int> &)
        result += number;
    return result;
}

template <typename Text>
Text without(const Text& text)
{
    return text.chopped(1); // finds: anything named chopped
}

template <typename Text>
Text lower(const Text& text)
{
    return text.toLower();
}

// ---- Guards ----

int width(const QFontMetrics& metrics, const QString& text)
{
#if QT_VERSION >= QT_VERSION_CHECK(5, 11, 0)
    return metrics.horizontalAdvance(text);
#else
    return metrics.width(text);
#endif
}

int widthBehindTooLow(const QFontMetrics& metrics, const QString& text)
{
#if QT_VERSION >= QT_VERSION_CHECK(5, 10, 0)
    return metrics.horizontalAdvance(text); // finds: QFontMetrics::horizontalAdvance(const QString &, int)
#endif
}

int widthOtherwise(const QFontMetrics& metrics, const QString& text)
{
#if QT_VERSION < QT_VERSION_CHECK(5, 11, 0)
    return metrics.width(text);
#elif defined(Q_OS_UNIX)
    return metrics.horizontalAdvance(text);
#else
    return 0;
#endif
}

int widthNested(const QFontMetrics& metrics, const QString& text)
{
#if defined(Q_OS_UNIX) && (QT_VERSION >= QT_VERSION_CHECK(5, 12, 0))
#ifdef Q_OS_UNIX
    return metrics.horizontalAdvance(text);
#endif
#endif
    return metrics.horizontalAdvance(text); // finds: QFontMetrics::horizontalAdvance(const QString &, int)
}

int widthOfEither(const QFontMetrics& metrics, const QString& text)
{
#if QT_VERSION >= QT_VERSION_CHECK(5, 11, 0) || defined(Q_OS_UNIX)
    return metrics.horizontalAdvance(text); // finds: QFontMetrics::horizontalAdvance(const QString &, int)
#endif
}

int widthUnless(const QFontMetrics& metrics, const QString& text)
{
#if !(QT_VERSION \
      < QT_VERSION_CHECK(5, 11, 0))
    return metrics.horizontalAdvance(text);
#endif
}

int widthAfterFakes(const QFontMetrics& metrics, const QString& text)
{
    /*
#if QT_VERSION >= QT_VERSION_CHECK(5, 11, 0)
    */
    const char* const fake = R"(
#if QT_VERSION >= QT_VERSION_CHECK(5, 11, 0)
)";
    return fake ? metrics.horizontalAdvance(text) : 0; // finds: QFontMetrics::horizontalAdvance(const QString &, int)
}
