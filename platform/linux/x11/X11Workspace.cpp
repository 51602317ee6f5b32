// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/x11/X11Workspace.h"

#include "platform/linux/desktop/OpenUrl.h"
#include "platform/linux/x11/StartupNotification.h"
#include "platform/linux/x11/WindowProperties.h"

#include <QCoreApplication>
#include <QCursor>
#include <QEvent>
#include <QUrl>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace platform::linux_
{

namespace
{

// EWMH, _NET_WM_STATE and source indication.
constexpr quint32 stateRemove = 0;
constexpr quint32 stateAdd = 1;
constexpr quint32 sourceApplication = 1;
constexpr quint32 sourcePager = 2;

} // namespace

X11Workspace::X11Workspace(XcbConnection *connection, FloatingPanels &panels,
                           KeyboardLoan *keyboard, PointerWatch *pointer,
                           ActiveWindow &activeWindow, QString sessionLimitation)
    : m_connection(connection)
    , m_panels(panels)
    , m_keyboard(keyboard)
    , m_activeWindow(activeWindow)
    , m_sessionLimitation(std::move(sessionLimitation))
{
    if (m_connection)
        m_dismissal =
            std::make_unique<DismissalWatch>(*m_connection, m_panels, *pointer, *m_keyboard);
}

X11Workspace::~X11Workspace() = default;

std::optional<RunningApplication> X11Workspace::runningApplication(std::int32_t pid)
{
    QString windowClass;
    if (m_connection) {
        // The window class says more than the process where one program has many faces.
        const auto active = m_activeWindow.activeWindow();
        if (active && active->pids.contains(pid)) {
            windowClass = windowClassOf(m_connection->bytes(active->id, "WM_CLASS"));
        }
    }
    return m_names.application(pid, windowClass);
}

std::optional<std::int32_t> X11Workspace::frontmostApplication()
{
    if (!m_connection)
        return {};
    if (m_keyboard->isOut())
        return std::int32_t(QCoreApplication::applicationPid());
    if (m_activeWindow.isAvailable()) {
        const auto active = m_activeWindow.activeWindow();
        return active && !active->pids.isEmpty() ? std::optional(active->pids.first())
                                                 : std::nullopt;
    }
    const xcb_window_t focus = m_connection->inputFocus();
    return focus > XCB_INPUT_FOCUS_POINTER_ROOT ? m_connection->processOf(focus) : std::nullopt;
}

void X11Workspace::setActivationPolicy(QWidget *window, ActivationPolicy policy)
{
    if (!window || !m_connection)
        return;
    if (!m_policies.contains(window)) {
        window->installEventFilter(this);
        connect(window, &QObject::destroyed, this, [this, window] { m_policies.remove(window); });
    }
    m_policies.insert(window, policy);
    applyPolicy(window, window->isVisible());
}

void X11Workspace::applyPolicy(QWidget *window, bool mapped)
{
    if (!window->internalWinId())
        return;
    const bool skip = m_policies.value(window) == ActivationPolicy::Accessory;
    const xcb_window_t id = xcb_window_t(window->internalWinId());
    const quint32 taskbar = m_connection->atom("_NET_WM_STATE_SKIP_TASKBAR");
    const quint32 pager = m_connection->atom("_NET_WM_STATE_SKIP_PAGER");
    if (mapped) {
        m_connection->sendToWindowManager(
            id, "_NET_WM_STATE",
            {skip ? stateAdd : stateRemove, taskbar, pager, sourceApplication});
        return;
    }
    // The window manager reads the property when the window is mapped, and not before.
    QList<quint32> states = m_connection->items(id, "_NET_WM_STATE");
    states.removeAll(taskbar);
    states.removeAll(pager);
    if (skip)
        states << taskbar << pager;
    xcb_connection_t *c = m_connection->toolkit();
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, id, m_connection->atom("_NET_WM_STATE"),
                        XCB_ATOM_ATOM, 32, uint32_t(states.size()), states.constData());
    xcb_flush(c);
}

bool X11Workspace::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show && watched->isWidgetType()) {
        applyPolicy(static_cast<QWidget *>(watched), false);
    } else if (event->type() == QEvent::Expose && watched->isWindowType()) {
        QWidget *window = m_activateWhenExposed;
        if (window && window->windowHandle() == watched && window->windowHandle()->isExposed()) {
            watched->removeEventFilter(this);
            requestActivation(window);
        }
    }
    return QObject::eventFilter(watched, event);
}

void X11Workspace::activate(QWidget *window)
{
    if (!window)
        return;
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->show();
    window->raise();
    if (!m_connection) {
        window->activateWindow();
        return;
    }
    if (const QByteArray startupId = qgetenv("DESKTOP_STARTUP_ID"); !startupId.isEmpty()) {
        qunsetenv("DESKTOP_STARTUP_ID");
        completeStartup(*m_connection, startupId);
    }
    // A window manager that keeps programs from stealing the focus compares this time with that of
    // the user's last action elsewhere (EWMH, _NET_WM_USER_TIME).
    const quint32 now = m_connection->serverTime();
    xcb_change_property(m_connection->toolkit(), XCB_PROP_MODE_REPLACE,
                        xcb_window_t(window->winId()), m_connection->atom("_NET_WM_USER_TIME"),
                        XCB_ATOM_CARDINAL, 32, 1, &now);
    xcb_flush(m_connection->toolkit());

    m_activateWhenExposed = window;
    if (window->windowHandle()->isExposed())
        requestActivation(window);
    else
        window->windowHandle()->installEventFilter(this);
}

void X11Workspace::requestActivation(QWidget *window)
{
    m_activateWhenExposed.clear();
    const xcb_window_t id = xcb_window_t(window->internalWinId());
    if (m_connection->windowManagerSupports("_NET_ACTIVE_WINDOW")) {
        m_connection->sendToWindowManager(id, "_NET_ACTIVE_WINDOW",
                                          {sourcePager, m_connection->serverTime(), 0});
        return;
    }
    xcb_set_input_focus(m_connection->get(), XCB_INPUT_FOCUS_PARENT, id, XCB_CURRENT_TIME);
    xcb_flush(m_connection->get());
}

void X11Workspace::preparePanel(QWidget *panel, bool becomesKeyOnlyIfNeeded)
{
    m_panels.prepare(panel, becomesKeyOnlyIfNeeded);
}

void X11Workspace::focusPanel(QWidget *panel)
{
    if (m_keyboard)
        m_keyboard->take(panel);
}

void X11Workspace::restoreFocus(std::function<void(bool)> completion)
{
    if (m_keyboard)
        m_keyboard->giveBack(std::move(completion));
    else
        completion(true);
}

void X11Workspace::watchDismissal(QWidget *panel, std::function<void()> dismissed)
{
    if (m_dismissal)
        m_dismissal->watch(panel, std::move(dismissed));
}

bool X11Workspace::setGlobalShortcut(const QKeySequence &keys, std::function<void()> pressed)
{
    m_shortcut.reset();
    if (keys.isEmpty())
        return true;
    const int key = keys[0].key();
    // Latin letters and digits have their own character as their keysym, in lower case.
    if (!m_connection || key < Qt::Key_Space || key > Qt::Key_AsciiTilde)
        return false;
    const Qt::KeyboardModifiers wanted = keys[0].keyboardModifiers();
    quint16 modifiers = 0;
    for (const auto &[modifier, mask] : {std::pair(Qt::ShiftModifier, XCB_MOD_MASK_SHIFT),
                                         std::pair(Qt::ControlModifier, XCB_MOD_MASK_CONTROL),
                                         std::pair(Qt::AltModifier, XCB_MOD_MASK_1),
                                         std::pair(Qt::MetaModifier, XCB_MOD_MASK_4)}) {
        if (wanted & modifier)
            modifiers |= mask;
    }
    m_shortcut = std::make_unique<KeyGrab>(*m_connection,
                                           xcb_keysym_t(QChar(key).toLower().unicode()), modifiers);
    connect(m_shortcut.get(), &KeyGrab::pressed, this, std::move(pressed));
    return m_shortcut->isHeld();
}

bool X11Workspace::open(const QUrl &url)
{
    return openUrl(url);
}

QPointF X11Workspace::mouseLocation()
{
    return QCursor::pos();
}

} // namespace platform::linux_
