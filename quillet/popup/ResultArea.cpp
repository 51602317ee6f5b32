// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/popup/ResultArea.h"

#include "commands/Note.h"
#include "quillet/popup/ChangesView.h"
#include "quillet/popup/PopupStyle.h"
#include "quillet/popup/ProgressLine.h"
#include "quillet/popup/ResultTextView.h"
#include "quillet/widgets/Localisation.h"

#include <QScrollBar>
#include <QShortcut>
#include <QToolButton>
#include <QVBoxLayout>

#include <chrono>

using namespace std::chrono_literals;

namespace
{

/// Height of the progress line, and its distance from the rounded corners; points.
constexpr int lineHeight = 2;
constexpr int lineInset = 8;
/// Distance of the small control from the frame's edges, leaving the scroll bar free; points.
constexpr int toggleInset = 12;

/// After an edit, the comparison waits until the user pauses.
constexpr auto compareDelay = 200ms;
/// An answer that has grown for less than this was not read while it grew.
constexpr std::chrono::milliseconds timeToReadAlong = 500ms;
/// Longer texts are not compared.
constexpr qsizetype maxComparedLength = 200'000;
/// Where less of the words is kept, nearly everything would be tinted.
constexpr double minLikenessForTint = 0.3;

} // namespace

ResultArea::ResultArea(const QString &command, QWidget *parent)
    : QFrame(parent)
    , m_textView(new ResultTextView)
    , m_changesView(new ChangesView)
    , m_toggle(new QToolButton(this))
    , m_line(new ProgressLine(this))
{
    setObjectName(QStringLiteral("resultFrame"));
    setAccessibleName(localized("Result"));
    setStyleSheet(QStringLiteral("#resultFrame { background: palette(base);"
                                 " border: 1px solid lightgray; border-radius: 8px; }"
                                 "QToolButton { background: palette(base); color: palette(text);"
                                 " border: 1px solid #86868c; border-radius: 9px; padding: 1px 8px;"
                                 " font-size: 11px; }"
                                 "QToolButton:checked, QToolButton:focus { border-color: %1; }"
                                 "QToolButton:checked { background: #6c3df5; color: white; }")
                      .arg(PopupStyle::accentOn(palette()).name()) +
                  PopupStyle::thinScrollBar(palette()));
    m_textView->setAccessibleName(command);
    connect(m_textView, &ResultTextView::keyboardWanted, this, &ResultArea::keyboardWanted);
    connect(m_changesView, &ChangesView::takeBackWanted, this, &ResultArea::takeBack);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(3, 3, 3, 3);
    layout->addWidget(m_textView);
    layout->addWidget(m_changesView);
    m_changesView->hide();

    m_toggle->setText(localized("Changes"));
    m_toggle->setToolTip(localized("Show what has changed (Ctrl+D)"));
    m_toggle->setCheckable(true);
    m_toggle->hide();
    connect(m_toggle, &QToolButton::toggled, this, &ResultArea::setShowsChanges);
    auto *shortcut = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_D), this);
    connect(shortcut, &QShortcut::activated, this, [this] {
        if (canCompare())
            m_toggle->toggle();
    });

    m_compareLater.setSingleShot(true);
    m_compareLater.setInterval(compareDelay);
    connect(&m_compareLater, &QTimer::timeout, this, &ResultArea::compare);
    connect(m_textView, &ResultTextView::textChanged, this, [this] { m_compareLater.start(); });
    m_line->setState(ProgressLine::State::Running);
}

void ResultArea::setSource(const QString &text)
{
    m_source = text;
}

void ResultArea::appendPiece(const QString &piece, bool startsOver)
{
    if (startsOver && !m_textView->document()->isModified())
        m_textView->setString({});
    if (!m_isGrowing)
        m_growth.start();
    m_isGrowing = true;
    m_textView->append(piece);
}

void ResultArea::showAnswer(const QString &answer, const QString &writer)
{
    // What the user has edited while it grew stays as it is.
    const bool isEditedWhileGrowing = m_isGrowing && m_textView->document()->isModified();
    const bool cameAtOnce = m_isGrowing && m_growth.elapsed() < timeToReadAlong.count();
    m_isGrowing = false;
    m_answer = answer;
    if (!isEditedWhileGrowing && (m_textView->string() != answer || answer.isEmpty()))
        m_textView->setString(answer);
    // The view has followed the answer's end; what could not be read meanwhile is read from its
    // beginning.
    if (cameAtOnce && !isEditedWhileGrowing)
        m_textView->verticalScrollBar()->setValue(0);
    m_textView->setReadOnly(isNote(answer));
    m_line->setState(ProgressLine::State::Idle);
    setToolTip(writer.isEmpty() ? QString() : localized("Written by %1").arg(writer));
    m_textView->setAccessibleDescription({});
    compare();
}

void ResultArea::showFailure(const QString &sentence)
{
    m_isGrowing = false;
    m_line->setState(ProgressLine::State::Stopped);
    setToolTip(sentence);
    m_textView->setAccessibleDescription(sentence);
}

std::optional<QString> ResultArea::textToApply() const
{
    if (m_isGrowing || (m_answer && isNote(*m_answer)))
        return std::nullopt;
    QString text = m_textView->string();
    // Without an answer, a part of one may be here; it counts only where the user has edited it.
    if (!m_answer && !m_textView->document()->isModified())
        return std::nullopt;
    const bool hasEmptiedAnswer = m_answer && !m_answer->isEmpty();
    if (text.isEmpty() && !hasEmptiedAnswer)
        return std::nullopt;
    return text;
}

bool ResultArea::canCompare() const
{
    return m_answer && !isNote(*m_answer) && !m_source.isEmpty() &&
           m_source.size() <= maxComparedLength &&
           m_textView->document()->characterCount() <= maxComparedLength &&
           m_textView->showsCharacterByCharacter();
}

void ResultArea::compare()
{
    m_compareLater.stop();
    if (!canCompare()) {
        m_textView->markChanges({});
        m_toggle->setChecked(false);
        m_toggle->hide();
        return;
    }
    const QString text = m_textView->string();
    const QList<platform::WordChange> changes = platform::wordChanges(m_source, text);
    const bool isRewriting = platform::likeness(m_source, text) >= minLikenessForTint;
    m_textView->markChanges(isRewriting ? changes : QList<platform::WordChange>());
    m_textView->setAccessibleDescription(
        changes.isEmpty() ? localized("Nothing has changed.")
                          : localized("%1 changes. Ctrl+D shows them.").arg(changes.size()));
    if (showsChanges())
        m_changesView->showTexts(m_source, text, changes);
    m_toggle->setVisible(!changes.isEmpty() || m_toggle->isChecked());
    placeToggle();
}

void ResultArea::setShowsChanges(bool shows)
{
    if (shows && !canCompare())
        shows = false;
    m_toggle->setChecked(shows);
    m_textView->setVisible(!shows);
    m_changesView->setVisible(shows);
    if (shows)
        compare();
    (shows ? static_cast<QWidget *>(m_changesView) : m_textView)->setFocus();
    m_toggle->raise();
}

bool ResultArea::showsChanges() const
{
    return !m_changesView->isHidden();
}

void ResultArea::takeBack(const platform::WordChange &change)
{
    if (!canCompare())
        return;
    m_textView->replaceRange(change.newFrom, change.newLength,
                             m_source.sliced(change.oldFrom, change.oldLength));
    const int place = m_changesView->textCursor().position();
    compare();
    QTextCursor cursor = m_changesView->textCursor();
    cursor.setPosition(std::min(place, m_changesView->document()->characterCount() - 1));
    m_changesView->setTextCursor(cursor);
}

void ResultArea::placeToggle()
{
    m_toggle->adjustSize();
    m_toggle->move(width() - m_toggle->width() - toggleInset,
                   height() - m_toggle->height() - toggleInset / 2);
    m_toggle->raise();
}

void ResultArea::resizeEvent(QResizeEvent *event)
{
    QFrame::resizeEvent(event);
    m_line->setGeometry(lineInset, 0, width() - 2 * lineInset, lineHeight);
    m_line->raise();
    placeToggle();
}
