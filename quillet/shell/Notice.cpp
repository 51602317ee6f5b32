// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/shell/Notice.h"

#include "quillet/widgets/LightLook.h"
#include "quillet/widgets/Localisation.h"

#include <QPushButton>

void Notice::tell(const QString &sentence)
{
    prepareBox(sentence, {});
    m_workspace.activate(m_box);
}

void Notice::mention(const QString &sentence, const Action &action)
{
    prepareBox(sentence, action);
    m_box->setAttribute(Qt::WA_ShowWithoutActivating);
    m_box->setWindowFlag(Qt::WindowStaysOnTopHint);
    m_box->show();
}

void Notice::prepareBox(const QString &sentence, const Action &action)
{
    if (m_box) {
        m_box->hide();
        m_box->deleteLater();
    }
    m_box = new QMessageBox(QMessageBox::Information, localized("Message from Quillet"), sentence,
                            QMessageBox::Ok);
    giveLightLook(m_box);
    m_box->setStyleSheet(m_box->styleSheet() +
                         QStringLiteral("#qt_msgbox_label { min-width: 320px; }"));
    m_box->setAttribute(Qt::WA_DeleteOnClose);
    m_box->setWindowModality(Qt::NonModal);
    m_box->setTextFormat(Qt::PlainText);
    // An address in it can be copied.
    m_box->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    // Escape and the window's own control close it without the action.
    m_box->setEscapeButton(QMessageBox::Ok);
    if (action.run) {
        const QPushButton *button = m_box->addButton(action.title, QMessageBox::ActionRole);
        QObject::connect(button, &QPushButton::clicked, m_box, action.run);
    }
}
