// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/popup/ResultTextView.h"

#include <QMimeData>
#include <QMouseEvent>
#include <QTextBlock>

namespace
{

constexpr int TextSize = 15;

/// A line longer than LongLine is laid out in pieces: the time to lay out a block grows faster than
/// its length, and every edit lays out its whole block again.
constexpr qsizetype LongLine = 8000;
constexpr qsizetype Piece = 2000;

/// User state of a block that goes on with the line of the block before it.
constexpr int Continues = 1;

/// QTextDocument keeps these two for itself and would take them for its own structure.
bool isReserved(QChar c)
{
    return c.unicode() == 0xFDD0 || c.unicode() == 0xFDD1;
}

/// Where to cut a long line at about `Piece` characters: after a space where there is one, and
/// never inside a surrogate pair.
qsizetype pieceEnd(QStringView line, qsizetype from)
{
    const qsizetype limit = from + Piece;
    if (limit >= line.size())
        return line.size();
    const qsizetype space = line.first(limit).lastIndexOf(u' ');
    if (space > from)
        return space + 1;
    return line.at(limit - 1).isHighSurrogate() ? limit - 1 : limit;
}

} // namespace

ResultTextView::ResultTextView(QWidget *parent)
    : QPlainTextEdit(parent)
{
    QFont textFont = font();
    textFont.setPixelSize(TextSize);
    setFont(textFont);
    setFrameShape(QFrame::NoFrame);
    setTabChangesFocus(true);
}

void ResultTextView::setString(const QString &text)
{
    QString shown;
    shown.reserve(text.size());
    QList<qsizetype> continued;
    qsizetype blocks = 0;
    const auto lines = QStringView(text).split(u'\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QStringView line = lines[i];
        if (i > 0) {
            shown += u'\n';
            ++blocks;
        }
        if (line.size() <= LongLine) {
            shown += line;
            continue;
        }
        for (qsizetype from = 0; from < line.size();) {
            const qsizetype to = pieceEnd(line, from);
            if (from > 0) {
                shown += u'\n';
                continued.append(++blocks);
            }
            shown += line.sliced(from, to - from);
            from = to;
        }
    }
    // A carriage return or a paragraph separator would start a block of its own; what the user
    // does not edit is given back from the original in any case.
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    for (QChar &c : shown) {
        if (c == u'\r' || c == QChar::ParagraphSeparator)
            c = QChar::LineSeparator;
        else if (isReserved(c))
            c = QChar::ReplacementCharacter;
    }

    setPlainText(shown);
    for (qsizetype number : continued)
        document()->findBlockByNumber(static_cast<int>(number)).setUserState(Continues);
    m_original = text;
    document()->setModified(false);
}

QString ResultTextView::string() const
{
    if (!document()->isModified())
        return m_original;
    QTextCursor all(document());
    all.select(QTextCursor::Document);
    return joined(all);
}

/// QTextDocument's own conversion turns no-break spaces into spaces; this keeps every character.
QString ResultTextView::joined(const QTextCursor &selection) const
{
    QString text;
    const int start = selection.selectionStart();
    const int end = selection.selectionEnd();
    QTextBlock block = document()->findBlock(start);
    for (bool first = true; block.isValid() && block.position() <= end; block = block.next()) {
        if (!first && block.userState() != Continues)
            text += u'\n';
        first = false;
        const int from = std::max(start - block.position(), 0);
        const int to = std::min(end - block.position(), block.length() - 1);
        text += block.text().sliced(from, std::max(to - from, 0));
    }
    return text;
}

void ResultTextView::mousePressEvent(QMouseEvent *event)
{
    Q_EMIT keyboardWanted();
    QPlainTextEdit::mousePressEvent(event);
}

QMimeData *ResultTextView::createMimeDataFromSelection() const
{
    auto *mime = new QMimeData;
    mime->setText(joined(textCursor()));
    return mime;
}

void ResultTextView::insertFromMimeData(const QMimeData *source)
{
    textCursor().insertText(source->text());
    ensureCursorVisible();
}
