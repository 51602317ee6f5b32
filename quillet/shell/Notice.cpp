#include "quillet/shell/Notice.h"

void Notice::tell(const QString &sentence)
{
    if (!m_box) {
        m_box = new QMessageBox(QMessageBox::Information, QStringLiteral("Quillet"), {},
                                QMessageBox::Ok);
        m_box->setAttribute(Qt::WA_DeleteOnClose);
        m_box->setWindowModality(Qt::NonModal);
        m_box->setTextFormat(Qt::PlainText);
        // An address in it can be copied.
        m_box->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    }
    m_box->setText(sentence);
    m_workspace.activate(m_box);
}
