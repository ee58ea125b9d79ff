// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Text operations and code emitters compared with alternatives: ICU, QRegularExpression,
// QVersionNumber, KFormat and QJsonDocument. Before anything is measured, all contenders are
// checked to agree. Some operations are compared with themselves at half the input size, which
// shows how their time grows.
//
// compare_text.py runs this program and prints the ratios.

#include "Benchmarks.h"
#include "FileUtils.h"
#include "HTMLUtils.h"
#include "JsCodeHelpers.h"
#include "NetUtils.h"
#include "PhpCodeHelpers.h"
#include "StringUtils.h"
#include "TextStreamUTF8.h"
#include "TimeUtils.h"

#include <KFormat>

#include <QBuffer>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QVersionNumber>

#include <benchmark/benchmark.h>
#include <unicode/translit.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

// Texts

/// A thousand product titles of about 60 characters each, half of them with accents.
const QStringList& titles()
{
    static const QStringList texts = [] {
        const QStringList words = QString::fromUtf8("Élégant manteau d'été à carreaux, doublé; "
                                                    "Cœur, Tasse à café «Zoé» 25 cl; Nappe brodée "
                                                    "(140×200) Søstrene; Blue cotton shirt - long "
                                                    "sleeves, size 42; Garçon, Noël: pull en "
                                                    "laine; Wooden toy train with four carriages; "
                                                    "Señorita, Café crème; Plain white plate")
                                      .split(QLatin1Char(' '));
        QStringList made;
        int next = 0;
        while (made.size() < 1000) {
            QString text;
            while (text.size() < 55)
                text += words.at((next += 7) % words.size()) + QLatin1Char(' ');
            made.append(text + QString::number(next));
        }
        return made;
    }();
    return texts;
}

QString normalizedWithExpression(const QString& s)
{
    static const QRegularExpression rx(QStringLiteral("[^a-zA-Z0-9\\s\\-]"));
    return s.normalized(QString::NormalizationForm_D).remove(rx).simplified().toLower();
}

std::unique_ptr<icu::Transliterator> transliterator(const char* id)
{
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Transliterator> made(
        icu::Transliterator::createInstance(icu::UnicodeString(id), UTRANS_FORWARD, status));
    check(U_SUCCESS(status), "the name of a transliterator");
    return made;
}

const char* const latinToAscii = "Latin-ASCII";
const char* const marksAway = "NFD; [:Nonspacing Mark:] Remove; NFC";

icu::UnicodeString transliterated(const icu::Transliterator& rule, const QString& s)
{
    icu::UnicodeString text(reinterpret_cast<const UChar*>(s.utf16()), s.size());
    rule.transliterate(text);
    return text;
}

void checkTexts()
{
    const auto ascii = transliterator(latinToAscii);
    const auto marks = transliterator(marksAway);
    for (const QString& title : titles()) {
        // Punctuation and ligatures are left out, because the rules of ICU treat them differently.
        const QString letters =
            QString(title).remove(QRegularExpression(QStringLiteral("[«»×œø]")));
        const QString plain = StringUtils::removeAccents(letters);
        for (const auto* rule : {ascii.get(), marks.get()}) {
            const icu::UnicodeString peer = transliterated(*rule, letters);
            check(plain == QString(reinterpret_cast<const QChar*>(peer.getBuffer()), peer.length()),
                  "accents");
        }
        check(StringUtils::normalizeTextForSearch(title) == normalizedWithExpression(title),
              "search keys");
    }
}

void removeAccentsOurs(benchmark::State& state)
{
    for (auto _ : state) {
        for (const QString& title : titles())
            benchmark::DoNotOptimize(StringUtils::removeAccents(title));
    }
}

void removeAccentsIcu(benchmark::State& state, const char* id)
{
    const auto rule = transliterator(id);
    for (auto _ : state) {
        for (const QString& title : titles())
            benchmark::DoNotOptimize(transliterated(*rule, title));
    }
}

void searchKeyOurs(benchmark::State& state)
{
    for (auto _ : state) {
        for (const QString& title : titles())
            benchmark::DoNotOptimize(StringUtils::normalizeTextForSearch(title));
    }
}

void searchKeyExpression(benchmark::State& state)
{
    for (auto _ : state) {
        for (const QString& title : titles())
            benchmark::DoNotOptimize(normalizedWithExpression(title));
    }
}

// Versions

/// Pairs of versions, most of them with the same first components.
const QVector<QPair<QString, QString>>& versions()
{
    static const QVector<QPair<QString, QString>> pairs = [] {
        QVector<QPair<QString, QString>> made;
        for (int i = 0; i < 1000; ++i) {
            made.append({QStringLiteral("%1.%2.%3").arg(i % 3).arg(i % 12).arg(i % 127),
                         QStringLiteral("%1.%2.%3").arg(i % 3).arg(i % 11).arg(i % 101)});
        }
        return made;
    }();
    return pairs;
}

int compareOurs(const QString& a, const QString& b)
{
    int result = 0;
    StringUtils::compareVersion(a, b, result);
    return result;
}

int compareVersionNumbers(const QString& a, const QString& b)
{
    return QVersionNumber::compare(QVersionNumber::fromString(a), QVersionNumber::fromString(b));
}

void checkVersions()
{
    for (const auto& pair : versions()) {
        const int peer = compareVersionNumbers(pair.first, pair.second);
        check(compareOurs(pair.first, pair.second) == (peer > 0) - (peer < 0), "versions");
    }
}

template <int compare(const QString&, const QString&)>
void compareVersions(benchmark::State& state)
{
    for (auto _ : state) {
        int sum = 0;
        for (const auto& pair : versions())
            sum += compare(pair.first, pair.second);
        benchmark::DoNotOptimize(sum);
    }
}

// Durations

/// A thousand durations from a minute to a day, in whole seconds.
const QVector<quint64>& durations()
{
    static const QVector<quint64> made = [] {
        QVector<quint64> values;
        for (quint64 i = 0; i < 1000; ++i)
            values.append((60 + i * 7919 % 86340) * 1000);
        return values;
    }();
    return made;
}

QString durationOurs(quint64 ms)
{
    return StringUtils::formatDurationFromMSec(ms);
}

QString durationWords(quint64 ms)
{
    return TimeUtils::msecToString(qint64(ms), TimeUtils::Second);
}

QString durationKFormat(quint64 ms)
{
    static const KFormat format;
    return format.formatDuration(ms, KFormat::InitialDuration);
}

QString durationKFormatSpelled(quint64 ms)
{
    static const KFormat format;
    return format.formatSpelloutDuration(ms);
}

/// The seconds of a text such as "1h 2mn 3s " or "1h02m03s".
int secondsTold(const QString& text)
{
    static const QRegularExpression piece(QStringLiteral("(\\d+)(h|mn?|s)"));
    int seconds = 0;
    QRegularExpressionMatchIterator pieces = piece.globalMatch(text);
    while (pieces.hasNext()) {
        const QRegularExpressionMatch match = pieces.next();
        const QChar unit = match.capturedRef(2).at(0);
        const int factor = unit == QLatin1Char('h') ? 3600 : unit == QLatin1Char('m') ? 60 : 1;
        seconds += match.capturedRef(1).toInt() * factor;
    }
    return seconds;
}

void checkDurations()
{
    for (const quint64 ms : durations()) {
        const int seconds = int(ms / 1000);
        check(secondsTold(durationOurs(ms)) == seconds, "durations");
        check(secondsTold(durationWords(ms)) == seconds, "durations in words");
        check(secondsTold(durationKFormat(ms)) == seconds, "durations of KFormat");
    }
    // "1 hour and 2 minutes", or with "(s)" where the plural forms of KFormat are not installed.
    check(durationKFormatSpelled(3720000)
              .remove(QStringLiteral("(s)"))
              .startsWith(QStringLiteral("1 hour and 2 minute")),
          "durations spelled out");
}

template <QString format(quint64)>
void formatDurations(benchmark::State& state)
{
    for (auto _ : state) {
        for (const quint64 ms : durations())
            benchmark::DoNotOptimize(format(ms));
    }
}

// Code

/// A map of 100,000 entries: mostly texts, some numbers and booleans.
const QVariantMap& products()
{
    static const QVariantMap map = [] {
        QVariantMap made;
        for (int i = 0; i < 100000; ++i) {
            QVariant value;
            switch (i % 5) {
            case 0:
                value = i;
                break;
            case 1:
                value = i / 8.0;
                break;
            case 2:
                value = i % 2 == 0;
                break;
            default:
                value = titles().at(i % 1000);
            }
            made.insert(QStringLiteral("product%1").arg(i, 6, 10, QLatin1Char('0')), value);
        }
        return made;
    }();
    return map;
}

const QJsonDocument& readyDocument()
{
    static const QJsonDocument document = QJsonDocument::fromVariant(products());
    return document;
}

template <void format(QTextStream*, const QVariantMap&)>
QByteArray code()
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    TextStreamUTF8 stream(&buffer);
    format(&stream, products());
    stream.flush();
    return buffer.data();
}

QByteArray php()
{
    return code<PhpCodeHelpers::formatPhpMap>();
}

QByteArray javascript()
{
    return code<JsCodeHelpers::formatJavascriptObject>();
}

QByteArray jsonOfReadyDocument()
{
    return readyDocument().toJson(QJsonDocument::Compact);
}

QByteArray jsonFromVariant()
{
    return QJsonDocument::fromVariant(products()).toJson(QJsonDocument::Compact);
}

/// The literal of the products, concatenated in the obvious way.
QByteArray expectedCode(const char* start, const char* keyEnd, const char* end)
{
    QByteArray code = start;
    const QVariantMap& map = products();
    for (auto entry = map.constBegin(); entry != map.constEnd(); ++entry) {
        if (entry != map.constBegin())
            code += ',';
        code += '\'' + entry.key().toUtf8() + '\'' + keyEnd;
        const QVariant& value = entry.value();
        if (value.userType() == QMetaType::QString)
            code += '\''
                + value.toString().replace(QLatin1Char('\''), QLatin1String("\\'")).toUtf8() + '\'';
        else if (value.userType() == QMetaType::Double)
            code += QByteArray::number(value.toDouble(), 'g', 6);
        else
            code += QByteArray::number(value.toInt());
    }
    return code + end;
}

void checkCode()
{
    check(php() == expectedCode("[\n", "=>", "\n]"), "PHP");
    check(javascript() == expectedCode("{\n", ":", "\n}"), "JavaScript");
    check(jsonFromVariant() == jsonOfReadyDocument()
              && QJsonDocument::fromJson(jsonFromVariant()).toVariant()
                  == readyDocument().toVariant(),
          "JSON");
}

template <QByteArray write()>
void emitCode(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(write());
}

// Hostile texts

void hostileEmail(benchmark::State& state)
{
    const QString address = QString(249, QLatin1Char('a')) + QLatin1Char('@');
    const QString separators = QStringLiteral("a.").repeated(125);
    check(!NetUtils::checkEmailAdress(address) && !NetUtils::checkEmailAdress(separators),
          "hostile addresses");
    for (auto _ : state) {
        benchmark::DoNotOptimize(NetUtils::checkEmailAdress(address));
        benchmark::DoNotOptimize(NetUtils::checkEmailAdress(separators));
    }
}

void hostileWebAddress(benchmark::State& state)
{
    const QString address = QStringLiteral("http://a") + QString(10000, QLatin1Char('/'));
    const QString broken = address + QLatin1Char('!');
    check(NetUtils::checkInternetAdress(address) && !NetUtils::checkInternetAdress(broken),
          "hostile addresses");
    for (auto _ : state) {
        benchmark::DoNotOptimize(NetUtils::checkInternetAdress(address));
        benchmark::DoNotOptimize(NetUtils::checkInternetAdress(broken));
    }
}

// Growth

const int growthSize = 1 << 20;

/// Runs \a operation on a text of \a c repeated as many million times as \a state says.
template <typename Operation>
void runOnText(benchmark::State& state, QChar c, Operation operation)
{
    const QString text(int(state.range(0)) * growthSize, c);
    for (auto _ : state)
        operation(text);
}

void escapeManyQuotes(benchmark::State& state)
{
    runOnText(state, QLatin1Char('"'), [](const QString& text) {
        benchmark::DoNotOptimize(StringUtils::escapeQuotes(text));
    });
}

void replaceManyLineBreaks(benchmark::State& state)
{
    runOnText(state, QLatin1Char('\n'), [](QString text) {
        HTMLUtils::htmlBRreplace(text);
        benchmark::DoNotOptimize(text);
    });
}

void indentManyLines(benchmark::State& state)
{
    runOnText(state, QLatin1Char('\n'), [](const QString& text) {
        QString result;
        TextStreamUTF8 stream(&result);
        stream.incrementIndent();
        stream << text;
        benchmark::DoNotOptimize(result);
    });
}

void normalizeManyAccents(benchmark::State& state)
{
    runOnText(state, QChar(0xe9), [](const QString& text) {
        benchmark::DoNotOptimize(FileUtils::normalizeFilename(text));
    });
}

BENCHMARK(escapeManyQuotes)->Name("escapeQuotes")->Arg(8)->Arg(16);
BENCHMARK(replaceManyLineBreaks)->Name("htmlBRreplace")->Arg(8)->Arg(16);
BENCHMARK(indentManyLines)->Name("TextStreamUTF8")->Arg(8)->Arg(16);
BENCHMARK(normalizeManyAccents)->Name("normalizeFilename")->Arg(1)->Arg(2);
BENCHMARK(removeAccentsOurs)->Name("removeAccents");
BENCHMARK_CAPTURE(removeAccentsIcu, latinToAscii, latinToAscii)->Name("ICU Latin-ASCII");
BENCHMARK_CAPTURE(removeAccentsIcu, marksAway, marksAway)->Name("ICU NFD, marks, NFC");
BENCHMARK(searchKeyOurs)->Name("normalizeTextForSearch");
BENCHMARK(searchKeyExpression)->Name("QRegularExpression");
BENCHMARK(compareVersions<compareOurs>)->Name("compareVersion");
BENCHMARK(compareVersions<compareVersionNumbers>)->Name("QVersionNumber");
BENCHMARK(formatDurations<durationOurs>)->Name("formatDurationFromMSec");
BENCHMARK(formatDurations<durationWords>)->Name("msecToString");
BENCHMARK(formatDurations<durationKFormat>)->Name("KFormat");
BENCHMARK(formatDurations<durationKFormatSpelled>)->Name("KFormat, spelled out");
BENCHMARK(emitCode<php>)->Name("PHP");
BENCHMARK(emitCode<javascript>)->Name("JavaScript");
BENCHMARK(emitCode<jsonOfReadyDocument>)->Name("toJson");
BENCHMARK(emitCode<jsonFromVariant>)->Name("fromVariant, toJson");
BENCHMARK(hostileEmail)->Name("hostile e-mail addresses");
BENCHMARK(hostileWebAddress)->Name("hostile web addresses");

} // namespace

int main(int argc, char** argv)
{
    checkTexts();
    checkVersions();
    checkDurations();
    checkCode();
    return runBenchmarks(argc, argv);
}
