// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Sample.h"

#include <DrawUtils.h>

#include <QFile>
#include <QFontDatabase>
#include <QFontInfo>
#include <QHBoxLayout>
#include <QRegularExpression>
#include <QVBoxLayout>

namespace {

// Minimum sizes; both grow with their content.
const int sampleWidth = 400;
const int codeWidth = 560;

QString span(const char* color, const QString& text)
{
    return QStringLiteral("<span style=\"color:%1\">%2</span>")
        .arg(QLatin1String(color), text.toHtmlEscaped());
}

/// \a code as HTML, with comments, strings, class names and numbers coloured.
QString highlighted(const QString& code)
{
    static const QRegularExpression tokens(QLatin1String(
        R"re((//[^\n]*)|("(?:[^"\\]|\\.)*")|(\b[A-Z]\w*)|(\b\d[\w.]*))re"));
    const char* const colors[] = {"#9aa4b2", "#b5e0a0", "#8fc7ff", "#f2c078"};

    QString html;
    int end = 0;
    QRegularExpressionMatchIterator it = tokens.globalMatch(code);
    while (it.hasNext()) {
        const QRegularExpressionMatch token = it.next();
        html += code.mid(end, token.capturedStart() - end).toHtmlEscaped();
        html += span(colors[token.lastCapturedIndex() - 1], token.captured());
        end = int(token.capturedEnd());
    }
    html += code.mid(end).toHtmlEscaped();
    return QStringLiteral("<div style=\"white-space:pre\">%1</div>").arg(html);
}

QFont codeFont()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (!QFontInfo(font).fixedPitch()) {
        // A platform without a desktop has no such font.
        font.setFamily(QStringLiteral("monospace"));
        font.setStyleHint(QFont::Monospace);
    }
    return font;
}

} // namespace

CodePanel::CodePanel(const QString& code)
    : mCode(code)
{
    setFont(codeFont());
    DrawUtils::setWidgetTextPixelSize(this, 12);
    DrawUtils::setWidgetColorBackground(this, QColor(0x22, 0x27, 0x2e));
    DrawUtils::setWidgetColorText(this, QColor(0xe1, 0xe5, 0xea));
    setTextFormat(Qt::RichText);
    setText(highlighted(code));
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    setMargin(9);
    setAccessibleName(code);
}

QSize CodePanel::sizeHint() const
{
    return QLabel::sizeHint().expandedTo(QSize(codeWidth, 0));
}

QSize CodePanel::minimumSizeHint() const
{
    return sizeHint();
}

Sample::Sample(const QString& title, QWidget* sample, const QString& code)
    : mLeft(new QWidget)
{
    auto* heading = new QLabel(title);
    DrawUtils::setWidgetTextBold(heading, true);

    auto* leftLayout = new QVBoxLayout(mLeft);
    leftLayout->setContentsMargins(0, 0, 0, 0);
    leftLayout->addWidget(sample);
    leftLayout->addStretch();

    auto* beside = new QHBoxLayout;
    beside->setSpacing(16);
    beside->addWidget(mLeft, 0, Qt::AlignTop);
    beside->addWidget(new CodePanel(code), 1, Qt::AlignTop);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(5);
    layout->addWidget(heading);
    layout->addLayout(beside);
}

int Sample::neededWidth() const
{
    return qMax(sampleWidth, mLeft->layout()->sizeHint().width());
}

void Sample::setSampleWidth(int width)
{
    mLeft->setFixedWidth(width);
}

QString Sample::codeFromSource(const QString& file, const QString& name)
{
    QFile source(QStringLiteral(":/widget-gallery/") + file);
    if (!source.open(QIODevice::ReadOnly))
        return QString();
    const QString marker = QStringLiteral("//! [%1]").arg(name);
    QStringList code;
    bool inside = false;
    int indentation = -1;
    const QStringList lines =
        QString::fromUtf8(source.readAll()).split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        const QString trimmed = line.trimmed();
        if (trimmed == marker) {
            inside = !inside;
        } else if (inside) {
            code.append(line);
            const int blanks = int(line.indexOf(trimmed));
            if (!trimmed.isEmpty() && (indentation < 0 || blanks < indentation))
                indentation = blanks;
        }
    }
    for (QString& line : code)
        line.remove(0, qMax(0, indentation));
    return code.join(QLatin1Char('\n'));
}
