// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/widgets/ArtworkView.h"

#include <QPainter>
#include <QSvgRenderer>

#include <cmath>

ArtworkView::ArtworkView(const QString &name, const QSize &frame, const QString &description,
                         QWidget *parent)
    : QLabel(parent)
    , m_renderer(new QSvgRenderer(QStringLiteral(":/images/%1.svg").arg(name), this))
    , m_frame(frame)
{
    if (!m_renderer->isValid())
        qWarning("The image %s is missing from the resources.", qUtf8Printable(name));
    m_renderer->setAspectRatioMode(Qt::KeepAspectRatio);
    if (m_frame.width() == 0) {
        const QSizeF natural = m_renderer->viewBoxF().size();
        if (natural.height() > 0)
            m_frame.setWidth(int(std::ceil(natural.width() * m_frame.height() / natural.height())));
    }
    setAccessibleName(description);
    setContentsMargins(0, 0, 0, 8);
}

QSize ArtworkView::sizeHint() const
{
    return m_frame.grownBy(contentsMargins());
}

void ArtworkView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    m_renderer->render(&painter, QRectF(contentsRect()));
}
