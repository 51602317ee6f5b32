// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/x11/FloatingPanels.h"

#include "platform/linux/x11/PanelShape.h"

#include <QEvent>
#include <QWidget>
#include <QWindow>

#include <xcb/shape.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <chrono>

namespace platform::linux_
{

namespace
{

// Long enough that two programs that both want to be on top do not occupy the machine.
constexpr std::chrono::milliseconds raiseDelay{30};

} // namespace

FloatingPanels::FloatingPanels(XcbConnection *connection)
    : m_connection(connection)
{
    m_raise.setSingleShot(true);
    m_raise.setInterval(raiseDelay);
    connect(&m_raise, &QTimer::timeout, this, &FloatingPanels::raisePanels);
    if (!m_connection)
        return;

    connect(m_connection, &XcbConnection::eventReceived, this, &FloatingPanels::handle);
    m_connection->select(m_connection->root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);

    // A compositing manager owns the selection _NET_WM_CM_Sn for as long as it runs (EWMH).
    xcb_connection_t *c = m_connection->get();
    const xcb_query_extension_reply_t *xfixes = xcb_get_extension_data(c, &xcb_xfixes_id);
    if (xfixes && xfixes->present) {
        m_firstXFixesEvent = xfixes->first_event;
        const XcbPtr<xcb_xfixes_query_version_reply_t> version(
            xcb_xfixes_query_version_reply(c, xcb_xfixes_query_version(c, 2, 0), nullptr));
        xcb_xfixes_select_selection_input(
            c, m_connection->root(),
            m_connection->atom("_NET_WM_CM_S" + QByteArray::number(m_connection->screenNumber())),
            XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
        xcb_flush(c);
    }
}

FloatingPanels::~FloatingPanels() = default;

void FloatingPanels::prepare(QWidget *panel, bool canTakeKeyboard)
{
    panel->setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                          Qt::BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus);
    panel->setAttribute(Qt::WA_ShowWithoutActivating);
    panel->setAttribute(Qt::WA_TranslucentBackground);
    panel->setAttribute(Qt::WA_QuitOnClose, false);
    // No window of ours is active while the panel is used.
    panel->setAttribute(Qt::WA_AlwaysShowToolTips);

    if (!m_panels.contains(panel)) {
        panel->installEventFilter(this);
        connect(panel, &QObject::destroyed, this, [this, panel] { m_panels.remove(panel); });
    }
    m_panels.insert(panel, canTakeKeyboard);
    updateDrawing(panel);
}

bool FloatingPanels::canTakeKeyboard(const QWidget *panel) const
{
    return m_panels.value(const_cast<QWidget *>(panel));
}

QWidget *FloatingPanels::panelWith(xcb_window_t window) const
{
    if (window == XCB_NONE)
        return nullptr;
    for (auto it = m_panels.cbegin(); it != m_panels.cend(); ++it) {
        if (windowOf(it.key()) == window)
            return it.key();
    }
    return nullptr;
}

xcb_window_t FloatingPanels::windowOf(const QWidget *panel)
{
    // Unlike winId(), this does not create a window that is not there.
    return xcb_window_t(panel->internalWinId());
}

bool FloatingPanels::eventFilter(QObject *watched, QEvent *event)
{
    auto *panel = static_cast<QWidget *>(watched);
    if (event->type() == QEvent::Hide || event->type() == QEvent::Close)
        Q_EMIT leaving(panel);
    else if (event->type() == QEvent::Show)
        m_raise.start();
    return QObject::eventFilter(watched, event);
}

void FloatingPanels::handle(const xcb_generic_event_t *event)
{
    const int type = event->response_type & 0x7f;
    if (m_firstXFixesEvent && type == m_firstXFixesEvent + XCB_XFIXES_SELECTION_NOTIFY) {
        for (auto it = m_panels.cbegin(); it != m_panels.cend(); ++it)
            updateDrawing(it.key());
        return;
    }
    switch (type) {
    case XCB_MAP_NOTIFY:
    case XCB_CONFIGURE_NOTIFY:
    case XCB_REPARENT_NOTIFY:
    case XCB_CIRCULATE_NOTIFY:
        if (!m_raise.isActive() &&
            std::any_of(m_panels.keyBegin(), m_panels.keyEnd(),
                        [](const QWidget *panel) { return panel->isVisible(); }))
            m_raise.start();
        break;
    default:
        break;
    }
}

bool FloatingPanels::composited() const
{
    if (!m_connection)
        return true;
    xcb_connection_t *c = m_connection->get();
    const xcb_atom_t selection =
        m_connection->atom("_NET_WM_CM_S" + QByteArray::number(m_connection->screenNumber()));
    const XcbPtr<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(c, xcb_get_selection_owner(c, selection), nullptr));
    return reply && reply->owner != XCB_NONE;
}

void FloatingPanels::updateDrawing(QWidget *panel)
{
    const bool shaped = !composited();
    if (shaped == (panel->graphicsEffect() != nullptr))
        return;
    if (shaped) {
        auto *shape = new PanelShape(panel);
        // Not from within the drawing.
        connect(
            shape, &PanelShape::painted, this,
            [this, panel](const QList<QRect> &pixels) { setShape(panel, pixels); },
            Qt::QueuedConnection);
        panel->setGraphicsEffect(shape);
    } else {
        panel->setGraphicsEffect(nullptr);
        if (const xcb_window_t window = windowOf(panel)) {
            xcb_connection_t *c = m_connection->toolkit();
            xcb_shape_mask(c, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, window, 0, 0,
                           XCB_PIXMAP_NONE);
            xcb_flush(c);
        }
    }
    panel->update();
}

void FloatingPanels::setShape(QWidget *panel, const QList<QRect> &pixels)
{
    // The panel or the effect may have gone since the drawing.
    if (!m_panels.contains(panel) || !panel->graphicsEffect())
        return;
    const xcb_window_t window = windowOf(panel);
    if (window == XCB_NONE)
        return;
    QList<xcb_rectangle_t> rectangles;
    rectangles.reserve(pixels.size());
    for (const QRect &r : pixels)
        rectangles.append(
            {int16_t(r.x()), int16_t(r.y()), uint16_t(r.width()), uint16_t(r.height())});
    xcb_connection_t *c = m_connection->toolkit();
    xcb_shape_rectangles(c, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_UNSORTED,
                         window, 0, 0, uint32_t(rectangles.size()), rectangles.constData());
    xcb_flush(c);
}

void FloatingPanels::raisePanels()
{
    if (!m_connection)
        return;
    xcb_connection_t *c = m_connection->get();
    const QList<xcb_window_t> bottomToTop = m_connection->childrenOf(m_connection->root());
    QList<xcb_window_t> raised;
    bool covered = false;
    for (const xcb_window_t window : bottomToTop) {
        QWidget *panel = panelWith(window);
        if (panel && panel->isVisible())
            raised.append(window);
        else if (!raised.isEmpty() && !covered)
            covered = m_connection->isApplicationTopLevel(window);
    }
    if (!covered)
        return;
    for (const xcb_window_t window : std::as_const(raised)) {
        const quint32 above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(c, window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    }
    xcb_flush(c);
}

} // namespace platform::linux_
