// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Accessibility.h"
#include "platform/linux/accessibility/ElementReader.h"
#include "platform/linux/atspi/AtspiBus.h"
#include "platform/linux/focus/FocusTracker.h"
#include "platform/linux/reading/EditableAnswers.h"

#include <QPointer>
#include <QSettings>

#include <memory>

namespace platform::linux_
{

class ConsentWindow;
class OwnElement;
class TypingTarget;
class Typist;

/// The accessibility service of the Linux desktop: AT-SPI 2. See platform/Accessibility.h for what
/// the operations promise. Main thread only.
///
/// Errors: InvalidUIElement for an element that is gone, CannotComplete for an application that
/// does not answer in time, AttributeUnsupported and NoValue for what an element does not have,
/// APIDisabled while the user has not allowed it.
class AtspiAccessibility : public QObject, public Accessibility
{
    Q_OBJECT
public:
    /// `settings` keeps the user's consent; `typist` types into inputs that take no other way;
    /// all three must outlive this object. `sessionBus`: address, empty for the environment's.
    AtspiAccessibility(Typist &typist, ActiveWindow &activeWindow, QSettings &settings,
                       const QByteArray &sessionBus = {});
    ~AtspiAccessibility() override;

    bool AXIsProcessTrusted() override;
    void openAccessibilitySettings() override;
    void setConsentChanged(std::function<void(bool)> changed) override
    {
        m_consentChanged = std::move(changed);
    }
    AXUIElement AXUIElementCreateSystemWide() override;
    AXError AXUIElementCopyAttributeValue(const AXUIElement &element, const QString &attribute,
                                          AXValue &value) override;
    AXError AXUIElementCopyAttributeNames(const AXUIElement &element, QStringList &names) override;
    AXError AXUIElementIsAttributeSettable(const AXUIElement &element, const QString &attribute,
                                           bool &settable) override;
    void
    AXUIElementSetAttributeValue(const AXUIElement &element, const QString &attribute,
                                 const AXValue &value,
                                 std::function<void(const WriteOutcome &)> completion) override;
    AXError AXUIElementGetPid(const AXUIElement &element, std::int32_t &pid) override;
    Answer containsEditableText(const AXUIElement &element) override;
    bool copyTreeText(const AXUIElement &element,
                      std::function<void(const QString &)> completion) override;
    QString adviceForFocusedApplication() override;

    AtspiBus &bus() { return m_bus; }
    FocusTracker &focusTracker() { return m_focus; }

    /// The element as an input to type into, in the window in which it had the focus when its
    /// handle was made; nothing for what is no element of another application, for a terminal and
    /// for a password.
    std::unique_ptr<TypingTarget> typingTarget(const AXUIElement &element);

private:
    AXError copyFocusedElement(AXValue &value);
    AXError copyElementWithKeyboard(AXValue &value);
    AXError copyOwnValue(const OwnElement &element, const QString &attribute, AXValue &value);
    bool hasConsent() const;
    void applyConsent();

    Typist &m_typist;
    ActiveWindow &m_activeWindow;
    QSettings &m_settings;
    AtspiBus m_bus;
    FocusTracker m_focus;
    ElementReader m_reader;
    EditableAnswers m_answers;
    /// The element that last had the keyboard: the answer while a panel borrows the keyboard.
    AXUIElement m_lender;
    QPointer<ConsentWindow> m_consentWindow;
    std::function<void(bool)> m_consentChanged;
    bool m_asked = false;
};

} // namespace platform::linux_
