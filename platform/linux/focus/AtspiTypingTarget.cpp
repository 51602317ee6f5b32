// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/focus/AtspiTypingTarget.h"

#include "platform/linux/reading/CodePoints.h"
#include "platform/linux/reading/RichText.h"

namespace platform::linux_
{

namespace
{

constexpr qint32 maxBeforeCaret = 256;
/// At most this many keys reach a frame that takes the focus.
constexpr std::size_t maxKeysInPage = 8;

} // namespace

std::unique_ptr<TypingTarget> AtspiTypingTarget::of(AtspiBus &bus, FocusTracker &focus,
                                                    ObjectRef element, ElementFacts facts,
                                                    quint32 window, std::optional<qint64> selected)
{
    if (facts.is(atspi::Role::Terminal) || isPassword(facts))
        return nullptr;
    return std::unique_ptr<TypingTarget>(
        new AtspiTypingTarget(bus, focus, std::move(element), std::move(facts), window, selected));
}

AtspiTypingTarget::AtspiTypingTarget(AtspiBus &bus, FocusTracker &focus, ObjectRef element,
                                     ElementFacts facts, quint32 window,
                                     std::optional<qint64> selected)
    : m_bus(bus)
    , m_focus(focus)
    , m_element(std::move(element))
    , m_facts(std::move(facts))
    , m_window(window)
    , m_selected(selected)
{
}

AtspiTypingTarget::~AtspiTypingTarget()
{
    if (m_paused)
        m_bus.resumeEvents();
}

AtspiApplication *AtspiTypingTarget::answeringApplication()
{
    AtspiApplication *application = m_bus.application(m_element.busName);
    return application && application->isAnswering() ? application : nullptr;
}

bool AtspiTypingTarget::hasFocus()
{
    if (!m_begun) {
        // The window may have got the keyboard back a moment ago.
        const FocusTracker::Focus focus = m_focus.current();
        return focus.kind == FocusTracker::Kind::Element && focus.element == m_element &&
               focus.window == m_window;
    }
    if (!m_focus.hasFocus(m_element, m_window))
        return false;
    if (!m_ownWord)
        return true;
    askWhetherFocused();
    return !m_ownWord->lost;
}

bool AtspiTypingTarget::isReadyForKeys()
{
    if (!m_begun) {
        m_begun = true;
        if (m_focus.reportsFocus(m_element))
            m_ownWord = std::make_shared<OwnWord>();
    }
    if (!m_ownWord)
        return true;
    if (!m_paused) {
        m_paused = std::make_shared<bool>(false);
        m_bus.pauseEvents(m_element.busName, [paused = m_paused] { *paused = true; });
    }
    return *m_paused;
}

// Does not wait: the answer counts at the next look.
void AtspiTypingTarget::askWhetherFocused()
{
    AtspiApplication *application = answeringApplication();
    if (!application || m_ownWord->asking)
        return;
    m_ownWord->asking =
        application->call(m_element.path, atspi::accessibleInterface, "GetState",
                          [word = m_ownWord, burst = m_bursts](DBusMessage &reply) {
                              ElementFacts facts;
                              facts.setStates(reply.readUInt32s().value_or(QList<quint32>()));
                              word->asking = false;
                              word->lost = !facts.has(atspi::State::Focused);
                              if (!word->lost)
                                  word->confirmed = burst;
                          });
}

std::optional<std::size_t> AtspiTypingTarget::maxUnconfirmedKeys()
{
    if (!isInWebPage(m_facts))
        return std::nullopt;
    return maxKeysInPage;
}

void AtspiTypingTarget::keysSent()
{
    ++m_bursts;
    if (m_ownWord)
        askWhetherFocused();
}

bool AtspiTypingTarget::isFocusConfirmed()
{
    if (!m_ownWord || m_ownWord->confirmed >= m_bursts)
        return true;
    askWhetherFocused();
    return false;
}

std::optional<qint64> AtspiTypingTarget::characterCount()
{
    AtspiApplication *application = answeringApplication();
    if (!application || isPassword(m_facts))
        return std::nullopt;
    if (!isEditingHost(m_facts)) {
        std::optional<qint32> count;
        Pipeline pipeline(*application);
        pipeline.property(m_element.path, atspi::textInterface, "CharacterCount", "i",
                          [&](DBusMessage &reply) { count = reply.readInt32(); });
        if (!pipeline.wait() || count.value_or(-1) < 0)
            return std::nullopt;
        if (*count == 0 || !holdsLastLineOpen(m_facts))
            return count;
        bool lastLineEmpty = false;
        Pipeline last(*application);
        last.call(
            m_element.path, atspi::textInterface, "GetText",
            [&](DBusMessage &reply) { lastLineEmpty = reply.readBytes() == "\n"; }, "ii",
            *count - 1, *count);
        if (!last.wait())
            return std::nullopt;
        return *count - (lastLineEmpty ? 1 : 0);
    }
    // An editable region holds its paragraphs as elements: what counts is what it reads as.
    const std::optional<QString> text = waitForRichText(*application, m_element.path);
    if (!text)
        return std::nullopt;
    m_lastText = *text;
    return codePointCount(*text);
}

bool AtspiTypingTarget::needsSoftLineBreaks()
{
    return isInWebPage(m_facts);
}

qint64 AtspiTypingTarget::selectedCharacterCount()
{
    AtspiApplication *application = answeringApplication();
    if (!m_selected)
        m_selected = application ? askForSelection(*application).value_or(0) : 0;
    if (isEditingHost(m_facts) && characterCount())
        m_firstText = m_lastText;
    return *m_selected;
}

bool AtspiTypingTarget::isSelectionReplaced()
{
    AtspiApplication *application = answeringApplication();
    if (!application || m_selected.value_or(0) == 0)
        return false;
    // A region is selected in one of its elements; its whole text has been read anyway.
    if (isEditingHost(m_facts))
        return m_firstText && m_lastText != *m_firstText;
    return askForSelection(*application) == 0;
}

std::optional<qint64> AtspiTypingTarget::askForSelection(AtspiApplication &application)
{
    qint32 start = 0;
    qint32 end = 0;
    qint32 count = 0;
    qint32 selections = 0;
    Pipeline pipeline(application);
    pipeline.call(m_element.path, atspi::textInterface, "GetNSelections",
                  [&](DBusMessage &reply) { selections = reply.readInt32().value_or(0); });
    pipeline.call(
        m_element.path, atspi::textInterface, "GetSelection",
        [&](DBusMessage &reply) {
            start = reply.readInt32().value_or(0);
            end = reply.readInt32().value_or(0);
        },
        "i", 0);
    pipeline.property(m_element.path, atspi::textInterface, "CharacterCount", "i",
                      [&](DBusMessage &reply) { count = reply.readInt32().value_or(0); });
    if (!pipeline.wait())
        return std::nullopt;
    if (selections <= 0)
        return 0;
    // Chromium does not know of some selections where they are.
    if (start == 0 && end == 0)
        return std::nullopt;
    const auto [first, last] = std::minmax(start, end);
    // A paragraph inside counts as one character there; all selected is all that it reads as.
    if (isEditingHost(m_facts) && first <= 0 && last >= count)
        return characterCount().value_or(0);
    return std::max<qint64>(0, qint64(last) - first);
}

std::optional<QString> AtspiTypingTarget::textBeforeCaret()
{
    AtspiApplication *application = answeringApplication();
    if (!application || isPassword(m_facts))
        return std::nullopt;
    std::optional<qint32> caret;
    Pipeline position(*application);
    position.property(m_element.path, atspi::textInterface, "CaretOffset", "i",
                      [&](DBusMessage &reply) { caret = reply.readInt32(); });
    if (!position.wait() || caret.value_or(-1) < 0)
        return std::nullopt;
    std::optional<QString> text;
    Pipeline before(*application);
    before.call(
        m_element.path, atspi::textInterface, "GetText",
        [&](DBusMessage &reply) {
            if (const std::optional<QByteArray> bytes = reply.readBytes())
                text = QString::fromUtf8(*bytes);
        },
        "ii", std::max(0, *caret - maxBeforeCaret), *caret);
    return before.wait() ? text : std::nullopt;
}

bool AtspiTypingTarget::takesTabs()
{
    return !isInWebPage(m_facts) && axRole(m_facts) == QLatin1String("AXTextArea");
}

bool AtspiTypingTarget::cutsCharacters()
{
    return m_facts.toolkit == "Chromium";
}

bool AtspiTypingTarget::mayReorderKeys()
{
    // GTK 3 calls itself "gtk".
    return m_facts.toolkit == "GTK";
}

} // namespace platform::linux_
