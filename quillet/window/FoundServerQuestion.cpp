// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/window/FoundServerQuestion.h"

#include "quillet/widgets/LightLook.h"
#include "quillet/widgets/Localisation.h"

#include <QPushButton>
#include <QScreen>

void FoundServerQuestion::ask(const Server &server, std::function<void(bool)> answer)
{
    delete m_box;
    m_box = new QMessageBox;
    giveLightLook(m_box);
    m_box->setStyleSheet(m_box->styleSheet() +
                         QStringLiteral("#qt_msgbox_label { font-size: 18px; font-weight: 600; }"
                                        "#qt_msgbox_informativelabel { min-width: 420px; }"));
    m_box->setAttribute(Qt::WA_DeleteOnClose);
    m_box->setWindowTitle(localized("Message from Quillet"));
    // What another program says about itself is shown as it stands.
    m_box->setTextFormat(Qt::PlainText);
    m_box->setText(localized("Use the language model on this computer?"));
    m_box->setInformativeText(
        localized("The server at %1, run by the user \"%2\", offers the model \"%3\". With it "
                  "Quillet can do more. The texts that you use a command on are then sent to "
                  "this server; without it they stay with Quillet.")
            .arg(server.address, server.ownerName, server.model) +
        QStringLiteral("\n\n") +
        localized("Your answer is kept. You can change it in the settings."));
    QPushButton *agree = m_box->addButton(localized("Use it"), QMessageBox::AcceptRole);
    QPushButton *refuse = m_box->addButton(localized("Stay offline"), QMessageBox::RejectRole);
    m_box->setDefaultButton(refuse);
    QObject::connect(agree, &QPushButton::clicked, m_box, [answer] { answer(true); });
    QObject::connect(refuse, &QPushButton::clicked, m_box, [answer] { answer(false); });
    // Escape closes the window; only a button answers.
    QPushButton *later = m_box->addButton(localized("Ask later"), QMessageBox::DestructiveRole);
    m_box->setEscapeButton(later);
    m_box->setWindowModality(Qt::NonModal);
    // It comes while the user writes: the keyboard stays where it is, and so does what it is for.
    m_box->setAttribute(Qt::WA_ShowWithoutActivating);
    m_box->setWindowFlag(Qt::WindowStaysOnTopHint);
    m_box->adjustSize();
    constexpr QPoint margin(24, 48);
    m_box->move(m_box->screen()->availableGeometry().bottomRight() -
                QPoint(m_box->width(), m_box->height()) - margin);
    m_box->show();
}
