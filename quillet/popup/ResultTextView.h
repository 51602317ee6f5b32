// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/text/WordChanges.h"

#include <QPlainTextEdit>

/// The editable answer. Takes any text exactly as it is and gives it back exactly, edited or not,
/// and stays quick with an answer of many megabytes, also when that is a single line.
class ResultTextView : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit ResultTextView(QWidget *parent = nullptr);

    /// Replaces what is shown, and forgets edits.
    void setString(const QString &text);

    /// Adds a piece of an answer that is still coming. It is no edit of the user's. The view
    /// scrolls along unless the user has scrolled or edited.
    void append(const QString &piece);

    /// Whether the places in string() are those in the document: not for texts that are cut, or
    /// shown with other line breaks than they have.
    bool showsCharacterByCharacter() const;

    /// Tints what `changes` have put into the text; only while showsCharacterByCharacter().
    void markChanges(const QList<platform::WordChange> &changes);

    /// Puts `text` in the place of a range of string(), as an edit of the user's; only while
    /// showsCharacterByCharacter().
    void replaceRange(qsizetype from, qsizetype length, const QString &text);

    /// The text as it stands now, line breaks as line feeds where the user has edited it.
    QString string() const;

Q_SIGNALS:
    /// The user clicked to edit, so the view needs the keyboard.
    void keyboardWanted();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    QMimeData *createMimeDataFromSelection() const override;
    void insertFromMimeData(const QMimeData *source) override;

private:
    QString joined(const QTextCursor &selection) const;
    QTextCursor rangeCursor(qsizetype from, qsizetype length) const;

    QString m_original;
};
