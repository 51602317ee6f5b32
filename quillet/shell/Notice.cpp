// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/shell/Notice.h"

#include <QApplication>

void Notice::tell(const QString &sentence)
{
    if (!m_box) {
        constexpr QSize icon(48, 48);
        m_box = new QMessageBox(QMessageBox::Information, QStringLiteral("Quillet"), {},
                                QMessageBox::Ok);
        m_box->setIconPixmap(QApplication::windowIcon().pixmap(icon, m_box->devicePixelRatioF()));
        m_box->setAttribute(Qt::WA_DeleteOnClose);
        m_box->setWindowModality(Qt::NonModal);
        m_box->setTextFormat(Qt::PlainText);
        // An address in it can be copied.
        m_box->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    }
    m_box->setText(sentence);
    m_workspace.activate(m_box);
}
