// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QLineEdit>

/// Takes an instruction for one time, such as "make it rhyme". Main thread.
class InstructionField : public QLineEdit
{
    Q_OBJECT

public:
    explicit InstructionField(QWidget *parent = nullptr);

Q_SIGNALS:
    /// The user has clicked into the field, which has no use without the keyboard.
    void keyboardWanted();
    /// Return, with something written.
    void entered(const QString &instruction);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
};
