// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/KeyboardEvents.h"
#include "platform/linux/keyboard/BorrowedKeys.h"
#include "platform/linux/keyboard/CharacterBanks.h"
#include "platform/linux/keyboard/FlowControl.h"
#include "platform/linux/keyboard/IndentRemoval.h"
#include "platform/linux/keyboard/InputWatch.h"
#include "platform/linux/keyboard/Pings.h"
#include "platform/linux/keyboard/TypingPlan.h"

#include <optional>
#include <vector>

namespace platform::linux_
{

/// What typing works with at a server, for all texts.
struct TypingTools {
    KeyServer &server;
    InputWatch &watch;
    BorrowedKeys &borrowed;
    Pings &pings;
    const Clock &clock;
};

/// Types one text: plans its keys, and sends them in bursts as the program keeps up. Made once the
/// first key may be sent. Main thread only.
class TypingRun
{
public:
    TypingRun(const TypingTools &tools, TypingTarget &target, const KeyServer::Moment &moment);

    /// False when the keyboard cannot type the text.
    bool plan(const QList<KeyboardEvent> &events);

    enum class Step {
        GoOn,
        Typed,
        /// The input does not show what was typed.
        Failed,
        /// The user, or whatever has the focus now, ended it.
        Stopped,
    };
    Step next();

    /// Takes note of what has arrived, and tells whether the program has taken all keys.
    bool isDrained();
    /// Whether keys may have reached another input.
    bool mayBeElsewhere() const;

private:
    bool cutPlan(const KeyboardMap &map);
    bool mayGoOn();
    void updateFlow();
    bool mayIndentHere() const;
    enum class Indent { None, BeingRemoved, Stopped };
    Indent removeIndent();
    std::size_t sendable();
    std::optional<Keystroke> strokeFor(const PlannedKey &key) const;
    bool sendBurst(std::size_t count);
    bool post(const std::vector<Keystroke> &strokes);

    const TypingTools m_tools;
    TypingTarget &m_target;
    const WindowId m_focus;
    const int m_group;
    std::uint8_t m_locked;
    /// The locks under which the layout's keys type what they are planned for.
    std::uint8_t m_ambient = 0;
    const bool m_softLineBreaks;
    std::vector<PlannedKey> m_keys;
    std::uint8_t m_returnKey = 0;
    std::uint8_t m_tabKey = 0;
    std::uint8_t m_backSpaceKey = 0;
    std::optional<FlowControl> m_flow;
    std::optional<CharacterBanks> m_banks;
    IndentRemoval m_indent;
    Milliseconds m_lastFocusCheck{0};
    bool m_focusLost = false;
};

} // namespace platform::linux_
