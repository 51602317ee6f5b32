// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/popup/InstructionField.h"

#include "quillet/popup/PopupStyle.h"
#include "quillet/widgets/Localisation.h"

#include <QKeyEvent>

namespace
{

constexpr int maxInstructionLength = 500;

} // namespace

InstructionField::InstructionField(QWidget *parent)
    : QLineEdit(parent)
{
    setPlaceholderText(localized("For once, such as: make it rhyme"));
    setAccessibleName(localized("Instruction for once"));
    setMaxLength(maxInstructionLength);
    setStyleSheet(QStringLiteral("QLineEdit { border: 1px solid lightgray; border-radius: 17px; "
                                 "padding: 0 12px; background: palette(base); "
                                 "color: palette(text); } "
                                 "QLineEdit:focus { border: 2px solid %1; }")
                      .arg(PopupStyle::accentOn(palette()).name()));
}

void InstructionField::mousePressEvent(QMouseEvent *event)
{
    Q_EMIT keyboardWanted();
    QLineEdit::mousePressEvent(event);
}

void InstructionField::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    event->accept();
    if (const QString words = text().simplified(); !words.isEmpty())
        Q_EMIT entered(words);
}
