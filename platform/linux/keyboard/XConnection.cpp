// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/XConnection.h"

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

// Modifiers that a virtual modifier name stands for on this keyboard.
std::uint8_t modifiersNamed(Display *display, XkbDescPtr xkb,
                            std::initializer_list<const char *> names)
{
    unsigned found = 0;
    for (int i = 0; i < XkbNumVirtualMods; ++i) {
        if (!xkb->names->vmods[i])
            continue;
        char *name = XGetAtomName(display, xkb->names->vmods[i]);
        if (!name)
            continue;
        for (const char *wanted : names) {
            if (std::strcmp(name, wanted) == 0)
                found |= xkb->server->vmods[i];
        }
        XFree(name);
    }
    return static_cast<std::uint8_t>(found);
}

// At most 64 values of 32 bits.
std::vector<unsigned long> property(Display *display, XWindow window, Atom name, Atom type)
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
std::vector<XWindow> ancestry(Display *display, XWindow window)
{
    std::vector<XWindow> found;
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

KeyboardMap::Type typeFrom(const XkbKeyTypeRec &source)
{
    KeyboardMap::Type type;
    type.modifiers = source.mods.mask;
    type.levels = source.num_levels;
    for (int i = 0; i < source.map_count; ++i) {
        type.entries.push_back(
            {source.map[i].active != False, source.map[i].mods.mask, source.map[i].level});
    }
    return type;
}

KeyboardMap::Key keyFrom(XkbDescPtr xkb, int keycode)
{
    KeyboardMap::Key key;
    const unsigned char info = XkbKeyGroupInfo(xkb, keycode);
    key.isModifier = xkb->map->modmap[keycode] != 0;
    switch (XkbOutOfRangeGroupAction(info)) {
    case XkbRedirectIntoRange:
        key.outOfRange = KeyboardMap::Key::OutOfRange::Redirect;
        key.redirectGroup = XkbOutOfRangeGroupNumber(info);
        break;
    case XkbClampIntoRange:
        key.outOfRange = KeyboardMap::Key::OutOfRange::Clamp;
        break;
    default:
        break;
    }
    for (int group = 0; group < XkbKeyNumGroups(xkb, keycode); ++group) {
        KeyboardMap::Group entry;
        entry.type = XkbKeyKeyTypeIndex(xkb, keycode, group);
        for (int level = 0; level < XkbKeyGroupWidth(xkb, keycode, group); ++level) {
            entry.keysyms.push_back(
                static_cast<std::uint32_t>(XkbKeySymEntry(xkb, keycode, level, group)));
        }
        key.groups.push_back(std::move(entry));
    }
    return key;
}

} // namespace

std::unique_ptr<XConnection> XConnection::open(const QByteArray &displayName)
{
    Display *display = XOpenDisplay(displayName.isEmpty() ? nullptr : displayName.constData());
    if (!display)
        return nullptr;
    std::unique_ptr<XConnection> connection(new XConnection);
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

    XSetWindowAttributes attributes{};
    attributes.event_mask = PropertyChangeMask;
    connection->m_ownWindow =
        XCreateWindow(display, DefaultRootWindow(display), -1, -1, 1, 1, 0, CopyFromParent,
                      InputOnly, CopyFromParent, CWEventMask, &attributes);
    return connection;
}

XConnection::~XConnection()
{
    if (!m_display)
        return;
    XCloseDisplay(m_display);
    ownDisplays().erase(m_display);
}

int XConnection::fileDescriptor() const
{
    return ConnectionNumber(m_display);
}

XWindow XConnection::root() const
{
    return DefaultRootWindow(m_display);
}

unsigned long XConnection::atom(const char *name) const
{
    return XInternAtom(m_display, name, False);
}

std::optional<XConnection::Moment> XConnection::look() const
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
    moment.latchedModifiers = state.latched_mods;
    moment.lockedModifiers = state.locked_mods;
    moment.group = state.group;
    moment.keyHeld = std::any_of(std::begin(keys), std::end(keys), [](char c) { return c != 0; });
    return moment;
}

KeyboardMap XConnection::readMap() const
{
    KeyboardMap map;
    XkbDescPtr xkb = XkbGetMap(
        m_display, XkbAllClientInfoMask | XkbModifierMapMask | XkbVirtualModsMask, XkbUseCoreKbd);
    if (!xkb)
        return map;
    map.minKeycode = xkb->min_key_code;
    map.maxKeycode = xkb->max_key_code;
    for (int i = 0; i < xkb->map->num_types; ++i)
        map.types.push_back(typeFrom(xkb->map->types[i]));
    for (int keycode = map.minKeycode; keycode <= map.maxKeycode; ++keycode)
        map.keys[static_cast<std::size_t>(keycode)] = keyFrom(xkb, keycode);

    map.levelModifiers = ShiftMask;
    if (XkbGetNames(m_display, XkbVirtualModNamesMask, xkb) == Success) {
        const std::uint8_t taken = modifiersNamed(
            m_display, xkb, {"Alt", "Meta", "Super", "Hyper", "NumLock", "ScrollLock"});
        map.levelModifiers |= (Mod3Mask | Mod5Mask) & ~taken;
    }
    XkbFreeKeyboard(xkb, 0, True);
    return map;
}

void XConnection::grabServer()
{
    XGrabServer(m_display);
}

void XConnection::ungrabServer()
{
    XUngrabServer(m_display);
    XFlush(m_display);
}

void XConnection::sendKeys(const std::vector<Keystroke> &keys, std::uint8_t ambientLocks,
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

void XConnection::lockModifiers(std::uint8_t locked)
{
    XkbLockModifiers(m_display, XkbUseCoreKbd, 0xff, locked);
    XFlush(m_display);
}

std::vector<XWindow> XConnection::inputMethods() const
{
    std::vector<XWindow> found;
    for (const unsigned long server : property(m_display, root(), atom("XIM_SERVERS"), XA_ATOM)) {
        if (const Window owner = XGetSelectionOwner(m_display, server))
            found.push_back(owner);
    }
    return found;
}

bool XConnection::keysRepeat() const
{
    XKeyboardState state{};
    XGetKeyboardControl(m_display, &state);
    return state.global_auto_repeat == AutoRepeatModeOn;
}

void XConnection::setKeysRepeat(bool repeat)
{
    repeat ? XAutoRepeatOn(m_display) : XAutoRepeatOff(m_display);
}

void XConnection::wakeTestKeyboard()
{
    XTestFakeKeyEvent(m_display, 255, False, 0);
}

bool XConnection::exists(XWindow window) const
{
    XWindowAttributes attributes;
    return XGetWindowAttributes(m_display, window, &attributes) != 0;
}

XWindow XConnection::pingableWindow(XWindow window) const
{
    const std::vector<XWindow> windows = ancestry(m_display, window);
    const auto found = std::find_if(windows.begin(), windows.end(),
                                    [this](XWindow each) { return answersPings(each); });
    return found == windows.end() ? 0 : *found;
}

bool XConnection::answersPings(XWindow window) const
{
    const std::vector<unsigned long> protocols =
        property(m_display, window, atom("WM_PROTOCOLS"), XA_ATOM);
    return std::find(protocols.begin(), protocols.end(), atom("_NET_WM_PING")) != protocols.end();
}

std::vector<XWindow> XConnection::pingableCompanions(XWindow window) const
{
    const auto processOf = [this](XWindow each) {
        const auto pid = property(m_display, each, atom("_NET_WM_PID"), XA_CARDINAL);
        return pid.empty() ? 0 : pid.front();
    };
    std::vector<XWindow> found;
    const std::vector<XWindow> own = ancestry(m_display, window);
    unsigned long process = 0;
    for (const XWindow each : own) {
        if (!process)
            process = processOf(each);
    }
    Window rootWindow = 0;
    Window parent = 0;
    Window *children = nullptr;
    unsigned count = 0;
    if (process && XQueryTree(m_display, root(), &rootWindow, &parent, &children, &count)) {
        std::copy_if(children, children + count, std::back_inserter(found), [&](XWindow each) {
            return each != own.back() && processOf(each) == process && answersPings(each);
        });
    }
    if (children)
        XFree(children);
    for (const XWindow each : inputMethods()) {
        if (const XWindow answering = pingableWindow(each))
            found.push_back(answering);
    }
    return found;
}

void XConnection::ping(XWindow window, std::uint32_t number)
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
}

void XConnection::requestFence()
{
    const long nothing = 0;
    XChangeProperty(m_display, m_ownWindow, XA_INTEGER, XA_INTEGER, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char *>(&nothing), 1);
    XFlush(m_display);
}

void XConnection::flush()
{
    XFlush(m_display);
}

} // namespace platform::linux_
