// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/text/WordChanges.h"

#include <QElapsedTimer>
#include <QFrame>
#include <QString>
#include <QTimer>

#include <optional>

class ChangesView;
class ProgressLine;
class QToolButton;
class ResultTextView;

/// The frame that holds the answer of one request. It knows what has come of the request, and so
/// what may be written into the input; and it shows what the answer changes. Main thread.
class ResultArea : public QFrame
{
    Q_OBJECT

public:
    /// `command` is the accessible name of the text.
    ResultArea(const QString &command, QWidget *parent);

    /// The text that the request works on, with which the answer is compared.
    void setSource(const QString &text);

    /// A piece of an answer that is still coming. `startsOver`: in place of what has come so far.
    void appendPiece(const QString &piece, bool startsOver = false);

    /// The whole answer has come. One that begins with "ⓘ " is a note of the backend: it is shown
    /// as it stands and is never written. `writer` says who wrote it, where that is known.
    void showAnswer(const QString &answer, const QString &writer = {});

    /// No answer comes. `sentence` says why, and what the user can do.
    void showFailure(const QString &sentence);

    /// Whether a part of the answer is here, and not yet the whole.
    bool isGrowing() const { return m_isGrowing; }

    /// What "apply" writes; nothing where that would put nothing, a note, or a part of an answer in
    /// the place of the user's text. Empty only where the user has emptied an answer.
    std::optional<QString> textToApply() const;

    /// Shows the former text and the answer as one, or the answer alone.
    void setShowsChanges(bool shows);
    bool showsChanges() const;

    ResultTextView *textView() const { return m_textView; }
    ChangesView *changesView() const { return m_changesView; }
    const ProgressLine *progressLine() const { return m_line; }

Q_SIGNALS:
    /// The user clicked to edit, so the area needs the keyboard.
    void keyboardWanted();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    bool canCompare() const;
    void compare();
    void takeBack(const platform::WordChange &change);
    void placeToggle();

    ResultTextView *m_textView;
    ChangesView *m_changesView;
    QToolButton *m_toggle;
    ProgressLine *m_line;
    QTimer m_compareLater;
    QString m_source;
    /// The complete answer.
    std::optional<QString> m_answer;
    /// Since the first piece of the answer.
    QElapsedTimer m_growth;
    bool m_isGrowing = false;
};
