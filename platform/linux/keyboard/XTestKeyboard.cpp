// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/XTestKeyboard.h"

#include "platform/linux/keyboard/BorrowedKeys.h"
#include "platform/linux/keyboard/CharacterBanks.h"
#include "platform/linux/keyboard/FlowControl.h"
#include "platform/linux/keyboard/IndentRemoval.h"
#include "platform/linux/keyboard/InputWatch.h"
#include "platform/linux/keyboard/Pings.h"
#include "platform/linux/keyboard/TypingPlan.h"
#include "platform/linux/keyboard/XConnection.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QSocketNotifier>
#include <QThread>
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

// How long things may take, in milliseconds.
constexpr qint64 focusLimit = 2000;
constexpr qint64 heldModifiersLimit = 15000;
constexpr qint64 heldKeysLimit = 1000;
constexpr qint64 readyLimit = 10000;
constexpr qint64 drainLimit = 5000;
constexpr qint64 focusPause = 25;

constexpr int tick = 2;

} // namespace

class XTestKeyboard::Engine : public QObject
{
public:
    Engine(InputMethods *methods, const QByteArray &displayName);
    ~Engine() override;

    void post(std::unique_ptr<TypingTarget> target, const QList<KeyboardEvent> &events,
              std::function<void(TypingResult)> completion);

private:
    struct Sequence {
        std::unique_ptr<TypingTarget> target;
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

    void startNext();
    void step();
    void wait();
    bool plan(const XConnection::Moment &moment);
    bool cutPlan(const KeyboardMap &map);
    void type();
    bool mayGoOn();
    void updateFlow();
    bool mayIndentHere() const;
    enum class Indent { None, BeingRemoved, Stopped };
    Indent removeIndent();
    std::size_t sendable();
    std::optional<Keystroke> strokeFor(const PlannedKey &key) const;
    bool sendBurst(std::size_t count);
    bool post(const std::vector<Keystroke> &strokes);
    void drain(TypingResult result);
    void finish(TypingResult result);

    InputMethods *m_methods;
    std::unique_ptr<XConnection> m_connection;
    std::unique_ptr<InputWatch> m_watch;
    std::unique_ptr<BorrowedKeys> m_borrowed;
    std::unique_ptr<Pings> m_pings;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QTimer m_timer;
    QElapsedTimer m_clock;

    std::deque<Sequence> m_waiting;
    Sequence m_current;
    Phase m_phase = Phase::Idle;
    TypingResult m_result = TypingResult::Typed;
    bool m_fenceRequested = false;

    std::unique_ptr<TypingTarget> m_target;
    std::optional<qint64> m_askedWhetherReady;
    bool m_askedForDirectInput = false;
    std::optional<bool> m_isDirectInput;
    bool m_softLineBreaks = false;
    XWindow m_focus = 0;
    int m_group = 0;
    std::uint8_t m_locked = 0;
    /// Locks that are off while text is typed.
    std::uint8_t m_releasedLocks = 0;
    /// The locks under which the layout's keys type what they are planned for.
    std::uint8_t m_ambient = 0;
    std::vector<PlannedKey> m_keys;
    std::uint8_t m_returnKey = 0;
    std::uint8_t m_tabKey = 0;
    std::uint8_t m_backSpaceKey = 0;
    std::optional<FlowControl> m_flow;
    std::optional<CharacterBanks> m_banks;
    std::optional<IndentRemoval> m_indent;
    qint64 m_phaseStart = 0;
    qint64 m_lastFocusCheck = 0;
    /// Whether the input has lost the focus while it was typed into.
    bool m_focusLost = false;
};

XTestKeyboard::Engine::Engine(InputMethods *methods, const QByteArray &displayName)
    : m_methods(methods)
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
    m_pings = std::make_unique<Pings>(*m_connection, *m_watch, m_clock);
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

// What is on its way would be looked up in the map as it was.
XTestKeyboard::Engine::~Engine()
{
    if (m_phase != Phase::Typing && m_phase != Phase::Draining)
        return;
    for (drain(TypingResult::Interrupted); m_phase == Phase::Draining && !m_connection->broken();
         drain(TypingResult::Interrupted)) {
        QThread::msleep(tick);
        m_watch->poll();
    }
}

void XTestKeyboard::Engine::post(std::unique_ptr<TypingTarget> target,
                                 const QList<KeyboardEvent> &events,
                                 std::function<void(TypingResult)> completion)
{
    m_waiting.push_back({std::move(target), events, std::move(completion)});
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
    m_focusLost = false;
    m_askedWhetherReady.reset();
    m_isDirectInput.reset();
    m_target = std::move(m_current.target);
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
    if (!m_target) {
        finish(TypingResult::NoTarget);
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
    const bool focused = moment->focus != 0 && m_target->hasFocus();
    if (!focused && waited > focusLimit) {
        finish(TypingResult::NoTarget);
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
    if (m_methods && !std::exchange(m_askedForDirectInput, true)) {
        m_methods->suspend([self = QPointer(this)](bool direct) {
            if (self)
                self->m_isDirectInput = direct;
        });
    }
    if (m_isDirectInput == false) {
        finish(TypingResult::Failed);
        return;
    }
    const bool isDirect = !m_methods || m_isDirectInput;
    if (!m_target->isReadyForKeys() || !isDirect) {
        if (!m_askedWhetherReady)
            m_askedWhetherReady = m_clock.elapsed();
        if (m_clock.elapsed() - *m_askedWhetherReady > readyLimit)
            finish(TypingResult::Interrupted);
        else
            m_timer.start(tick);
        return;
    }
    m_focus = moment->focus;
    m_watch->start(m_focus);
    m_connection->wakeTestKeyboard();
    if (!plan(*moment)) {
        finish(TypingResult::Failed);
        return;
    }
    m_watch->poll();
    m_watch->clearMapChange();
    m_phase = Phase::Typing;
    m_timer.start(0);
}

bool XTestKeyboard::Engine::plan(const XConnection::Moment &moment)
{
    m_lastFocusCheck = 0;
    m_group = moment.group;
    // Chromium makes a capital of what a borrowed key types while Caps Lock is on.
    m_releasedLocks = moment.lockedModifiers & capsLock;
    m_locked = moment.lockedModifiers & ~capsLock;
    if (m_releasedLocks)
        m_connection->lockModifiers(m_locked);
    const KeyboardMap map = m_connection->readMap();
    if (!m_borrowed->begin(map))
        return false;
    m_ambient = m_locked & numLock;
    const KeyboardMap::Lookup layout = map.lookup(m_group, m_ambient);
    m_softLineBreaks = m_target->needsSoftLineBreaks();
    m_keys = planKeys(m_current.events, layout, {m_softLineBreaks, m_target->takesTabs()});
    m_returnKey = layout.functionKey(XKB_KEY_Return).value_or(0);
    m_tabKey = layout.functionKey(XKB_KEY_Tab).value_or(0);
    m_backSpaceKey = layout.functionKey(XKB_KEY_BackSpace).value_or(0);
    for (const PlannedKey &key : m_keys) {
        if ((key.kind == PlannedKey::Kind::LineBreak && !m_returnKey) ||
            (key.kind == PlannedKey::Kind::Tab && !m_tabKey) ||
            (key.kind == PlannedKey::Kind::BackSpace && !m_backSpaceKey))
            return false;
    }
    m_pings->begin(m_connection->pingableWindow(m_focus));
    if (!cutPlan(map))
        return false;
    const bool oneByOne = m_target->mayReorderKeys() && !m_connection->inputMethods().empty();
    // What a deletion leaves cannot be told from its count beforehand.
    const bool grows = std::none_of(m_keys.begin(), m_keys.end(), [](const PlannedKey &key) {
        return key.kind == PlannedKey::Kind::BackSpace;
    });
    m_flow.emplace(*m_pings, m_target.get(), grows, oneByOne, m_clock);
    m_indent.emplace(*m_target);
    return true;
}

// Cuts the plan into what the borrowed keys can hold at a time.
bool XTestKeyboard::Engine::cutPlan(const KeyboardMap &map)
{
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
    const bool borrows =
        std::any_of(segments->begin(), segments->end(),
                    [](const Segment &segment) { return !segment.characters.empty(); });
    const bool asksCompanions = borrows && m_pings->answers();
    m_banks.emplace(*m_connection, *m_watch, *m_borrowed, *m_pings, std::move(*segments),
                    asksCompanions ? m_connection->pingableCompanions(m_focus)
                                   : std::vector<XWindow>{},
                    m_clock);
    return true;
}

void XTestKeyboard::Engine::type()
{
    if (!mayGoOn()) {
        drain(TypingResult::Interrupted);
        return;
    }
    updateFlow();
    if (m_flow->sentKeys() == m_keys.size() && m_flow->allTaken()) {
        if (m_flow->allShown() && removeIndent() == Indent::None) {
            finish(TypingResult::Typed);
            return;
        }
        if (m_flow->settledElsewhere()) {
            finish(TypingResult::Failed);
            return;
        }
    }
    if (m_flow->stalled()) {
        drain(TypingResult::Interrupted);
        return;
    }
    m_banks->update(m_flow->handled());
    const Indent indent = removeIndent();
    const std::size_t count = indent == Indent::None ? sendable() : 0;
    if (indent == Indent::Stopped || (count > 0 && !sendBurst(count))) {
        drain(TypingResult::Interrupted);
        return;
    }
    m_timer.start(tick);
}

bool XTestKeyboard::Engine::mayGoOn()
{
    if (m_watch->focusLost())
        m_focusLost = true;
    if (m_focusLost || m_watch->userActed() || m_watch->mapChanged())
        return false;
    const qint64 now = m_clock.elapsed();
    if (now - m_lastFocusCheck < focusPause)
        return true;
    m_lastFocusCheck = now;
    m_focusLost = !m_target->hasFocus();
    return !m_focusLost;
}

void XTestKeyboard::Engine::updateFlow()
{
    const bool allSent = m_flow->sentKeys() == m_keys.size();
    m_flow->update(allSent || m_banks->waiting() || mayIndentHere());
}

// Whether the last key sent is a line break that an editor may have indented after.
bool XTestKeyboard::Engine::mayIndentHere() const
{
    return m_flow->sentKeys() > 0 && m_keys[m_flow->sentKeys() - 1].mayIndent;
}

XTestKeyboard::Engine::Indent XTestKeyboard::Engine::removeIndent()
{
    if (!mayIndentHere() || m_softLineBreaks || !m_backSpaceKey || !m_flow->readsBack())
        return Indent::None;
    if (!m_flow->allShown() || !m_flow->allTaken())
        return Indent::BeingRemoved;
    switch (m_indent->next(m_flow->sentKeys(), m_clock.elapsed())) {
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
std::size_t XTestKeyboard::Engine::sendable()
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

std::optional<Keystroke> XTestKeyboard::Engine::strokeFor(const PlannedKey &key) const
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

bool XTestKeyboard::Engine::sendBurst(std::size_t count)
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

void XTestKeyboard::Engine::drain(TypingResult result)
{
    if (m_phase != Phase::Draining) {
        m_phase = Phase::Draining;
        m_phaseStart = m_clock.elapsed();
        m_result = result;
    }
    updateFlow();
    if (m_flow->allTaken() || m_clock.elapsed() - m_phaseStart > drainLimit ||
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
    if (std::exchange(m_askedForDirectInput, false))
        m_methods->resume();
    if (result == TypingResult::Interrupted && m_focusLost && m_flow && !m_flow->allShown())
        result = TypingResult::Misplaced;
    if (m_connection && !m_connection->broken()) {
        m_watch->stop();
        m_borrowed->giveBack();
        if (const std::uint8_t released = std::exchange(m_releasedLocks, std::uint8_t{0}))
            m_connection->lockModifiers(m_locked | released);
    }
    m_indent.reset();
    m_banks.reset();
    m_flow.reset();
    m_keys.clear();
    m_target.reset();
    const auto completion = std::move(m_current.completion);
    m_current = {};
    QTimer::singleShot(0, this, [this, completion, result] {
        if (completion)
            completion(result);
        if (m_phase == Phase::Idle)
            startNext();
    });
}

XTestKeyboard::XTestKeyboard(InputMethods *methods, const QByteArray &displayName)
    : m_engine(std::make_unique<Engine>(methods, displayName))
{
}

XTestKeyboard::~XTestKeyboard() = default;

void XTestKeyboard::type(std::unique_ptr<TypingTarget> target, const QList<KeyboardEvent> &events,
                         std::function<void(TypingResult)> completion)
{
    if (m_engine)
        m_engine->post(std::move(target), events, std::move(completion));
}

void XTestKeyboard::stop()
{
    m_engine.reset();
}

} // namespace platform::linux_
