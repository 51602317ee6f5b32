// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/wayland/typing/StreamTypist.h"

#include "platform/linux/wayland/typing/Keymap.h"

#include <algorithm>

namespace platform::linux_
{

namespace
{

/// Where the input does not say how much it holds, keys go by time: milliseconds for each.
constexpr qint64 blindPause = 2;

/// Keys on their way; as many more would fill a program's queue for no gain.
constexpr std::size_t maxAhead = 384;
constexpr int tick = 2;
constexpr char32_t maxBasic = 0xffff;

} // namespace

StreamTypist::StreamTypist(std::unique_ptr<KeyStream> stream, const Patience &patience)
    : m_stream(std::move(stream))
    , m_patience(patience)
{
    m_clock.start();
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &StreamTypist::step);
}

StreamTypist::~StreamTypist()
{
    m_stream->end();
}

void StreamTypist::type(std::unique_ptr<TypingTarget> target, const QList<KeyboardEvent> &events,
                        std::function<void(TypingResult)> completion)
{
    m_waiting.push_back({std::move(target), events, std::move(completion)});
    if (!m_isActive)
        startNext();
}

void StreamTypist::startNext()
{
    if (m_waiting.empty())
        return;
    m_current = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_isActive = true;
    m_isTyping = false;
    m_askedWhetherReady.reset();
    m_start = m_clock.elapsed();
    m_timer.start(0);
}

void StreamTypist::step()
{
    if (!m_isActive)
        return;
    if (!m_current.target)
        finish(TypingResult::NoTarget);
    else if (m_isTyping)
        advance();
    else
        wait();
}

void StreamTypist::wait()
{
    const qint64 now = m_clock.elapsed();
    if (!m_current.target->hasFocus()) {
        if (now - m_start > m_patience.focus)
            finish(TypingResult::NoTarget);
        else
            m_timer.start(tick);
        return;
    }
    if (!m_current.target->isReadyForKeys()) {
        if (!m_askedWhetherReady)
            m_askedWhetherReady = now;
        if (now - *m_askedWhetherReady > m_patience.readiness)
            finish(TypingResult::Interrupted);
        else
            m_timer.start(tick);
        return;
    }
    if (!plan() || !m_stream->begin()) {
        finish(TypingResult::Failed);
        return;
    }
    m_isTyping = true;
    m_lastProgress = m_clock.elapsed();
    m_timer.start(0);
}

bool StreamTypist::plan()
{
    TypingTarget &target = *m_current.target;
    // The user's layout plays no part: every character has a key on a map of ours.
    m_keys = planKeys(m_current.events, {}, {target.needsSoftLineBreaks(), target.takesTabs()});
    // Half of such a character would be another one.
    if (target.cutsCharacters() &&
        std::any_of(m_keys.begin(), m_keys.end(),
                    [](const PlannedKey &key) { return key.codePoint > maxBasic; }))
        return false;
    const auto segments = cutIntoSegments(m_keys, keymap::capacity, keymap::capacity);
    if (!segments)
        return false;
    m_segments = *segments;
    m_segment = 0;
    m_sent = 0;
    m_shown = 0;
    const bool grows = std::none_of(m_keys.begin(), m_keys.end(), [](const PlannedKey &key) {
        return key.kind == PlannedKey::Kind::BackSpace;
    });
    m_readBack =
        grows ? ReadBack(target.characterCount(), target.selectedCharacterCount()) : ReadBack();
    return true;
}

void StreamTypist::advance()
{
    TypingTarget &target = *m_current.target;
    const qint64 now = m_clock.elapsed();
    if (!target.hasFocus()) {
        finish(m_shown < m_sent ? TypingResult::Misplaced : TypingResult::Interrupted);
        return;
    }
    const std::size_t before = m_shown;
    if (m_sent > 0 && m_readBack.useful())
        m_readBack.observe(target.characterCount(), m_sent, Milliseconds(now));
    m_shown = m_readBack.useful() ? m_readBack.confirmed() : m_sent;
    if (m_shown != before)
        m_lastProgress = now;
    if (m_sent == m_keys.size() && m_shown == m_sent) {
        finish(TypingResult::Typed);
        return;
    }
    if (now - m_lastProgress > m_patience.progress) {
        finish(m_sent == m_keys.size() ? TypingResult::Failed : TypingResult::Interrupted);
        return;
    }
    const std::size_t sentBefore = m_sent;
    if (!sendSome()) {
        finish(TypingResult::Failed);
        return;
    }
    m_timer.start(m_readBack.useful() ? tick : int(qint64(m_sent - sentBefore) * blindPause));
}

// A burst of keys; where it comes to the end of a map, the next map goes with it.
bool StreamTypist::sendSome()
{
    // What a frame in a page that takes the focus can get.
    const std::size_t ahead = m_current.target->maxUnconfirmedKeys().value_or(maxAhead);
    const std::size_t end = std::min(m_keys.size(), m_shown + ahead);
    if (m_sent >= end)
        return true;
    const bool softLineBreaks = m_current.target->needsSoftLineBreaks();
    for (; m_sent < end; ++m_sent) {
        while (m_sent == m_segments[m_segment].end)
            ++m_segment;
        const Segment &segment = m_segments[m_segment];
        if (m_sent == segment.begin && !m_stream->setMap(keymap::text(segment.characters)))
            return false;
        const PlannedKey &key = m_keys[m_sent];
        switch (key.kind) {
        case PlannedKey::Kind::LineBreak:
            m_stream->tap(keymap::returnKey, softLineBreaks);
            break;
        case PlannedKey::Kind::Tab:
            m_stream->tap(keymap::tabKey, false);
            break;
        case PlannedKey::Kind::BackSpace:
            m_stream->tap(keymap::backSpaceKey, false);
            break;
        case PlannedKey::Kind::Character: {
            const auto found =
                std::find(segment.characters.begin(), segment.characters.end(), key.codePoint);
            m_stream->tap(keymap::keyAt(std::size_t(found - segment.characters.begin())), false);
            break;
        }
        }
    }
    return m_stream->flush();
}

void StreamTypist::finish(TypingResult result)
{
    m_timer.stop();
    m_stream->end();
    m_keys.clear();
    m_segments.clear();
    const auto completion = std::move(m_current.completion);
    m_current = {};
    QTimer::singleShot(0, this, [this, completion, result] {
        m_isActive = false;
        if (completion)
            completion(result);
        if (!m_isActive)
            startNext();
    });
}

} // namespace platform::linux_
