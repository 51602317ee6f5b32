// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/x11/XKeyServer.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <set>

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XInput2.h>
#include <X11/extensions/XTest.h>

namespace platform::linux_
{

namespace
{

// Xlib has one error handler for the whole process: ours drops the errors of our own connections
// and passes the others on.
std::set<Display *> &ownDisplays()
{
    static std::set<Display *> displays;
    return displays;
}

XErrorHandler previousHandler = nullptr;

int handleError(Display *display, XErrorEvent *error)
{
    if (ownDisplays().count(display) || !previousHandler)
        return 0;
    return previousHandler(display, error);
}

void installErrorHandler()
{
    const XErrorHandler found = XSetErrorHandler(handleError);
    if (found != handleError)
        previousHandler = found;
}

// Returning from this handler is what keeps the program alive: Xlib's own one exits.
void noteBrokenConnection(Display *, void *flag)
{
    *static_cast<bool *>(flag) = true;
}

// At most 64 values of 32 bits.
std::vector<unsigned long> property(Display *display, WindowId window, Atom name, Atom type)
{
    Atom actualType = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char *data = nullptr;
    XGetWindowProperty(display, window, name, 0, 64, False, type, &actualType, &format, &count,
                       &rest, &data);
    std::vector<unsigned long> values;
    if (data && format == 32) {
        const auto *first = reinterpret_cast<const unsigned long *>(data);
        values.assign(first, first + count);
    }
    if (data)
        XFree(data);
    return values;
}

// The windows that `window` lies in, from itself up to a child of the root window; empty when it is
// gone, or the root window itself.
std::vector<WindowId> ancestry(Display *display, WindowId window)
{
    std::vector<WindowId> found;
    while (window > PointerRoot && window != DefaultRootWindow(display)) {
        found.push_back(window);
        Window rootWindow = 0;
        Window parent = 0;
        Window *children = nullptr;
        unsigned count = 0;
        if (!XQueryTree(display, window, &rootWindow, &parent, &children, &count))
            return {};
        if (children)
            XFree(children);
        window = parent;
    }
    return found;
}

// The X server gives it this name. 0 when there is none.
int findTestKeyboard(Display *display)
{
    int found = 0;
    int count = 0;
    XIDeviceInfo *devices = XIQueryDevice(display, XIAllDevices, &count);
    for (int i = 0; i < count; ++i) {
        if (std::strcmp(devices[i].name, "Virtual core XTEST keyboard") == 0)
            found = devices[i].deviceid;
    }
    if (devices)
        XIFreeDeviceInfo(devices);
    return found;
}

} // namespace

std::unique_ptr<XKeyServer> XKeyServer::open(const QByteArray &displayName)
{
    Display *display = XOpenDisplay(displayName.isEmpty() ? nullptr : displayName.constData());
    if (!display)
        return nullptr;
    std::unique_ptr<XKeyServer> connection(new XKeyServer);
    connection->m_display = display;
    ownDisplays().insert(display);
    installErrorHandler();
    XSetIOErrorExitHandler(display, noteBrokenConnection, &connection->m_broken);

    int opcode = 0;
    int event = 0;
    int error = 0;
    int major = XkbMajorVersion;
    int minor = XkbMinorVersion;
    if (!XkbQueryExtension(display, &opcode, &connection->m_xkbEventBase, &error, &major, &minor))
        return nullptr;
    if (!XTestQueryExtension(display, &event, &error, &major, &minor))
        return nullptr;
    int inputMajor = 2;
    int inputMinor = 1;
    if (!XQueryExtension(display, "XInputExtension", &connection->m_inputOpcode, &event, &error) ||
        XIQueryVersion(display, &inputMajor, &inputMinor) != Success)
        return nullptr;
    connection->m_testKeyboard = findTestKeyboard(display);
    if (!connection->m_testKeyboard)
        return nullptr;

    connection->m_pingAtom = connection->atom("_NET_WM_PING");
    XSetWindowAttributes attributes{};
    attributes.event_mask = PropertyChangeMask;
    connection->m_ownWindow =
        XCreateWindow(display, DefaultRootWindow(display), -1, -1, 1, 1, 0, CopyFromParent,
                      InputOnly, CopyFromParent, CWEventMask, &attributes);
    return connection;
}

XKeyServer::~XKeyServer()
{
    if (!m_display)
        return;
    XCloseDisplay(m_display);
    ownDisplays().erase(m_display);
}

int XKeyServer::fileDescriptor() const
{
    return ConnectionNumber(m_display);
}

WindowId XKeyServer::root() const
{
    return DefaultRootWindow(m_display);
}

unsigned long XKeyServer::atom(const char *name) const
{
    return XInternAtom(m_display, name, False);
}

std::optional<XKeyServer::Moment> XKeyServer::look()
{
    Moment moment;
    int revertTo = 0;
    XkbStateRec state{};
    char keys[32] = {};
    XGetInputFocus(m_display, &moment.focus, &revertTo);
    if (XkbGetState(m_display, XkbUseCoreKbd, &state) != Success || m_broken)
        return std::nullopt;
    XQueryKeymap(m_display, keys);
    if (m_broken)
        return std::nullopt;
    moment.heldModifiers = state.base_mods;
    moment.lockedModifiers = state.locked_mods;
    moment.group = state.group;
    moment.keyHeld = std::any_of(std::begin(keys), std::end(keys), [](char c) { return c != 0; });
    return moment;
}

void XKeyServer::grab()
{
    XGrabServer(m_display);
}

void XKeyServer::ungrab()
{
    XUngrabServer(m_display);
    XFlush(m_display);
}

void XKeyServer::sendKeys(const std::vector<Keystroke> &keys, std::uint8_t ambientLocks,
                          std::uint8_t lockedBefore)
{
    constexpr unsigned all = 0xff;
    unsigned locked = lockedBefore;
    const auto lock = [&](unsigned modifiers) {
        if (modifiers != locked)
            XkbLockModifiers(m_display, XkbUseCoreKbd, all, modifiers);
        locked = modifiers;
    };
    for (const Keystroke key : keys) {
        lock(ambientLocks | key.modifiers);
        XTestFakeKeyEvent(m_display, key.keycode, True, 0);
        XTestFakeKeyEvent(m_display, key.keycode, False, 0);
    }
    lock(lockedBefore);
}

void XKeyServer::lockModifiers(std::uint8_t locked)
{
    XkbLockModifiers(m_display, XkbUseCoreKbd, 0xff, locked);
    XFlush(m_display);
}

std::vector<WindowId> XKeyServer::inputMethods() const
{
    std::vector<WindowId> found;
    for (const unsigned long server : property(m_display, root(), atom("XIM_SERVERS"), XA_ATOM)) {
        if (const Window owner = XGetSelectionOwner(m_display, server))
            found.push_back(owner);
    }
    return found;
}

bool XKeyServer::keysRepeat()
{
    XKeyboardState state{};
    XGetKeyboardControl(m_display, &state);
    return state.global_auto_repeat == AutoRepeatModeOn;
}

void XKeyServer::setKeysRepeat(bool repeat)
{
    repeat ? XAutoRepeatOn(m_display) : XAutoRepeatOff(m_display);
}

void XKeyServer::wakeKeyboard()
{
    XTestFakeKeyEvent(m_display, 255, False, 0);
}

bool XKeyServer::exists(WindowId window)
{
    XWindowAttributes attributes;
    return XGetWindowAttributes(m_display, window, &attributes) != 0;
}

WindowId XKeyServer::pingableWindow(WindowId window)
{
    const std::vector<WindowId> windows = ancestry(m_display, window);
    const auto found = std::find_if(windows.begin(), windows.end(),
                                    [this](WindowId each) { return answersPings(each); });
    return found == windows.end() ? 0 : *found;
}

bool XKeyServer::answersPings(WindowId window) const
{
    const std::vector<unsigned long> protocols =
        property(m_display, window, atom("WM_PROTOCOLS"), XA_ATOM);
    return std::find(protocols.begin(), protocols.end(), atom("_NET_WM_PING")) != protocols.end();
}

std::vector<WindowId> XKeyServer::pingableCompanions(WindowId window)
{
    const auto processOf = [this](WindowId each) {
        const auto pid = property(m_display, each, atom("_NET_WM_PID"), XA_CARDINAL);
        return pid.empty() ? 0 : pid.front();
    };
    std::vector<WindowId> found;
    const std::vector<WindowId> own = ancestry(m_display, window);
    unsigned long process = 0;
    for (const WindowId each : own) {
        if (!process)
            process = processOf(each);
    }
    Window rootWindow = 0;
    Window parent = 0;
    Window *children = nullptr;
    unsigned count = 0;
    if (process && XQueryTree(m_display, root(), &rootWindow, &parent, &children, &count)) {
        std::copy_if(children, children + count, std::back_inserter(found), [&](WindowId each) {
            return each != own.back() && processOf(each) == process && answersPings(each);
        });
    }
    if (children)
        XFree(children);
    for (const WindowId each : inputMethods()) {
        if (const WindowId answering = pingableWindow(each))
            found.push_back(answering);
    }
    return found;
}

void XKeyServer::ping(WindowId window, std::uint32_t number)
{
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = atom("WM_PROTOCOLS");
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(atom("_NET_WM_PING"));
    event.xclient.data.l[1] = number;
    event.xclient.data.l[2] = static_cast<long>(window);
    XSendEvent(m_display, window, False, NoEventMask, &event);
    XFlush(m_display);
}

void XKeyServer::requestFence()
{
    const long nothing = 0;
    XChangeProperty(m_display, m_ownWindow, XA_INTEGER, XA_INTEGER, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char *>(&nothing), 1);
    XFlush(m_display);
}

} // namespace platform::linux_
