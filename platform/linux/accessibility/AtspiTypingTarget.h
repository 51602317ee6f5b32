#pragma once

#include "platform/linux/accessibility/AtspiBus.h"
#include "platform/linux/accessibility/FocusTracker.h"
#include "platform/linux/keyboard/TypingTarget.h"

#include <memory>

namespace platform::linux_
{

/// The input of another application that has the focus when this is made, for as long as text is
/// typed into it. `bus` and `focus` must outlive it. Main thread only.
class AtspiTypingTarget : public TypingTarget
{
public:
    /// Nothing when no element of another application is known to have the focus.
    static std::unique_ptr<TypingTarget> ofFocusedElement(AtspiBus &bus, FocusTracker &focus);

    bool hasFocus() override;
    std::optional<qint64> characterCount() override;
    bool needsSoftLineBreaks() override;
    qint64 selectedCharacterCount() override;
    bool takesTabs() override;
    bool mayReorderKeys() override;

private:
    AtspiTypingTarget(AtspiBus &bus, FocusTracker &focus, FocusTracker::Focus input)
        : m_bus(bus)
        , m_focus(focus)
        , m_input(std::move(input))
    {
    }

    AtspiApplication *answeringApplication();

    AtspiBus &m_bus;
    FocusTracker &m_focus;
    FocusTracker::Focus m_input;
};

} // namespace platform::linux_
