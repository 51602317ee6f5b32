// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

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

    QString m_original;
};
