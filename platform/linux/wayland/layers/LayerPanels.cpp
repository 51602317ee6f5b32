// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/wayland/layers/LayerPanels.h"

#include <QApplication>
#include <QGraphicsEffect>
#include <QLabel>
#include <QMouseEvent>
#include <QPlatformSurfaceEvent>
#include <QWindow>

namespace platform::linux_
{

namespace
{

/// Lets a widget draw nothing, and yet get its input.
class Unseen : public QGraphicsEffect
{
public:
    using QGraphicsEffect::QGraphicsEffect;

protected:
    void draw(QPainter *) override {}
};

void setPanelFlags(QWidget *panel, Qt::WindowFlags more = {})
{
    // BypassWindowManagerHint keeps the toolkit from giving the surface a role.
    panel->setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                          Qt::BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus | more);
    panel->setAttribute(Qt::WA_ShowWithoutActivating);
    panel->setAttribute(Qt::WA_TranslucentBackground);
    panel->setAttribute(Qt::WA_QuitOnClose, false);
}

} // namespace

LayerPanels::LayerPanels()
    : m_shell(LayerShell::bind())
{
    qApp->installEventFilter(this);
}

LayerPanels::~LayerPanels() = default;

void LayerPanels::prepare(QWidget *panel, bool canTakeKeyboard)
{
    setPanelFlags(panel);
    add(panel, canTakeKeyboard);
}

void LayerPanels::add(QWidget *panel, bool canTakeKeyboard)
{
    if (!m_panels.contains(panel)) {
        connect(panel, &QObject::destroyed, this, [this, panel] {
            m_panels.remove(panel);
            m_surfaces.erase(panel);
        });
    }
    m_panels.insert(panel, canTakeKeyboard);
}

bool LayerPanels::canTakeKeyboard(const QWidget *panel) const
{
    return m_panels.value(const_cast<QWidget *>(panel));
}

void LayerPanels::setTakesKeyboard(QWidget *panel, bool takes)
{
    if (const auto surface = m_surfaces.find(panel); surface != m_surfaces.end())
        surface->second->setTakesKeyboard(takes);
}

std::optional<QPointF> LayerPanels::pressedPointer() const
{
    const auto surface = m_surfaces.find(m_pressed);
    if (surface == m_surfaces.end())
        return std::nullopt;
    return surface->second->place() + m_pointer;
}

QWidget *LayerPanels::panelOf(const QObject *window) const
{
    for (const auto &[panel, surface] : m_surfaces) {
        if (panel->windowHandle() == window)
            return panel;
    }
    return nullptr;
}

bool LayerPanels::eventFilter(QObject *watched, QEvent *event)
{
    if (watched->isWindowType()) {
        QWidget *const panel = panelOf(watched);
        if (!panel)
            return false;
        switch (event->type()) {
        case QEvent::PlatformSurface:
            if (static_cast<QPlatformSurfaceEvent *>(event)->surfaceEventType() ==
                QPlatformSurfaceEvent::SurfaceAboutToBeDestroyed)
                disappear(panel);
            break;
        case QEvent::MouseButtonPress:
            m_pressed = panel;
            [[fallthrough]];
        case QEvent::MouseMove:
            m_pointer = static_cast<QMouseEvent *>(event)->position();
            break;
        case QEvent::MouseButtonRelease:
            release();
            break;
        default:
            break;
        }
        return false;
    }
    if (!watched->isWidgetType())
        return false;
    auto *const widget = static_cast<QWidget *>(watched);
    switch (event->type()) {
    case QEvent::Show:
        if (m_panels.contains(widget))
            appear(widget);
        break;
    case QEvent::Move:
        if (m_panels.contains(widget))
            follow(widget);
        break;
    case QEvent::ToolTip:
    case QEvent::ContextMenu:
        // A menu or tool tip needs a parent of the toolkit's own kind: without, the compositor
        // would show it as a window like any other.
        return m_panels.contains(widget->window());
    default:
        break;
    }
    return false;
}

void LayerPanels::appear(QWidget *panel)
{
    if (!m_shell)
        return;
    // Hiding has taken the surface that the window was created with.
    if (m_surfaces.contains(panel))
        disappear(panel);
    panel->winId();
    // The hide event comes when the surface is gone; this comes before.
    QWindow *const window = panel->windowHandle();
    disconnect(window, &QWindow::visibleChanged, this, nullptr);
    connect(window, &QWindow::visibleChanged, this, [this, panel](bool visible) {
        if (!visible)
            disappear(panel);
    });
    m_surfaces[panel] = std::make_unique<LayerSurface>(
        *m_shell, window, panel->pos(), panel->size(), [panel = QPointer(panel)] {
            // Not from within the event: hiding removes its receiver.
            QMetaObject::invokeMethod(panel, &QWidget::hide, Qt::QueuedConnection);
        });
}

void LayerPanels::disappear(QWidget *panel)
{
    if (!m_surfaces.contains(panel))
        return;
    Q_EMIT leaving(panel);
    if (panel == m_pressed) {
        m_standIn.reset();
        m_pressed.clear();
    }
    // The role goes before the surface.
    m_surfaces.erase(panel);
}

void LayerPanels::follow(QWidget *panel)
{
    const auto surface = m_surfaces.find(panel);
    if (surface == m_surfaces.end())
        return;
    if (panel != m_pressed) {
        surface->second->moveTo(panel->pos());
        return;
    }
    // The pointer's place is told from the corner of the pressed surface, which therefore stays
    // where it is, unseen, while a picture of it moves.
    if (!m_standIn) {
        auto picture = std::make_unique<QLabel>();
        picture->setPixmap(panel->grab());
        picture->resize(panel->size());
        setPanelFlags(picture.get(), Qt::WindowTransparentForInput);
        add(picture.get(), false);
        picture->move(panel->pos());
        picture->show();
        m_standIn = std::move(picture);
        panel->setGraphicsEffect(new Unseen(panel));
    } else {
        m_standIn->move(panel->pos());
    }
}

void LayerPanels::release()
{
    QWidget *const panel = m_pressed.data();
    m_pressed.clear();
    if (!m_standIn || !panel)
        return;
    follow(panel);
    panel->setGraphicsEffect(nullptr);
    m_standIn.reset();
}

} // namespace platform::linux_
