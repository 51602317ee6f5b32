// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/popup/ToolRow.h"

#include "quillet/popup/PopupLayout.h"
#include "quillet/widgets/PillButton.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

#include <cmath>

namespace
{

/// How much of the next tool stays in view beside the one that was chosen, in points.
constexpr int neighbourMargin = 60;
constexpr int fadeWidth = 28;

} // namespace

/// Covers one edge of the row with the panel's colour, which fades towards the middle.
class EdgeFade : public QWidget
{
public:
    EdgeFade(Qt::Edge edge, QWidget *parent)
        : QWidget(parent)
        , m_edge(edge)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        hide();
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QColor solid = palette().color(QPalette::Window);
        QColor clear = solid;
        clear.setAlpha(0);
        QLinearGradient gradient(0, 0, width(), 0);
        gradient.setColorAt(m_edge == Qt::LeftEdge ? 0 : 1, solid);
        gradient.setColorAt(m_edge == Qt::LeftEdge ? 1 : 0, clear);
        QPainter(this).fillRect(rect(), gradient);
    }

private:
    const Qt::Edge m_edge;
};

ToolRow::ToolRow(const QList<PillButton *> &buttons, QWidget *parent)
    : QScrollArea(parent)
    , m_leftFade(new EdgeFade(Qt::LeftEdge, this))
    , m_rightFade(new EdgeFade(Qt::RightEdge, this))
{
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    viewport()->setAutoFillBackground(false);

    QList<qreal> titleWidths;
    for (const PillButton *button : buttons)
        titleWidths.append(button->titleWidth());
    qreal documentWidth = 0;
    const QList<QRectF> rects = PopupLayout::toolButtons(titleWidths, documentWidth);
    const qreal height = PopupLayout::toolRow().height();
    auto *document = new QWidget;
    for (qsizetype i = 0; i < rects.size(); ++i) {
        buttons[i]->setParent(document);
        buttons[i]->setGeometry(PopupLayout::flipped(rects[i], height).toRect());
        buttons[i]->installEventFilter(this);
    }
    document->setFixedSize(static_cast<int>(documentWidth), static_cast<int>(height));
    document->installEventFilter(this);
    setWidget(document);
    document->setAutoFillBackground(false);

    connect(horizontalScrollBar(), &QScrollBar::valueChanged, this, &ToolRow::updateFades);
    connect(horizontalScrollBar(), &QScrollBar::rangeChanged, this, &ToolRow::updateFades);
}

void ToolRow::reveal(PillButton *button)
{
    m_revealed = button;
    // Before it is shown, the row does not have its size.
    if (isVisible())
        ensureWidgetVisible(button, neighbourMargin, 0);
}

void ToolRow::showEvent(QShowEvent *event)
{
    QScrollArea::showEvent(event);
    if (m_revealed)
        ensureWidgetVisible(m_revealed, neighbourMargin, 0);
    updateFades();
}

void ToolRow::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    updateFades();
}

void ToolRow::wheelEvent(QWheelEvent *event)
{
    const QPoint delta =
        event->pixelDelta().isNull() ? event->angleDelta() / 2 : event->pixelDelta();
    scrollTo(horizontalScrollBar()->value() - (delta.x() != 0 ? delta.x() : delta.y()));
    event->accept();
}

bool ToolRow::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        m_isDragging = false;
        m_pressX = mouse->globalPosition().toPoint().x();
        m_pressValue = horizontalScrollBar()->value();
        break;
    }
    case QEvent::MouseMove: {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        if (!(mouse->buttons() & Qt::LeftButton))
            break;
        const int moved = mouse->globalPosition().toPoint().x() - m_pressX;
        if (!m_isDragging && std::abs(moved) < QApplication::startDragDistance())
            break;
        m_isDragging = true;
        // A button that is not down does not click when it is released.
        if (auto *button = qobject_cast<QAbstractButton *>(watched))
            button->setDown(false);
        scrollTo(m_pressValue - moved);
        return true;
    }
    default:
        break;
    }
    return QScrollArea::eventFilter(watched, event);
}

void ToolRow::scrollTo(int value)
{
    horizontalScrollBar()->setValue(value);
}

void ToolRow::updateFades()
{
    const QScrollBar *bar = horizontalScrollBar();
    const int height = viewport()->height();
    m_leftFade->setGeometry(0, 0, fadeWidth, height);
    m_rightFade->setGeometry(width() - fadeWidth, 0, fadeWidth, height);
    m_leftFade->setVisible(bar->value() > bar->minimum());
    m_rightFade->setVisible(bar->value() < bar->maximum());
    m_leftFade->raise();
    m_rightFade->raise();
}
