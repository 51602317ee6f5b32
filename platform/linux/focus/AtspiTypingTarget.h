// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/atspi/AtspiBus.h"
#include "platform/linux/focus/FocusTracker.h"
#include "platform/linux/ports/TypingTarget.h"

#include <memory>

namespace platform::linux_
{

/// An input of another application, in one window, for as long as text is typed into it. Where the
/// input says itself whether it has the focus it is asked, and no application has to report events
/// from isReadyForKeys() on. `bus` and `focus` must outlive it. Main thread only.
class AtspiTypingTarget : public TypingTarget
{
public:
    /// `element` with what is known of it, in the window with that number. `selected`: how many
    /// characters are selected, where that is known. Nothing for a terminal and for a password.
    static std::unique_ptr<TypingTarget> of(AtspiBus &bus, FocusTracker &focus, ObjectRef element,
                                            ElementFacts facts, quint32 window,
                                            std::optional<qint64> selected = std::nullopt);
    ~AtspiTypingTarget() override;

    bool hasFocus() override;
    bool isReadyForKeys() override;
    std::optional<qint64> characterCount() override;
    bool needsSoftLineBreaks() override;
    qint64 selectedCharacterCount() override;
    bool isSelectionReplaced() override;
    std::optional<std::size_t> maxUnconfirmedKeys() override;
    void keysSent() override;
    bool isFocusConfirmed() override;
    std::optional<QString> textBeforeCaret() override;
    bool takesTabs() override;
    bool mayReorderKeys() override;
    bool cutsCharacters() override;

private:
    /// What the element itself says about its focus.
    struct OwnWord {
        bool asking = false;
        bool lost = false;
        /// The last burst of keys after which it said that it has the focus.
        quint64 confirmed = 0;
    };

    AtspiTypingTarget(AtspiBus &bus, FocusTracker &focus, ObjectRef element, ElementFacts facts,
                      quint32 window, std::optional<qint64> selected);

    AtspiApplication *answeringApplication();
    std::optional<qint64> askForSelection(AtspiApplication &application);
    void askWhetherFocused();

    AtspiBus &m_bus;
    FocusTracker &m_focus;
    const ObjectRef m_element;
    const ElementFacts m_facts;
    const quint32 m_window;
    /// Whether keys may have been sent, and in how many bursts.
    bool m_begun = false;
    quint64 m_bursts = 0;
    /// What selectedCharacterCount() answers, and what the region read as then and last.
    std::optional<qint64> m_selected;
    std::optional<QString> m_firstText;
    QString m_lastText;
    /// Absent where the element does not say. Shared, because an answer may come later.
    std::shared_ptr<OwnWord> m_ownWord;
    /// Whether the application knows that the events are paused; absent while they are not.
    std::shared_ptr<bool> m_paused;
};

} // namespace platform::linux_
