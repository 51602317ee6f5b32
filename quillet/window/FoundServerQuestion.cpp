// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/window/FoundServerQuestion.h"

#include <QPushButton>

void FoundServerQuestion::ask(const Server &server, std::function<void(bool)> answer)
{
    delete m_box;
    m_box = new QMessageBox;
    m_box->setAttribute(Qt::WA_DeleteOnClose);
    m_box->setWindowTitle(QStringLiteral("Quillet"));
    // What another program says about itself is shown as it stands.
    m_box->setTextFormat(Qt::PlainText);
    m_box->setText(QStringLiteral("Use the language model on this computer?"));
    m_box->setInformativeText(
        QStringLiteral("The server at %1, run by the user \"%2\", offers the model \"%3\". With it "
                       "Quillet can do more. The texts that you use a command on are then sent to "
                       "this server; without it they stay with Quillet.\n\n"
                       "The answer is kept in ~/.config/quillet/backend.ini.")
            .arg(server.address, server.ownerName, server.model));
    QPushButton *agree = m_box->addButton(QStringLiteral("Use it"), QMessageBox::AcceptRole);
    QPushButton *refuse = m_box->addButton(QStringLiteral("Stay offline"), QMessageBox::RejectRole);
    m_box->setDefaultButton(refuse);
    QObject::connect(agree, &QPushButton::clicked, m_box, [answer] { answer(true); });
    QObject::connect(refuse, &QPushButton::clicked, m_box, [answer] { answer(false); });
    // Escape closes the window; only a button answers.
    QPushButton *later =
        m_box->addButton(QStringLiteral("Ask later"), QMessageBox::DestructiveRole);
    m_box->setEscapeButton(later);
    m_box->setWindowModality(Qt::NonModal);
    m_box->show();
}
