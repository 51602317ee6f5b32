// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/popup/ChangesView.h"

#include "quillet/popup/PopupStyle.h"
#include "quillet/widgets/Localisation.h"

#include <QMouseEvent>

ChangesView::ChangesView(QWidget *parent)
    : QTextEdit(parent)
{
    setReadOnly(true);
    setAcceptRichText(false);
    setFrameShape(QFrame::NoFrame);
    setTabChangesFocus(true);
    setMouseTracking(true);
    setAccessibleName(localized("What has changed"));
    QFont textFont = font();
    textFont.setPixelSize(PopupStyle::resultTextSize);
    setFont(textFont);
    PopupStyle::alignByParagraph(*document());
}

void ChangesView::showTexts(const QString &before, const QString &after,
                            const QList<platform::WordChange> &changes)
{
    clear();
    m_spans.clear();
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    const QTextCharFormat plain;
    QTextCharFormat gone;
    gone.setFontStrikeOut(true);
    gone.setForeground(PopupStyle::goneColor(palette()));
    const QTextCharFormat come = PopupStyle::changeFormat(palette());

    qsizetype end = 0;
    for (const platform::WordChange &change : changes) {
        cursor.insertText(after.sliced(end, change.newFrom - end), plain);
        const int from = cursor.position();
        cursor.insertText(before.sliced(change.oldFrom, change.oldLength), gone);
        cursor.insertText(after.sliced(change.newFrom, change.newLength), come);
        m_spans.append({from, cursor.position(), change});
        end = change.newFrom + change.newLength;
    }
    cursor.insertText(after.sliced(end), plain);
    cursor.endEditBlock();
    moveCursor(QTextCursor::Start);
}

const platform::WordChange *ChangesView::changeAt(const QPoint &point) const
{
    const int place = cursorForPosition(point).position();
    for (const Span &span : m_spans) {
        if (span.from <= place && place <= span.to)
            return &span.change;
    }
    return nullptr;
}

void ChangesView::mouseMoveEvent(QMouseEvent *event)
{
    const bool isAtChange = changeAt(event->position().toPoint()) != nullptr;
    viewport()->setCursor(isAtChange ? Qt::PointingHandCursor : Qt::IBeamCursor);
    viewport()->setToolTip(isAtChange ? localized("Click to take this change back") : QString());
    QTextEdit::mouseMoveEvent(event);
}

void ChangesView::mouseReleaseEvent(QMouseEvent *event)
{
    QTextEdit::mouseReleaseEvent(event);
    if (event->button() != Qt::LeftButton || textCursor().hasSelection())
        return;
    if (const platform::WordChange *change = changeAt(event->position().toPoint()))
        Q_EMIT takeBackWanted(platform::WordChange(*change));
}
