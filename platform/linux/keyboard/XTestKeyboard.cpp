#include "platform/linux/keyboard/XTestKeyboard.h"

#include "platform/linux/keyboard/BorrowedKeys.h"
#include "platform/linux/keyboard/InputWatch.h"
#include "platform/linux/keyboard/ReadBack.h"
#include "platform/linux/keyboard/TypingPlan.h"
#include "platform/linux/keyboard/XConnection.h"

#include <QElapsedTimer>
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <deque>

namespace platform::linux_
{

namespace
{

// The core protocol's modifier bits.
constexpr std::uint8_t shiftModifier = 1;
constexpr std::uint8_t capsLock = 2;
constexpr std::uint8_t numLock = 16;

// Keys in one burst: what goes out between two looks at the focus and the user's modifiers.
constexpr std::size_t burstSize = 48;
// Keys that the client has not taken from the server yet. The map may change once it has.
constexpr std::size_t mostUntaken = 256;
// Keys that the input does not show yet: what a client has to queue (a browser between its
// processes, where tens of thousands end it), and what it can misplace by moving its own focus.
constexpr std::size_t mostUnshown = 384;
// The same for a client of which we only know that it takes the keys, in keys and milliseconds, and
// for one that tells nothing at all.
constexpr std::size_t blindBurstSize = 16;
constexpr qint64 blindPause = 32;
constexpr qint64 deafPause = 80;

// Banks of borrowed keys that are mapped in one change of the map.
constexpr std::size_t banksAtOnce = 3;

// How long things may take, in milliseconds.
constexpr qint64 focusLimit = 2000;
constexpr qint64 heldModifiersLimit = 15000;
constexpr qint64 heldKeysLimit = 1000;
// A browser that lays out tens of thousands of characters anew for each key takes ten seconds for
// what may be on its way; the user can stop it with any key.
constexpr qint64 progressLimit = 60000;
// A count that stands still for so long after the last key will not come right.
constexpr qint64 settledAfter = 30000;
// Indentation that is still there so long after the key that deletes it cannot be deleted.
constexpr qint64 indentPatience = 3000;
// Asking the input costs it time: at most the fifth part.
constexpr qint64 readingPause = 8;
constexpr qint64 readingShare = 4;
constexpr qint64 focusPause = 25;
constexpr qint64 drainLimit = 5000;
constexpr qint64 pongLimit = 4000;
// A client that does not answer pings gets this long to fetch a new map.
constexpr qint64 deafMapPause = 150;

constexpr int tick = 2;

} // namespace

class XTestKeyboard::Engine : public QObject
{
public:
    Engine(TargetProvider provider, const QByteArray &displayName);
    ~Engine() override;

    void post(const QList<KeyboardEvent> &events, std::function<void(TypingResult)> completion);

private:
    struct Sequence {
        QList<KeyboardEvent> events;
        std::function<void(TypingResult)> completion;
    };
    enum class Phase {
        Idle,
        /// Until the input has the focus and the user's keys are up.
        Waiting,
        Typing,
        /// Until the keys on their way have been taken, so that the map can be restored.
        Draining,
    };
    /// What a bank of borrowed keys holds now.
    struct Bank {
        std::optional<std::size_t> segment;
        /// Whether the client knows that.
        bool settled = true;
        qint64 mappedAt = 0;
        /// Every window that has to answer, and which ping.
        std::vector<std::pair<XWindow, std::uint32_t>> pings;
    };

    void startNext();
    void step();
    void wait();
    bool plan(const XConnection::Moment &moment);
    void type();
    void confirm();
    std::vector<std::size_t> mappableSegments();
    void mapSegments();
    void settle(Bank &bank);
    bool mayGoOn();
    std::size_t sendable();
    bool sendBurst();
    bool post(const std::vector<Keystroke> &strokes);
    enum class Indent { None, BeingRemoved, Stopped };
    Indent removeIndent();
    std::optional<Keystroke> strokeFor(const PlannedKey &key, std::size_t segment) const;
    void drain(TypingResult result);
    void finish(TypingResult result);
    std::uint32_t sendPing(XWindow window);
    std::optional<int> bankOf(std::size_t segment) const;

    TargetProvider m_provider;
    std::unique_ptr<XConnection> m_connection;
    std::unique_ptr<InputWatch> m_watch;
    std::unique_ptr<BorrowedKeys> m_borrowed;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QTimer m_timer;
    QElapsedTimer m_clock;

    std::deque<Sequence> m_waiting;
    Sequence m_current;
    Phase m_phase = Phase::Idle;
    TypingResult m_result = TypingResult::Typed;
    bool m_fenceRequested = false;

    std::unique_ptr<TypingTarget> m_target;
    bool m_softLineBreaks = false;
    /// Whether a key may only be sent once the one before it shows.
    bool m_oneByOne = false;
    std::vector<PlannedKey> m_keys;
    std::vector<Segment> m_segments;
    std::vector<Bank> m_banks;
    std::uint8_t m_returnKey = 0;
    std::uint8_t m_tabKey = 0;
    std::uint8_t m_backSpaceKey = 0;
    XWindow m_focus = 0;
    XWindow m_pingWindow = 0;
    /// Where else the client's keys may be looked up.
    std::vector<XWindow> m_companions;
    int m_group = 0;
    std::uint8_t m_locked = 0;
    std::uint8_t m_ambient = 0;

    ReadBack m_readBack;
    std::size_t m_sent = 0;
    /// The same in UTF-16 code units.
    std::size_t m_sentUnits = 0;
    /// How many of them the client has taken from the server.
    std::size_t m_taken = 0;
    /// How many of them are in the input's text, as far as that can be known.
    std::size_t m_shown = 0;
    std::size_t m_segment = 0;
    /// Whether a bank has been typed and may not be mapped anew yet.
    bool m_mapWaits = false;
    std::uint32_t m_lastPing = 0;
    std::deque<std::pair<std::uint32_t, std::size_t>> m_pings;
    /// The last line break after which the editor's indentation has been looked for.
    std::size_t m_indentChecked = 0;
    qint64 m_indentLeft = 0;
    qint64 m_indentKeySent = 0;
    qint64 m_pingsAnsweredAt = 0;
    /// The last ping of the sequence before.
    std::uint32_t m_pingBefore = 0;
    std::uint32_t m_indentPing = 0;
    qint64 m_phaseStart = 0;
    qint64 m_lastProgress = 0;
    qint64 m_lastBurst = 0;
    qint64 m_nextReading = 0;
    qint64 m_lastFocusCheck = 0;
};

XTestKeyboard::Engine::Engine(TargetProvider provider, const QByteArray &displayName)
    : m_provider(std::move(provider))
    , m_connection(XConnection::open(displayName))
{
    m_clock.start();
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &Engine::step);
    if (!m_connection)
        return;
    m_watch = std::make_unique<InputWatch>(*m_connection);
    m_borrowed = std::make_unique<BorrowedKeys>(*m_connection);
    m_borrowed->recover();
    m_notifier =
        std::make_unique<QSocketNotifier>(m_connection->fileDescriptor(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        m_watch->poll();
        if (m_connection->broken())
            m_notifier->setEnabled(false);
        if (m_phase != Phase::Idle)
            m_timer.start(0);
    });
}

XTestKeyboard::Engine::~Engine() = default;

void XTestKeyboard::Engine::post(const QList<KeyboardEvent> &events,
                                 std::function<void(TypingResult)> completion)
{
    m_waiting.push_back({events, std::move(completion)});
    if (m_phase == Phase::Idle)
        startNext();
}

void XTestKeyboard::Engine::startNext()
{
    if (m_waiting.empty())
        return;
    m_current = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_phase = Phase::Waiting;
    m_phaseStart = m_clock.elapsed();
    m_fenceRequested = false;
    m_target = m_provider ? m_provider() : nullptr;
    m_timer.start(0);
}

// Everything that follows blocks for no longer than the server takes to answer, once it has shown
// that no other client holds it.
void XTestKeyboard::Engine::step()
{
    if (m_phase == Phase::Idle)
        return;
    if (!m_connection || m_connection->broken()) {
        finish(TypingResult::Failed);
        return;
    }
    m_watch->poll();
    if (!m_fenceRequested) {
        m_fenceRequested = true;
        m_watch->clearFence();
        m_connection->requestFence();
        m_watch->poll();
    }
    if (!m_watch->fencePassed()) {
        // The notifier is quicker, but Xlib may have read the event together with another answer.
        m_timer.start(tick);
        return;
    }
    m_fenceRequested = false;
    switch (m_phase) {
    case Phase::Idle:
        return;
    case Phase::Waiting:
        wait();
        break;
    case Phase::Typing:
        type();
        break;
    case Phase::Draining:
        drain(m_result);
        break;
    }
    if (m_connection->broken() && m_phase != Phase::Idle)
        finish(TypingResult::Failed);
}

void XTestKeyboard::Engine::wait()
{
    const qint64 waited = m_clock.elapsed() - m_phaseStart;
    const std::optional<XConnection::Moment> moment = m_connection->look();
    if (!moment) {
        finish(TypingResult::Failed);
        return;
    }
    const bool focused = moment->focus != 0 && (!m_target || m_target->hasFocus());
    if (!focused && waited > focusLimit) {
        finish(TypingResult::Interrupted);
        return;
    }
    if (moment->heldModifiers && waited > heldModifiersLimit) {
        finish(TypingResult::Interrupted);
        return;
    }
    // A key that stays down for longer is stuck and repeats no more once another one is pressed.
    const bool held = moment->heldModifiers || (moment->keyHeld && waited < heldKeysLimit);
    if (!focused || held) {
        m_timer.start(5);
        return;
    }
    m_focus = moment->focus;
    m_watch->start(m_focus);
    m_connection->wakeTestKeyboard();
    m_pingWindow = m_connection->pingableWindow(m_focus);
    if (!plan(*moment)) {
        finish(TypingResult::Failed);
        return;
    }
    m_watch->poll();
    m_watch->clearMapChange();
    m_phase = Phase::Typing;
    m_lastProgress = m_lastBurst = m_clock.elapsed();
    m_timer.start(0);
}

bool XTestKeyboard::Engine::plan(const XConnection::Moment &moment)
{
    m_sent = m_sentUnits = m_taken = m_shown = m_segment = 0;
    m_mapWaits = false;
    m_nextReading = m_lastFocusCheck = 0;
    m_pings.clear();
    m_indentChecked = 0;
    m_indentLeft = 0;
    m_indentPing = 0;
    m_pingsAnsweredAt = m_clock.elapsed();
    m_pingBefore = m_lastPing;
    m_group = moment.group;
    m_locked = moment.lockedModifiers;

    const KeyboardMap map = m_connection->readMap();
    if (!m_borrowed->begin(map))
        return false;
    m_ambient = m_locked & (m_borrowed->ignoresCapsLock() ? capsLock | numLock : numLock);
    const KeyboardMap::Lookup layout = map.lookup(m_group, m_ambient);
    m_softLineBreaks = m_target && m_target->needsSoftLineBreaks();
    m_oneByOne = m_target && m_target->mayReorderKeys() && !m_connection->inputMethods().empty();
    m_keys =
        planKeys(m_current.events, layout, {m_softLineBreaks, m_target && m_target->takesTabs()});
    m_returnKey = layout.functionKey(XKB_KEY_Return).value_or(0);
    m_tabKey = layout.functionKey(XKB_KEY_Tab).value_or(0);
    m_backSpaceKey = layout.functionKey(XKB_KEY_BackSpace).value_or(0);
    for (const PlannedKey &key : m_keys) {
        if ((key.kind == PlannedKey::Kind::LineBreak && !m_returnKey) ||
            (key.kind == PlannedKey::Kind::Tab && !m_tabKey) ||
            (key.kind == PlannedKey::Kind::BackSpace && !m_backSpaceKey))
            return false;
    }
    const auto cut = [this] {
        return cutIntoSegments(m_keys, m_borrowed->wholeCapacity(), m_borrowed->bankCapacity());
    };
    auto segments = cut();
    // Every change of the map takes all programs a while: rather one large map than many small.
    if ((!segments || segments->size() > 1) && m_borrowed->takeLayoutKeys(map)) {
        for (PlannedKey &key : m_keys) {
            if (key.onLayout && m_borrowed->lends(key.onLayout->keycode))
                key.onLayout.reset();
        }
        segments = cut();
    }
    if (!segments)
        return false;
    m_segments = std::move(*segments);
    const bool borrows =
        std::any_of(m_segments.begin(), m_segments.end(),
                    [](const Segment &segment) { return !segment.characters.empty(); });
    m_companions = borrows && m_pingWindow ? m_connection->pingableCompanions(m_focus)
                                           : std::vector<XWindow>{};
    m_banks.assign(m_segments.size() == 1 ? 1 : BorrowedKeys::bankCount, {});
    // What a deletion leaves cannot be told from its count beforehand.
    const bool grows = std::none_of(m_keys.begin(), m_keys.end(), [](const PlannedKey &key) {
        return key.kind == PlannedKey::Kind::BackSpace;
    });
    m_readBack = m_target && grows
                     ? ReadBack(m_target->characterCount(), m_target->selectedCharacterCount())
                     : ReadBack();
    return true;
}

std::optional<int> XTestKeyboard::Engine::bankOf(std::size_t segment) const
{
    if (m_segments.size() == 1)
        return std::nullopt;
    return static_cast<int>(segment % BorrowedKeys::bankCount);
}

void XTestKeyboard::Engine::type()
{
    if (!mayGoOn()) {
        drain(TypingResult::Interrupted);
        return;
    }
    confirm();
    if (m_sent == m_keys.size() && m_taken == m_sent) {
        if (m_shown == m_sent && removeIndent() == Indent::None) {
            finish(TypingResult::Typed);
            return;
        }
        if (m_readBack.stillFor(m_clock.elapsed()) > settledAfter) {
            finish(TypingResult::Failed);
            return;
        }
    }
    if (m_clock.elapsed() - m_lastProgress > progressLimit) {
        drain(TypingResult::Interrupted);
        return;
    }
    mapSegments();
    for (Bank &bank : m_banks)
        settle(bank);
    const Indent indent = removeIndent();
    if (indent == Indent::Stopped) {
        drain(TypingResult::Interrupted);
        return;
    }
    if (indent == Indent::None && sendable() > 0) {
        if (!sendBurst()) {
            drain(TypingResult::Interrupted);
            return;
        }
        m_lastBurst = m_lastProgress = m_clock.elapsed();
    }
    m_timer.start(tick);
}

bool XTestKeyboard::Engine::mayGoOn()
{
    if (m_watch->userActed() || m_watch->focusLost() || m_watch->mapChanged())
        return false;
    const qint64 now = m_clock.elapsed();
    if (!m_target || now - m_lastFocusCheck < focusPause)
        return true;
    m_lastFocusCheck = now;
    return m_target->hasFocus();
}

// Moves m_taken and m_shown on to what is known now.
void XTestKeyboard::Engine::confirm()
{
    const qint64 now = m_clock.elapsed();
    const std::size_t before = m_taken + m_shown;
    // Some say that they answer and never do. Banks then settle by time, and keys count as taken
    // once they show.
    if (m_lastPing == m_pingBefore || m_watch->lastPong(m_pingWindow) > m_pingBefore)
        m_pingsAnsweredAt = now;
    if (m_pingWindow && now - m_pingsAnsweredAt > pongLimit) {
        m_pingWindow = 0;
        m_pings.clear();
    }
    if (m_pingWindow) {
        while (!m_pings.empty() && m_pings.front().first <= m_watch->lastPong(m_pingWindow)) {
            m_taken = m_pings.front().second;
            m_pings.pop_front();
        }
    }
    if (m_readBack.useful()) {
        // Only where the answer can change what we do next.
        const bool matters = !m_pingWindow || m_oneByOne || m_sent == m_keys.size() || m_mapWaits ||
                             m_sent - m_shown > mostUnshown / 2 || m_keys[m_sent - 1].mayIndent;
        if (m_sent > m_shown && matters && now >= m_nextReading) {
            m_readBack.observe(m_target->characterCount(), m_sent, now);
            m_shown = m_readBack.confirmed();
            const qint64 after = m_clock.elapsed();
            m_nextReading = after;
            if (!m_oneByOne)
                m_nextReading += std::max(readingPause, readingShare * (after - now));
        }
        if (!m_pingWindow)
            m_taken = m_shown;
    } else {
        if (!m_pingWindow && now - m_lastBurst >= deafPause)
            m_taken = m_sent;
        m_shown = m_taken;
    }
    if (m_taken + m_shown != before)
        m_lastProgress = now;
}

// The segments to come whose bank does not hold them yet and may be mapped anew, because all that
// it held is in the input. That the client has taken the keys is not enough where it is to be had:
// with an input method a browser looks them up once more when they come back from there.
std::vector<std::size_t> XTestKeyboard::Engine::mappableSegments()
{
    m_mapWaits = false;
    std::vector<std::size_t> found;
    const std::size_t last = std::min(m_segments.size(), m_segment + m_banks.size());
    for (std::size_t i = m_segment; i < last; ++i) {
        const Bank &bank = m_banks[i % m_banks.size()];
        if (bank.segment == i)
            continue;
        if (bank.segment && std::min(m_taken, m_shown) < m_segments[*bank.segment].end)
            m_mapWaits = true;
        else
            found.push_back(i);
    }
    return found;
}

// Maps banks anew while the keys of others are on their way: as many at once as are wanted to make
// it worth the time that every program takes for a new map, fewer when typing would wait for them.
void XTestKeyboard::Engine::mapSegments()
{
    const std::vector<std::size_t> segments = mappableSegments();
    if (segments.empty())
        return;
    const std::size_t next = segments.front();
    if (next != m_segment && segments.size() < std::min(banksAtOnce, m_segments.size() - next))
        return;
    std::vector<BorrowedKeys::Load> loads;
    std::vector<Bank *> changed;
    for (const std::size_t i : segments) {
        Bank &bank = m_banks[i % m_banks.size()];
        bank = {};
        bank.segment = i;
        if (m_segments[i].characters.empty())
            continue;
        loads.push_back({bankOf(i), m_segments[i].characters});
        changed.push_back(&bank);
    }
    if (loads.empty())
        return;
    m_borrowed->map(loads);
    // The round trip brings the notices of our own change.
    m_connection->look();
    m_watch->poll();
    m_watch->clearMapChange();
    for (Bank *bank : changed) {
        bank->settled = false;
        bank->mappedAt = m_clock.elapsed();
        if (!m_pingWindow)
            continue;
        bank->pings.emplace_back(m_pingWindow, sendPing(m_pingWindow));
        for (const XWindow companion : m_companions)
            bank->pings.emplace_back(companion, sendPing(companion));
    }
}

// A client follows a new map once it has answered a ping that came after the notice, on every
// connection that it looks keys up with: a browser asks its toolkit's, which it reads in another
// part of its event loop than the keys. What announces that it answers and does not is left out.
void XTestKeyboard::Engine::settle(Bank &bank)
{
    if (bank.settled)
        return;
    const qint64 waited = m_clock.elapsed() - bank.mappedAt;
    if (!m_pingWindow) {
        bank.settled = waited >= deafMapPause;
        return;
    }
    const auto answered = [this](const auto &ping) {
        return m_watch->lastPong(ping.first) >= ping.second;
    };
    bank.settled = std::all_of(bank.pings.begin(), bank.pings.end(), answered);
    if (bank.settled || waited <= pongLimit || !answered(bank.pings.front()))
        return;
    for (const auto &ping : bank.pings) {
        if (!answered(ping))
            std::erase(m_companions, ping.first);
    }
    bank.settled = true;
}

// How many keys may be sent now.
std::size_t XTestKeyboard::Engine::sendable()
{
    while (m_segment + 1 < m_segments.size() && m_sent == m_segments[m_segment].end)
        ++m_segment;
    Bank &bank = m_banks[m_segment % m_banks.size()];
    if (bank.segment != m_segment || !bank.settled)
        return 0;
    // A burst ends at a line break after which there may be something to remove.
    const std::size_t mostKeys = m_oneByOne ? 1 : burstSize;
    if (m_oneByOne && m_shown < m_sent)
        return 0;
    const std::size_t end = std::min(m_segments[m_segment].end, m_sent + mostKeys);
    std::size_t count = 0;
    while (m_sent + count < end && (count == 0 || !m_keys[m_sent + count - 1].mayIndent))
        ++count;
    if (m_readBack.useful()) {
        const std::size_t untaken = m_sent - m_taken;
        const std::size_t unshown = m_sent - m_shown;
        return std::min({count, burstSize, mostUntaken - std::min(mostUntaken, untaken),
                         mostUnshown - std::min(mostUnshown, unshown)});
    }
    if (m_sent > m_taken ||
        m_clock.elapsed() - m_lastBurst < (m_pingWindow ? blindPause : deafPause))
        return 0;
    return std::min(count, blindBurstSize);
}

std::optional<Keystroke> XTestKeyboard::Engine::strokeFor(const PlannedKey &key,
                                                          std::size_t segment) const
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
    return key.onLayout ? key.onLayout : m_borrowed->keyFor(bankOf(segment), key.codePoint);
}

bool XTestKeyboard::Engine::sendBurst()
{
    const std::size_t count = sendable();
    std::vector<Keystroke> strokes;
    for (std::size_t i = m_sent; i < m_sent + count; ++i) {
        const std::optional<Keystroke> stroke = strokeFor(m_keys[i], m_segment);
        if (!stroke)
            return false;
        strokes.push_back(*stroke);
    }
    if (!post(strokes))
        return false;
    for (std::size_t i = m_sent; i < m_sent + count; ++i)
        m_sentUnits += m_keys[i].codePoint > 0xffff ? 2 : 1;
    m_sent += count;
    if (m_pingWindow)
        m_pings.emplace_back(sendPing(m_pingWindow), m_sent);
    return true;
}

// Sends keys if the focus and the user's modifiers are still what they were.
bool XTestKeyboard::Engine::post(const std::vector<Keystroke> &strokes)
{
    // Nobody can move the focus between the check and the keys.
    m_connection->grabServer();
    const std::optional<XConnection::Moment> moment = m_connection->look();
    m_watch->poll();
    const bool unchanged = moment && moment->focus == m_focus && moment->group == m_group &&
                           moment->heldModifiers == 0 && moment->lockedModifiers == m_locked;
    const bool allowed =
        unchanged && !m_watch->userActed() && !m_watch->focusLost() && !m_watch->mapChanged();
    if (allowed) {
        for (const Keystroke &stroke : strokes)
            m_watch->expectPress(stroke.keycode);
        m_connection->sendKeys(strokes, m_ambient, m_locked);
    }
    m_connection->ungrabServer();
    return allowed;
}

// Editors that start a new line with the last one's indentation would indent the text twice. What
// they have added is deleted again, one key at a time, before the line goes on.
XTestKeyboard::Engine::Indent XTestKeyboard::Engine::removeIndent()
{
    if (m_sent == 0 || m_indentChecked == m_sent || !m_keys[m_sent - 1].mayIndent ||
        m_softLineBreaks || !m_pingWindow || !m_backSpaceKey || !m_readBack.useful())
        return Indent::None;
    if (m_shown < m_sent || m_taken < m_sent || m_watch->lastPong(m_pingWindow) < m_indentPing)
        return Indent::BeingRemoved;
    m_readBack.observe(m_target->characterCount(), m_sent, m_clock.elapsed());
    const ReadBack::Sent sent{m_sent, m_sentUnits};
    const qint64 excess = m_readBack.excess(sent);
    const bool unchanged = m_indentLeft > 0 && excess >= m_indentLeft;
    // The answered ping need not mean that the key has been handled: a toolkit may answer while
    // keys wait in a queue of its own.
    if (unchanged && m_clock.elapsed() - m_indentKeySent < indentPatience)
        return Indent::BeingRemoved;
    if (excess == 0 || unchanged) {
        m_readBack.acceptExcess(sent);
        m_indentChecked = m_sent;
        m_indentLeft = 0;
        return Indent::None;
    }
    m_indentLeft = excess;
    if (!post({Keystroke{m_backSpaceKey, 0}}))
        return Indent::Stopped;
    m_indentKeySent = m_clock.elapsed();
    m_indentPing = sendPing(m_pingWindow);
    return Indent::BeingRemoved;
}

std::uint32_t XTestKeyboard::Engine::sendPing(XWindow window)
{
    m_watch->expectPong(window, ++m_lastPing);
    m_connection->ping(window, m_lastPing);
    m_connection->flush();
    return m_lastPing;
}

void XTestKeyboard::Engine::drain(TypingResult result)
{
    if (m_phase != Phase::Draining) {
        m_phase = Phase::Draining;
        m_phaseStart = m_clock.elapsed();
        m_result = result;
    }
    confirm();
    if (m_taken == m_sent || m_clock.elapsed() - m_phaseStart > drainLimit ||
        !m_connection->exists(m_focus)) {
        finish(result);
        return;
    }
    m_timer.start(tick);
}

void XTestKeyboard::Engine::finish(TypingResult result)
{
    m_timer.stop();
    m_phase = Phase::Idle;
    if (m_connection && !m_connection->broken()) {
        m_watch->stop();
        m_borrowed->giveBack();
    }
    m_target.reset();
    m_keys.clear();
    m_segments.clear();
    const auto completion = std::move(m_current.completion);
    m_current = {};
    QTimer::singleShot(0, this, [this, completion, result] {
        if (completion)
            completion(result);
        if (m_phase == Phase::Idle)
            startNext();
    });
}

XTestKeyboard::XTestKeyboard(TargetProvider target, const QByteArray &displayName)
    : m_engine(std::make_unique<Engine>(std::move(target), displayName))
{
}

XTestKeyboard::~XTestKeyboard() = default;

void XTestKeyboard::CGEventPost(const QList<KeyboardEvent> &events,
                                std::function<void(TypingResult)> completion)
{
    m_engine->post(events, std::move(completion));
}

} // namespace platform::linux_
