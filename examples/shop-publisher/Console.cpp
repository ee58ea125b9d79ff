// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Console.h"

#include <QJsonDocument>
#include <QTextCodec>
#include <QTextStream>

#include <cstdio>

#ifdef Q_OS_WIN
#include <io.h>
#include <windows.h>
#else
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace {

/// The number of columns that a character takes on a terminal.
int columnsOf(uint character)
{
    const QChar::Category category = QChar::category(character);
    if (category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing)
        return 0;
    const struct
    {
        uint first;
        uint last;
    } wide[] = {{0x1100, 0x115f},   {0x2e80, 0xa4cf},  {0xac00, 0xd7a3}, {0xf900, 0xfaff},
                {0xfe30, 0xfe6f},   {0xff00, 0xff60},  {0xffe0, 0xffe6}, {0x1f300, 0x1f64f},
                {0x1f680, 0x1faff}, {0x20000, 0x3fffd}};
    for (const auto& range : wide) {
        if (character >= range.first && character <= range.last)
            return 2;
    }
    return 1;
}

/// \a text cut or padded to exactly \a columns, so that it covers what was there before.
QString fitted(const QString& text, int columns)
{
    QString result;
    int used = 0;
    const QVector<uint> characters = text.toUcs4();
    for (const uint character : characters) {
        const int width = columnsOf(character);
        if (used + width > columns)
            break;
        result += QString::fromUcs4(&character, 1);
        used += width;
    }
    return result + QString(columns - used, QLatin1Char(' '));
}

int terminalColumns()
{
#ifdef Q_OS_WIN
    CONSOLE_SCREEN_BUFFER_INFO screen = {};
    if (GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &screen))
        return screen.srWindow.Right - screen.srWindow.Left + 1;
#else
    winsize size = {};
    if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col;
#endif
    return 80;
}

bool isTerminal()
{
#ifdef Q_OS_WIN
    return ::_isatty(::_fileno(stdout)) != 0;
#else
    return ::isatty(STDOUT_FILENO) == 1;
#endif
}

/// \a text with unprintable characters escaped: a line feed as "\u000a".
QString printable(const QString& text)
{
    static const QVector<QChar::Category> written{
        QChar::Other_Control, QChar::Separator_Line, QChar::Separator_Paragraph,
        QChar::Other_Format}; // among the last those that turn the writing direction
    QString result;
    for (const QChar character : text)
        result += written.contains(character.category())
            ? QStringLiteral("\\u%1").arg(int(character.unicode()), 4, 16, QLatin1Char('0'))
            : QString(character);
    return result;
}

void printObject(const char* event, QJsonObject facts)
{
    facts.insert(QStringLiteral("event"), QLatin1String(event));
    const QByteArray line = QJsonDocument(facts).toJson(QJsonDocument::Compact);
    Console::print(QString::fromUtf8(line) + QLatin1Char('\n'));
}

} // namespace

Console::Console(Style style, bool verbose)
    : mStyle(style)
    , mVerbose(verbose)
    , mTerminal(style == ForPeople && isTerminal())
{ }

void Console::progress(int done, int total, const QString& step)
{
    const bool stepIsDone = done > mDone;
    mDone = done;
    mTotal = total;
    if (mTerminal)
        drawBar(step);
    else if (stepIsDone)
        say("progress", {{QStringLiteral("done"), done}, {QStringLiteral("total"), total}},
            mStyle == ForPrograms ? step : QStringLiteral("[%1] %2").arg(counter(), step));
}

void Console::end() const
{
    // Blank the whole line, so that nothing of the bar remains after a shorter result.
    if (mTerminal && mTotal > 0)
        print(QLatin1Char('\r') + fitted(QString(), terminalColumns() - 1) + QLatin1Char('\r'));
}

void Console::say(const char* event, const QJsonObject& facts, const QString& text) const
{
    if (mStyle == ForPeople) {
        print(printable(text) + QLatin1Char('\n'));
    } else if (mStyle == ForPrograms) {
        QJsonObject object = facts;
        object.insert(QStringLiteral("text"), text);
        printObject(event, object);
    }
}

void Console::report(const QVector<ErrorableCode>& failures) const
{
    QString text;
    for (const ErrorableCode& failure : failures) {
        if (mStyle == ForPrograms) {
            printObject("failure",
                        {{QStringLiteral("kind"), failure.context},
                         {QStringLiteral("code"), failure.mEnumText},
                         {QStringLiteral("text"), failure.details}});
            continue;
        }
        // A name that contains a line break must not forge a step.
        ErrorableCode shown = failure;
        shown.details = printable(failure.details);
        text += QLatin1String("  ") + shown.details + QLatin1Char('\n');
        if (mVerbose)
            text += QLatin1String("      ")
                + shown.toString(true).replace(QLatin1Char('\n'), QLatin1String("\n      "))
                + QLatin1Char('\n');
    }
    if (!text.isEmpty())
        printError(tr("%n failure(s):", nullptr, int(failures.size())) + QLatin1Char('\n') + text);
}

void Console::complain(const char* event, const QString& text, const QString& hint) const
{
    if (mStyle == ForPrograms) {
        printObject(event, {{QStringLiteral("text"), text}});
        return;
    }
    QString shown;
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (const QString& line : lines)
        shown += (shown.isEmpty() ? QLatin1String("shop-publisher: ") : QLatin1String("  "))
            + printable(line) + QLatin1Char('\n');
    printError(shown + (hint.isEmpty() ? hint : hint + QLatin1Char('\n')));
}

void Console::print(const QString& text)
{
    QTextStream(stdout) << text;
}

void Console::printError(const QString& text)
{
    QTextStream(stderr) << text;
}

QString Console::counter() const
{
    const QString total = QString::number(mTotal);
    return QStringLiteral("%1/%2").arg(mDone, int(total.size())).arg(total);
}

void Console::drawBar(const QString& step) const
{
    const int barColumns = 24;
    const int filled = mTotal > 0 ? barColumns * mDone / mTotal : barColumns;
    const QString blocks = QStringLiteral("\u2588\u2591");
    const bool showsBlocks = QTextCodec::codecForLocale()->canEncode(blocks);
    const QString signs = showsBlocks ? blocks : QStringLiteral("#.");
    const QString line = QString(filled, signs.at(0)) + QString(barColumns - filled, signs.at(1))
        + QLatin1Char(' ') + counter() + QLatin1String("  ") + printable(step);
    // Three columns short of the edge, so that the terminal has room for its "^C": a line that
    // reaches the edge wraps.
    print(QLatin1Char('\r') + fitted(line, qMax(1, terminalColumns() - 3)));
}
