// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/keyboard/Clock.h"
#include "platform/linux/keyboard/KeyServer.h"
#include "platform/linux/ports/TypingTarget.h"

#include <QString>

#include <deque>
#include <functional>
#include <string>

#include <xkbcommon/xkbcommon.h>

namespace fake
{

using namespace platform::linux_;

struct Clock : platform::linux_::Clock {
    Milliseconds time{1000};
    Milliseconds now() const override { return time; }
};

constexpr WindowId inputWindow = 77;
constexpr WindowId companion = 78;
constexpr std::uint8_t shift = 1;
constexpr std::uint8_t capsLock = 2;
/// The layout's keys; those from the first spare one on are empty.
constexpr std::uint8_t keyA = 38;
constexpr std::uint8_t keyReturn = 36;
constexpr std::uint8_t firstSpare = 200;
constexpr int spareKeys = 8;
/// Two levels each: a bank of two keys holds four characters.
constexpr int bankSize = 4;

/// An X server with one program, which takes what is typed. It has a keyboard of a few keys and
/// records what was asked of it.
class KeyServer : public platform::linux_::KeyServer
{
public:
    KeyServer()
    {
        own.keys.resize(256);
        own.types.resize(6);
        for (int i = 0; i < 6; ++i)
            own.types[static_cast<std::size_t>(i)].realModifiers =
                static_cast<unsigned long>(i) * 4;
        map.types = {{0, 1, {}}, {shift, 2, {{true, shift, 1}}},
                     {0, 1, {}}, {0, 1, {}},
                     {0, 1, {}}, {shift, 2, {}}};
        for (std::size_t keycode = 8; keycode < 256; ++keycode) {
            own.keys[keycode].keycode = static_cast<std::uint8_t>(keycode);
            if (keycode < firstSpare || keycode >= firstSpare + spareKeys)
                addKey(static_cast<std::uint8_t>(keycode), {XKB_KEY_F1});
        }
        addKey(keyA, {'a', 'A'});
        addKey(65, {' '});
        addKey(keyReturn, {XKB_KEY_Return});
        addKey(22, {XKB_KEY_BackSpace});
    }

    KeyboardMap map;
    RawMap own;
    Moment moment{inputWindow, 0, 0, 0, false};
    bool broken = false;
    bool otherTypist = false;
    bool ourTypist = false;
    bool repeats = true;
    std::vector<unsigned long> kept;
    int mapChanges = 0;
    std::deque<Event> events;

    /// The program: what it has been typed, whether it answers pings at once, and which it owes.
    std::u32string typed;
    bool answersPings = true;
    std::vector<Pong> owed;
    std::vector<WindowId> companions;
    std::vector<Keystroke> keys;
    std::uint8_t locksWhileTyping = 0;
    /// Called with each key, before the program takes it.
    std::function<void()> onKey = [] {};

    void addKey(std::uint8_t keycode, const std::vector<std::uint32_t> &keysyms)
    {
        const int type = keysyms.size() > 1 ? 1 : 0;
        map.keys[keycode].groups = {{type, keysyms}};
        own.keys[keycode] = {keycode,
                             1,
                             static_cast<std::uint8_t>(keysyms.size()),
                             {static_cast<std::uint8_t>(type)},
                             {keysyms.begin(), keysyms.end()}};
    }
    void answerPings()
    {
        for (const Pong &pong : std::exchange(owed, {}))
            events.push_back(pong);
    }

    bool isBroken() const override { return broken; }
    std::optional<Moment> look() override { return moment; }
    void grab() override {}
    void ungrab() override {}
    void sendKeys(const std::vector<Keystroke> &strokes, std::uint8_t,
                  std::uint8_t lockedBefore) override
    {
        locksWhileTyping |= lockedBefore;
        for (const Keystroke &stroke : strokes) {
            onKey();
            keys.push_back(stroke);
            events.push_back(KeyPressed{stroke.keycode, true});
            const RawKey &key = own.keys[stroke.keycode];
            const std::size_t level = stroke.modifiers & shift ? 1 : 0;
            if (level >= key.keysyms.size())
                continue;
            const auto keysym = static_cast<std::uint32_t>(key.keysyms[level]);
            if (keysym == XKB_KEY_Return)
                typed += U'\n';
            else if (keysym == XKB_KEY_BackSpace)
                typed += U'\b';
            else
                typed += static_cast<char32_t>(xkb_keysym_to_utf32(keysym));
        }
    }
    void lockModifiers(std::uint8_t locked) override { moment.lockedModifiers = locked; }
    bool keysRepeat() override { return repeats; }
    void setKeysRepeat(bool repeat) override { repeats = repeat; }
    void wakeKeyboard() override {}
    KeyboardMap readMap() override { return map; }
    std::optional<RawMap> readOwnMap() override { return own; }
    void changeOwnMap(const std::vector<RawKey> &changed,
                      std::optional<std::pair<int, RawType>> type) override
    {
        ++mapChanges;
        for (const RawKey &key : changed)
            own.keys[key.keycode] = key;
        if (type)
            own.types[static_cast<std::size_t>(type->first)] = type->second;
        events.push_back(MapChanged{});
    }
    bool hasTypist() override { return otherTypist || ourTypist; }
    void setTypist(bool isUs) override { ourTypist = isUs; }
    std::vector<unsigned long> note() override { return kept; }
    void setNote(const std::vector<unsigned long> &note) override { kept = note; }
    void deleteNote() override { kept.clear(); }
    bool exists(WindowId window) override { return window == moment.focus; }
    WindowId pingableWindow(WindowId window) override { return window; }
    std::vector<WindowId> pingableCompanions(WindowId) override { return companions; }
    bool hasInputMethod() override { return false; }
    void ping(WindowId window, std::uint32_t number) override
    {
        owed.push_back({window, number});
        if (answersPings)
            answerPings();
    }
    void requestFence() override { events.push_back(Fence{}); }
    void watch(WindowId) override {}
    void unwatch() override {}
    std::optional<Event> nextEvent() override
    {
        if (events.empty())
            return std::nullopt;
        const Event event = events.front();
        events.pop_front();
        return event;
    }
};

/// The program's input. It shows what was typed, as far as `shows` lets it.
class Target : public TypingTarget
{
public:
    explicit Target(KeyServer &server)
        : m_server(server)
    {
    }

    bool focused = true;
    bool ready = true;
    bool countable = true;
    bool confirms = true;
    /// How many of the typed characters it shows at the most.
    std::size_t shows = 1'000'000;
    qint64 before = 0;
    qint64 selected = 0;
    std::optional<std::size_t> maxUnconfirmed;
    /// How often it was asked, and what happens meanwhile.
    int counts = 0;
    std::function<void()> onCount = [] {};

    bool hasFocus() override { return focused; }
    bool isReadyForKeys() override { return ready; }
    std::optional<qint64> characterCount() override
    {
        ++counts;
        onCount();
        if (!countable)
            return std::nullopt;
        const auto shown = static_cast<qint64>(std::min(shows, m_server.typed.size()));
        return shown > 0 ? before - selected + shown : before;
    }
    bool needsSoftLineBreaks() override { return maxUnconfirmed.has_value(); }
    qint64 selectedCharacterCount() override { return selected; }
    bool isSelectionReplaced() override { return selected > 0 && !m_server.typed.empty(); }
    std::optional<std::size_t> maxUnconfirmedKeys() override { return maxUnconfirmed; }
    bool isFocusConfirmed() override { return confirms; }

private:
    KeyServer &m_server;
};

} // namespace fake
