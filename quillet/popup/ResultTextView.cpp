// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/popup/ResultTextView.h"

#include "quillet/popup/PopupStyle.h"

#include <QMimeData>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextOption>

namespace
{

/// A line longer than longLineLength is laid out in pieces: the time to lay out a block grows
/// faster than its length, and every edit lays out its whole block again.
constexpr qsizetype longLineLength = 8000;
constexpr qsizetype maxPieceLength = 2000;

/// More marks than this cost more time than they help.
constexpr qsizetype maxMarks = 2000;

/// User state of a block that continues the line of the block before it.
constexpr int continuesLine = 1;

/// QTextDocument keeps these two for itself and would take them for its own structure.
bool isReserved(QChar c)
{
    return c.unicode() == 0xFDD0 || c.unicode() == 0xFDD1;
}

/// Where to cut a long line at about `maxPieceLength` characters: after a space where there is one,
/// and never inside a surrogate pair.
qsizetype pieceEnd(QStringView line, qsizetype from)
{
    const qsizetype limit = from + maxPieceLength;
    if (limit >= line.size())
        return line.size();
    const qsizetype space = line.first(limit).lastIndexOf(u' ');
    if (space > from)
        return space + 1;
    return line.at(limit - 1).isHighSurrogate() ? limit - 1 : limit;
}

/// `text` without what a document would take for something else: a carriage return or a paragraph
/// separator would start a block of its own. What the user does not edit is given back from the
/// original in any case.
QString displayable(QString text)
{
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    for (QChar &c : text) {
        if (c == u'\r' || c == QChar::ParagraphSeparator)
            c = QChar::LineSeparator;
        else if (isReserved(c))
            c = QChar::ReplacementCharacter;
    }
    return text;
}

} // namespace

ResultTextView::ResultTextView(QWidget *parent)
    : QPlainTextEdit(parent)
{
    QFont textFont = font();
    textFont.setPixelSize(PopupStyle::resultTextSize);
    setFont(textFont);
    setFrameShape(QFrame::NoFrame);
    setTabChangesFocus(true);
    PopupStyle::alignByParagraph(*document());
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
        if (line.size() <= longLineLength) {
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
    setPlainText(displayable(shown));
    for (qsizetype number : continued)
        document()->findBlockByNumber(static_cast<int>(number)).setUserState(continuesLine);
    m_original = text;
    document()->setModified(false);
}

void ResultTextView::append(const QString &piece)
{
    const bool wasModified = document()->isModified();
    QScrollBar *bar = verticalScrollBar();
    const int place = bar->value();
    const bool follows = place == bar->maximum() && !wasModified;
    QTextCursor caret = textCursor();
    const int anchor = caret.anchor();
    const int position = caret.position();

    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    // Each piece lays out its whole line again, so a long line continues in a new block.
    const int length = end.block().length();
    if (length > maxPieceLength && !end.block().text().at(length - 2).isHighSurrogate()) {
        end.insertBlock();
        end.block().setUserState(continuesLine);
    }
    end.insertText(displayable(piece));
    m_original += piece;
    document()->setModified(wasModified);

    // What is inserted at the caret takes it along; it stays where the user has it.
    caret.setPosition(anchor);
    caret.setPosition(position, QTextCursor::KeepAnchor);
    setTextCursor(caret);
    bar->setValue(follows ? bar->maximum() : place);
}

bool ResultTextView::showsCharacterByCharacter() const
{
    return document()->characterCount() - 1 == string().size();
}

void ResultTextView::markChanges(const QList<platform::WordChange> &changes)
{
    QList<QTextEdit::ExtraSelection> marks;
    const QTextCharFormat format = PopupStyle::changeFormat(palette());
    for (const platform::WordChange &change : changes) {
        if (change.newLength == 0 || marks.size() >= maxMarks)
            continue;
        QTextEdit::ExtraSelection mark;
        mark.cursor = rangeCursor(change.newFrom, change.newLength);
        mark.format = format;
        marks.append(mark);
    }
    setExtraSelections(marks);
}

void ResultTextView::replaceRange(qsizetype from, qsizetype length, const QString &text)
{
    rangeCursor(from, length).insertText(text);
}

QTextCursor ResultTextView::rangeCursor(qsizetype from, qsizetype length) const
{
    QTextCursor cursor(document());
    cursor.setPosition(static_cast<int>(from));
    cursor.setPosition(static_cast<int>(from + length), QTextCursor::KeepAnchor);
    return cursor;
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
        if (!first && block.userState() != continuesLine)
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
