// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/diagnosis/DisplayFacts.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace platform::linux_
{

namespace
{

/// What the panels, the focus and the tray rely on (Extended Window Manager Hints).
constexpr const char *neededHints[] = {"_NET_ACTIVE_WINDOW", "_NET_CLIENT_LIST_STACKING",
                                       "_NET_WM_STATE", "_NET_WM_STATE_SKIP_TASKBAR",
                                       "_NET_WM_STATE_SKIP_PAGER"};
/// What XTestKeyboard opens its connection with.
constexpr const char *typingExtensions[] = {"XTEST", "XKEYBOARD", "XInputExtension"};
constexpr std::uint32_t maxPropertyWords = 16 * 1024;

struct Free {
    void operator()(void *reply) const { std::free(reply); }
};
template <typename T> using Reply = std::unique_ptr<T, Free>;

class Display
{
public:
    Display()
        : m_connection(xcb_connect(nullptr, &m_screen))
    {
        xcb_screen_iterator_t it = xcb_setup_roots_iterator(xcb_get_setup(m_connection));
        for (int i = 0; isOpen() && it.rem > 0; xcb_screen_next(&it), ++i) {
            if (i == m_screen)
                m_root = it.data->root;
        }
    }
    ~Display() { xcb_disconnect(m_connection); }
    Display(const Display &) = delete;
    Display &operator=(const Display &) = delete;

    bool isOpen() const { return !xcb_connection_has_error(m_connection); }
    xcb_window_t root() const { return m_root; }
    int screen() const { return m_screen; }

    xcb_atom_t atom(const QByteArray &name) const
    {
        const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
            m_connection,
            xcb_intern_atom(m_connection, 0, std::uint16_t(name.size()), name.constData()),
            nullptr));
        return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    }

    QByteArray property(xcb_window_t window, const QByteArray &name) const
    {
        const Reply<xcb_get_property_reply_t> reply(
            xcb_get_property_reply(m_connection,
                                   xcb_get_property(m_connection, 0, window, atom(name),
                                                    XCB_ATOM_ANY, 0, maxPropertyWords),
                                   nullptr));
        if (!reply)
            return {};
        return {static_cast<const char *>(xcb_get_property_value(reply.get())),
                xcb_get_property_value_length(reply.get())};
    }

    QList<std::uint32_t> numbers(xcb_window_t window, const QByteArray &name) const
    {
        const QByteArray bytes = property(window, name);
        QList<std::uint32_t> result(bytes.size() / qsizetype(sizeof(std::uint32_t)));
        std::copy_n(bytes.constData(), result.size() * qsizetype(sizeof(std::uint32_t)),
                    reinterpret_cast<char *>(result.data()));
        return result;
    }

    bool hasExtension(const QByteArray &name) const
    {
        const Reply<xcb_query_extension_reply_t> reply(xcb_query_extension_reply(
            m_connection,
            xcb_query_extension(m_connection, std::uint16_t(name.size()), name.constData()),
            nullptr));
        return reply && reply->present;
    }

    bool hasOwner(const QByteArray &selection) const
    {
        const Reply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
            m_connection, xcb_get_selection_owner(m_connection, atom(selection)), nullptr));
        return reply && reply->owner != XCB_NONE;
    }

    /// Keycodes to which the keyboard map gives nothing.
    int spareKeys() const
    {
        const xcb_setup_t *setup = xcb_get_setup(m_connection);
        const int count = setup->max_keycode - setup->min_keycode + 1;
        const Reply<xcb_get_keyboard_mapping_reply_t> reply(xcb_get_keyboard_mapping_reply(
            m_connection,
            xcb_get_keyboard_mapping(m_connection, setup->min_keycode, std::uint8_t(count)),
            nullptr));
        if (!reply)
            return 0;
        const xcb_keysym_t *symbols = xcb_get_keyboard_mapping_keysyms(reply.get());
        int spare = 0;
        for (int key = 0; key < count; ++key) {
            const xcb_keysym_t *first = symbols + key * reply->keysyms_per_keycode;
            spare += std::all_of(first, first + reply->keysyms_per_keycode,
                                 [](xcb_keysym_t symbol) { return symbol == 0; });
        }
        return spare;
    }

private:
    int m_screen = 0;
    xcb_connection_t *m_connection;
    xcb_window_t m_root = XCB_NONE;
};

} // namespace

QHash<std::int32_t, QString> addDisplayFacts(SystemFacts &facts)
{
    const Display display;
    facts.hasDisplay = display.isOpen();
    if (!facts.hasDisplay)
        return {};

    const QList<std::uint32_t> check = display.numbers(display.root(), "_NET_SUPPORTING_WM_CHECK");
    if (!check.isEmpty()) {
        const QByteArray name = display.property(check.first(), "_NET_WM_NAME");
        facts.windowManager =
            name.isEmpty() ? QStringLiteral("a window manager") : QString::fromUtf8(name);
        const QList<std::uint32_t> supported = display.numbers(display.root(), "_NET_SUPPORTED");
        for (const char *hint : neededHints) {
            if (!supported.contains(display.atom(hint)))
                facts.missingHints.append(QString::fromLatin1(hint));
        }
    }
    facts.hasTray = display.hasOwner("_NET_SYSTEM_TRAY_S" + QByteArray::number(display.screen()));
    for (const char *extension : typingExtensions) {
        if (!display.hasExtension(extension))
            facts.missingForTyping.append(QString::fromLatin1(extension));
    }
    facts.spareKeys = display.spareKeys();

    QHash<std::int32_t, QString> programs;
    for (const xcb_window_t window : display.numbers(display.root(), "_NET_CLIENT_LIST")) {
        const QList<std::uint32_t> pid = display.numbers(window, "_NET_WM_PID");
        // WM_CLASS is two strings, instance and class, each with its NUL (ICCCM 4.1.2.5).
        const QList<QByteArray> classes = display.property(window, "WM_CLASS").split('\0');
        if (!pid.isEmpty() && classes.size() > 1)
            programs.insert(std::int32_t(pid.first()), QString::fromUtf8(classes[1]));
    }
    return programs;
}

} // namespace platform::linux_
