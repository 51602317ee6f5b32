// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/TypingRun.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>

namespace platform::linux_
{

namespace
{

// The core protocol's modifier bits.
constexpr std::uint8_t shiftModifier = 1;
constexpr std::uint8_t capsLock = 2;
constexpr std::uint8_t numLock = 16;

constexpr Milliseconds focusPause{25};

} // namespace

TypingRun::TypingRun(const TypingTools &tools, TypingTarget &target,
                     const KeyServer::Moment &moment)
    : m_tools(tools)
    , m_target(target)
    , m_focus(moment.focus)
    , m_group(moment.group)
    , m_locked(moment.lockedModifiers)
    , m_softLineBreaks(target.needsSoftLineBreaks())
    , m_indent(target)
{
}

bool TypingRun::plan(const QList<KeyboardEvent> &events)
{
    m_tools.watch.start(m_focus);
    m_tools.server.wakeKeyboard();
    const KeyboardMap map = m_tools.server.readMap();
    // Chromium makes a capital of what a borrowed key types while Caps Lock is on.
    if (!m_tools.borrowed.begin(map, m_locked, capsLock))
        return false;
    m_locked &= static_cast<std::uint8_t>(~capsLock);
    m_ambient = m_locked & numLock;
    const KeyboardMap::Lookup layout = map.lookup(m_group, m_ambient);
    m_keys = planKeys(events, layout, {m_softLineBreaks, m_target.takesTabs()});
    m_returnKey = layout.functionKey(XKB_KEY_Return).value_or(0);
    m_tabKey = layout.functionKey(XKB_KEY_Tab).value_or(0);
    m_backSpaceKey = layout.functionKey(XKB_KEY_BackSpace).value_or(0);
    for (const PlannedKey &key : m_keys) {
        if ((key.kind == PlannedKey::Kind::LineBreak && !m_returnKey) ||
            (key.kind == PlannedKey::Kind::Tab && !m_tabKey) ||
            (key.kind == PlannedKey::Kind::BackSpace && !m_backSpaceKey))
            return false;
    }
    m_tools.pings.begin(m_tools.server.pingableWindow(m_focus));
    if (!cutPlan(map))
        return false;
    const bool oneByOne = m_target.mayReorderKeys() && m_tools.server.hasInputMethod();
    // What a deletion leaves cannot be told from its count beforehand.
    const bool grows = std::none_of(m_keys.begin(), m_keys.end(), [](const PlannedKey &key) {
        return key.kind == PlannedKey::Kind::BackSpace;
    });
    m_flow.emplace(m_tools.pings, m_target, grows, oneByOne, m_tools.clock);
    m_tools.watch.poll();
    m_tools.watch.clearMapChange();
    return true;
}

// Cuts the plan into what the borrowed keys can hold at a time.
bool TypingRun::cutPlan(const KeyboardMap &map)
{
    const auto cut = [this] {
        return cutIntoSegments(m_keys, m_tools.borrowed.wholeCapacity(),
                               m_tools.borrowed.bankCapacity());
    };
    auto segments = cut();
    // Every change of the map takes all programs a while: rather one large map than many small.
    if ((!segments || segments->size() > 1) && m_tools.borrowed.takeLayoutKeys(map)) {
        for (PlannedKey &key : m_keys) {
            if (key.onLayout && m_tools.borrowed.lends(key.onLayout->keycode))
                key.onLayout.reset();
        }
        segments = cut();
    }
    if (!segments)
        return false;
    const bool borrows =
        std::any_of(segments->begin(), segments->end(),
                    [](const Segment &segment) { return !segment.characters.empty(); });
    const bool asksCompanions = borrows && m_tools.pings.answers();
    m_banks.emplace(
        m_tools.server, m_tools.watch, m_tools.borrowed, m_tools.pings, std::move(*segments),
        asksCompanions ? m_tools.server.pingableCompanions(m_focus) : std::vector<WindowId>{},
        m_tools.clock);
    return true;
}

TypingRun::Step TypingRun::next()
{
    if (!mayGoOn())
        return Step::Stopped;
    updateFlow();
    if (m_flow->sentKeys() == m_keys.size() && m_flow->allTaken()) {
        if (m_flow->allShown() && removeIndent() == Indent::None)
            return Step::Typed;
        if (m_flow->settledElsewhere())
            return Step::Failed;
    }
    if (m_flow->stalled())
        return Step::Stopped;
    m_banks->update(m_flow->handled());
    const Indent indent = removeIndent();
    const std::size_t count = indent == Indent::None ? sendable() : 0;
    if (indent == Indent::Stopped || (count > 0 && !sendBurst(count)))
        return Step::Stopped;
    return Step::GoOn;
}

bool TypingRun::isDrained()
{
    updateFlow();
    return m_flow->allTaken();
}

bool TypingRun::mayBeElsewhere() const
{
    return m_focusLost && m_flow && !m_flow->allShown();
}

bool TypingRun::mayGoOn()
{
    if (m_tools.watch.focusLost())
        m_focusLost = true;
    if (m_focusLost || m_tools.watch.userActed() || m_tools.watch.mapChanged())
        return false;
    const Milliseconds now = m_tools.clock.now();
    if (now - m_lastFocusCheck < focusPause)
        return true;
    m_lastFocusCheck = now;
    m_focusLost = !m_target.hasFocus();
    return !m_focusLost;
}

void TypingRun::updateFlow()
{
    const bool allSent = m_flow->sentKeys() == m_keys.size();
    m_flow->update(allSent || m_banks->waiting() || mayIndentHere());
}

// Whether the last key sent is a line break that an editor may have indented after.
bool TypingRun::mayIndentHere() const
{
    return m_flow->sentKeys() > 0 && m_keys[m_flow->sentKeys() - 1].mayIndent;
}

TypingRun::Indent TypingRun::removeIndent()
{
    if (!mayIndentHere() || m_softLineBreaks || !m_backSpaceKey || !m_flow->readsBack())
        return Indent::None;
    if (!m_flow->allShown() || !m_flow->allTaken())
        return Indent::BeingRemoved;
    switch (m_indent.next(m_flow->sentKeys(), m_tools.clock.now())) {
    case IndentRemoval::Step::Done:
        return Indent::None;
    case IndentRemoval::Step::Keep:
        m_flow->acceptExcess();
        return Indent::None;
    case IndentRemoval::Step::Wait:
        return Indent::BeingRemoved;
    case IndentRemoval::Step::Delete:
        break;
    }
    return post({Keystroke{m_backSpaceKey, 0}}) ? Indent::BeingRemoved : Indent::Stopped;
}

// How many keys may be sent now. A burst ends at a line break after which there may be something to
// remove.
std::size_t TypingRun::sendable()
{
    const std::size_t first = m_flow->sentKeys();
    m_banks->reach(first);
    if (!m_banks->ready())
        return 0;
    const std::size_t most = std::min(m_flow->room(), m_banks->end() - first);
    std::size_t count = 0;
    while (count < most && (count == 0 || !m_keys[first + count - 1].mayIndent))
        ++count;
    return count;
}

std::optional<Keystroke> TypingRun::strokeFor(const PlannedKey &key) const
{
    switch (key.kind) {
    case PlannedKey::Kind::LineBreak:
        return Keystroke{m_returnKey, m_softLineBreaks ? shiftModifier : std::uint8_t{0}};
    case PlannedKey::Kind::Tab:
        return Keystroke{m_tabKey, 0};
    case PlannedKey::Kind::BackSpace:
        return Keystroke{m_backSpaceKey, 0};
    case PlannedKey::Kind::Character:
        break;
    }
    return key.onLayout ? key.onLayout : m_banks->keyFor(key.codePoint);
}

bool TypingRun::sendBurst(std::size_t count)
{
    const std::size_t first = m_flow->sentKeys();
    std::vector<Keystroke> strokes;
    std::size_t utf16Units = 0;
    for (std::size_t i = first; i < first + count; ++i) {
        const std::optional<Keystroke> stroke = strokeFor(m_keys[i]);
        if (!stroke)
            return false;
        strokes.push_back(*stroke);
        utf16Units += m_keys[i].codePoint > 0xffff ? 2 : 1;
    }
    if (!post(strokes))
        return false;
    m_flow->sent(count, utf16Units);
    return true;
}

// Sends keys if the focus and the user's modifiers are still what they were.
bool TypingRun::post(const std::vector<Keystroke> &strokes)
{
    // No client can move the focus between the check and the keys.
    m_tools.server.grab();
    const std::optional<KeyServer::Moment> moment = m_tools.server.look();
    m_tools.watch.poll();
    const bool unchanged = moment && moment->focus == m_focus && moment->group == m_group &&
                           moment->heldModifiers == 0 && moment->lockedModifiers == m_locked;
    const bool allowed = unchanged && !m_tools.watch.userActed() && !m_tools.watch.focusLost() &&
                         !m_tools.watch.mapChanged();
    if (allowed) {
        for (const Keystroke &stroke : strokes)
            m_tools.watch.expectPress(stroke.keycode);
        m_tools.server.sendKeys(strokes, m_ambient, m_locked);
    }
    m_tools.server.ungrab();
    return allowed;
}

} // namespace platform::linux_
