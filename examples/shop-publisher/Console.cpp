// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Console.h"

#include <QCoreApplication>
#include <QTextCodec>
#include <QTextStream>

#include <cstdio>

#include <sys/ioctl.h>
#include <unistd.h>

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("Console", text);
}

/// How many columns a character takes on a terminal.
int columnsOf(uint character)
{
    switch (QChar::category(character)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
        return 0;
    default:
        break;
    }
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

/// \a text cut and filled to exactly \a columns, so that it covers what was there before.
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
    winsize size = {};
    if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col;
    return 80;
}

bool terminalShows(QChar character)
{
    return QTextCodec::codecForLocale()->canEncode(character);
}

} // namespace

Console::Console(bool quiet)
    : mQuiet(quiet)
    , mTerminal(::isatty(STDOUT_FILENO) == 1)
{ }

void Console::begin(int total)
{
    mTotal = total;
    mDone = 0;
}

void Console::started(const QString& name)
{
    if (mTerminal && !mQuiet)
        drawBar(name);
}

void Console::finished(const QString& name, const QString& reason)
{
    ++mDone;
    if (mQuiet)
        return;
    if (mTerminal) {
        drawBar(name);
        return;
    }
    const QString total = QString::number(mTotal);
    print(QStringLiteral("[%1/%2] %3%4\n")
              .arg(mDone, total.size())
              .arg(total, printable(name),
                   reason.isEmpty() ? QString() : tr(": FAILED, ") + printable(reason)));
}

void Console::end()
{
    // The whole line is blanked, so that nothing of the bar stands behind a shorter result.
    if (mTerminal && !mQuiet && mTotal > 0)
        print(QLatin1Char('\r') + fitted(QString(), terminalColumns() - 1) + QLatin1Char('\r'));
}

void Console::say(const QString& text)
{
    if (!mQuiet)
        print(printable(text) + QLatin1Char('\n'));
}

void Console::report(const Failures& failures)
{
    if (failures.isEmpty())
        return;
    QString text =
        failures.size() == 1 ? tr("1 failure:\n") : tr("%1 failures:\n").arg(failures.size());
    for (const Failure& failure : failures)
        text +=
            QStringLiteral("  %1: %2\n").arg(printable(failure.subject), printable(failure.reason));
    printError(text);
}

QString Console::printable(const QString& text)
{
    QString result;
    for (const QChar character : text) {
        switch (character.category()) {
        case QChar::Other_Control:
        case QChar::Other_Format: // among them those that turn the writing direction
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
            result +=
                QStringLiteral("\\u%1").arg(int(character.unicode()), 4, 16, QLatin1Char('0'));
            break;
        default:
            result += character;
        }
    }
    return result;
}

void Console::print(const QString& text)
{
    QTextStream stream(stdout);
    stream << text;
}

void Console::printError(const QString& text)
{
    QTextStream stream(stderr);
    stream << text;
}

void Console::drawBar(const QString& name)
{
    const int barColumns = 24;
    const int filled = mTotal > 0 ? barColumns * mDone / mTotal : barColumns;
    const bool blocks = terminalShows(QChar(0x2588)) && terminalShows(QChar(0x2591));
    const QString total = QString::number(mTotal);
    const QString line = QString(filled, blocks ? QChar(0x2588) : QLatin1Char('#'))
        + QString(barColumns - filled, blocks ? QChar(0x2591) : QLatin1Char('.'))
        + QStringLiteral(" %1/%2  %3").arg(mDone, total.size()).arg(total, printable(name));
    // One column short of the edge: a line that reaches it would wrap.
    print(QLatin1Char('\r') + fitted(line, terminalColumns() - 1));
}
