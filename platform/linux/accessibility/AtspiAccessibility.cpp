// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/accessibility/AtspiAccessibility.h"

#include "platform/linux/accessibility/ConsentWindow.h"
#include "platform/linux/accessibility/Elements.h"
#include "platform/linux/accessibility/OwnWindows.h"
#include "platform/linux/accessibility/ValueWriter.h"
#include "platform/linux/focus/AtspiTextInput.h"
#include "platform/linux/focus/AtspiTypingTarget.h"
#include "platform/linux/reading/Attributes.h"
#include "platform/linux/reading/TreeText.h"

namespace platform::linux_
{

namespace
{

const QString consentKey = QStringLiteral("accessibility/allowed");

/// The element's data as `Data`, when that is what it is.
template <typename Data> const Data *as(const AXUIElement &element)
{
    return dynamic_cast<const Data *>(element.data());
}

/// Whether the element's text can be replaced: by its application where that offers it, else by
/// typing, for which the element gets the time to have the focus back.
bool isValueSettable(const ElementFacts &facts)
{
    return isEditable(facts) && hasTextValue(facts);
}

} // namespace

AtspiAccessibility::AtspiAccessibility(Typist &typist, ActiveWindow &activeWindow,
                                       QSettings &settings, const QByteArray &sessionBus)
    : m_typist(typist)
    , m_activeWindow(activeWindow)
    , m_settings(settings)
    , m_bus(sessionBus)
    , m_focus(m_bus, activeWindow)
    , m_reader(m_bus, m_focus, activeWindow)
{
    connect(&m_bus, &AtspiBus::applicationLeft, this, [this](const QByteArray &busName) {
        m_reader.forget(busName);
        m_answers.remove(busName);
    });
    connect(&m_bus, &AtspiBus::contentChanged, this,
            [this](const QByteArray &busName) { m_answers.expire(busName); });
    connect(&m_bus, &AtspiBus::focusChanged, this,
            [this](const ObjectRef &focused) { m_answers.expire(focused.busName); });
    applyConsent();
}

AtspiAccessibility::~AtspiAccessibility()
{
    delete m_consentWindow;
}

bool AtspiAccessibility::hasConsent() const
{
    return m_settings.value(consentKey, false).toBool();
}

void AtspiAccessibility::applyConsent()
{
    m_bus.setListening(hasConsent());
}

bool AtspiAccessibility::AXIsProcessTrusted()
{
    if (!hasConsent())
        return false;
    if (!m_asked) {
        // Only the first question waits; later ones find what the bus has reported meanwhile.
        m_asked = true;
        m_bus.waitUntilSettled(QDeadlineTimer(AtspiApplication::patience));
    }
    return m_bus.isConnected() && m_bus.isEnabled();
}

void AtspiAccessibility::openAccessibilitySettings()
{
    if (!m_consentWindow) {
        m_consentWindow = new ConsentWindow(m_bus, hasConsent());
        m_consentWindow->setAttribute(Qt::WA_DeleteOnClose);
        connect(m_consentWindow, &ConsentWindow::consentChanged, this, [this](bool allowed) {
            m_settings.setValue(consentKey, allowed);
            m_settings.sync();
            applyConsent();
            if (m_consentChanged)
                m_consentChanged(allowed);
        });
    }
    m_consentWindow->show();
    m_consentWindow->raise();
    m_consentWindow->activateWindow();
}

AXUIElement AtspiAccessibility::AXUIElementCreateSystemWide()
{
    return AXUIElement(std::make_shared<SystemWideElement>());
}

AXError AtspiAccessibility::copyFocusedElement(AXValue &value)
{
    // A panel of ours is no input to work on, and the element that lent it the keyboard need not
    // say meanwhile that it has it.
    if (m_lender && m_activeWindow.isKeyboardLent()) {
        value = m_lender;
        return AXError::Success;
    }
    m_lender = {};
    const AXError error = copyElementWithKeyboard(value);
    if (error == AXError::Success)
        m_lender = std::get<AXUIElement>(value);
    return error;
}

AXError AtspiAccessibility::copyElementWithKeyboard(AXValue &value)
{
    const FocusTracker::Focus &focus = m_reader.findFocus();
    switch (focus.kind) {
    case FocusTracker::Kind::Unknown:
    case FocusTracker::Kind::Waiting:
        return AXError::CannotComplete;
    case FocusTracker::Kind::Nothing:
    case FocusTracker::Kind::Application:
        value = AXUIElement(std::make_shared<ApplicationElement>(focus.pid));
        return AXError::Success;
    case FocusTracker::Kind::Own:
        if (const AXUIElement own = OwnWindows::focusedElement())
            value = own;
        else
            value = AXUIElement(std::make_shared<ApplicationElement>(focus.pid));
        return AXError::Success;
    case FocusTracker::Kind::Element:
        value = m_reader.focusedElement();
        return AXError::Success;
    }
    return AXError::Failure;
}

AXError AtspiAccessibility::AXUIElementCopyAttributeValue(const AXUIElement &element,
                                                          const QString &attribute, AXValue &value)
{
    if (!element)
        return AXError::IllegalArgument;
    if (const auto *own = as<OwnElement>(element))
        return copyOwnValue(*own, attribute, value);
    if (!hasConsent())
        return AXError::APIDisabled;
    if (as<SystemWideElement>(element)) {
        if (attribute == QLatin1String("AXFocusedUIElement"))
            return copyFocusedElement(value);
        return AXError::AttributeUnsupported;
    }
    if (as<ApplicationElement>(element)) {
        if (attribute != QLatin1String("AXRole"))
            return AXError::AttributeUnsupported;
        value = QStringLiteral("AXApplication");
        return AXError::Success;
    }
    if (const auto *other = as<RemoteElement>(element))
        return m_reader.copyAttributeValue(*other, attribute, value);
    return AXError::IllegalArgument;
}

AXError AtspiAccessibility::copyOwnValue(const OwnElement &element, const QString &attribute,
                                         AXValue &value)
{
    const AXError error = OwnWindows::copyAttributeValue(element, attribute, value);
    auto *const frame = std::get_if<QRectF>(&value);
    if (error != AXError::Success || !frame || !m_activeWindow.isPlaceNeeded())
        return error;
    // Our toolkit does not know where our windows are either.
    const auto window = m_activeWindow.activeWindow();
    if (!window || !window->pids.contains(std::int32_t(QCoreApplication::applicationPid())))
        return AXError::NoValue;
    const auto place = m_activeWindow.geometry(window->id);
    if (!place)
        return AXError::NoValue;
    frame->translate(place->contents.topLeft() - OwnWindows::windowPosition(element));
    return AXError::Success;
}

AXError AtspiAccessibility::AXUIElementCopyAttributeNames(const AXUIElement &element,
                                                          QStringList &names)
{
    if (!element)
        return AXError::IllegalArgument;
    if (const auto *own = as<OwnElement>(element))
        return OwnWindows::copyAttributeNames(*own, names);
    if (!hasConsent())
        return AXError::APIDisabled;
    if (as<SystemWideElement>(element)) {
        names = {QStringLiteral("AXFocusedUIElement")};
        return AXError::Success;
    }
    if (as<ApplicationElement>(element)) {
        names = {QStringLiteral("AXRole")};
        return AXError::Success;
    }
    const auto *other = as<RemoteElement>(element);
    if (!other)
        return AXError::IllegalArgument;
    AtspiApplication *application = nullptr;
    ElementFacts facts;
    if (const AXError error = m_reader.factsOf(*other, application, facts);
        error != AXError::Success)
        return error;
    names = attributeNames(facts);
    return AXError::Success;
}

AXError AtspiAccessibility::AXUIElementIsAttributeSettable(const AXUIElement &element,
                                                           const QString &attribute, bool &settable)
{
    if (!element)
        return AXError::IllegalArgument;
    if (const auto *own = as<OwnElement>(element))
        return OwnWindows::isAttributeSettable(*own, attribute, settable);
    if (!hasConsent())
        return AXError::APIDisabled;
    const auto *other = as<RemoteElement>(element);
    if (!other) {
        settable = false;
        return AXError::Success;
    }
    AtspiApplication *application = nullptr;
    ElementFacts facts;
    if (const AXError error = m_reader.factsOf(*other, application, facts);
        error != AXError::Success)
        return error;
    settable = attribute == QLatin1String("AXValue") && isValueSettable(facts);
    return AXError::Success;
}

void AtspiAccessibility::AXUIElementSetAttributeValue(
    const AXUIElement &element, const QString &attribute, const AXValue &value,
    std::function<void(const WriteOutcome &)> completion)
{
    const auto refuse = [&completion](AXError error) {
        completion(WriteOutcome::notWritten(error));
    };
    if (const auto *own = as<OwnElement>(element)) {
        const AXError error = OwnWindows::setAttributeValue(*own, attribute, value);
        error == AXError::Success ? completion(WriteOutcome::written()) : refuse(error);
        return;
    }
    const auto *other = as<RemoteElement>(element);
    const QString *const text = std::get_if<QString>(&value);
    bool settable = false;
    AXError error = other ? AXUIElementIsAttributeSettable(element, attribute, settable)
                          : AXError::IllegalArgument;
    if (error == AXError::Success && !settable)
        error = AXError::AttributeUnsupported;
    if (error == AXError::Success && !text)
        error = AXError::IllegalArgument;
    AtspiApplication *application = nullptr;
    ElementFacts facts;
    if (error == AXError::Success)
        error = m_reader.factsOf(*other, application, facts);
    if (error != AXError::Success) {
        refuse(error);
        return;
    }
    auto *writer =
        new ValueWriter(std::make_unique<AtspiTextInput>(m_bus, m_focus, *application, other->ref(),
                                                         facts, other->window()),
                        *text, m_typist, std::move(completion), {});
    writer->setParent(this);
    writer->start();
    // Most applications take the value at once. One that types is waited for in the event loop.
    if (facts.has(ElementFacts::EditableText) &&
        application->waitFor([writer] { return writer->isDone(); },
                             QDeadlineTimer(AtspiApplication::patience)))
        writer->deliver();
}

AXError AtspiAccessibility::AXUIElementGetPid(const AXUIElement &element, std::int32_t &pid)
{
    if (as<OwnElement>(element)) {
        pid = std::int32_t(QCoreApplication::applicationPid());
        return AXError::Success;
    }
    if (const auto *application = as<ApplicationElement>(element)) {
        if (application->pid() == 0)
            return AXError::InvalidUIElement;
        pid = application->pid();
        return AXError::Success;
    }
    if (const auto *other = as<RemoteElement>(element)) {
        const AtspiApplication *application = m_bus.application(other->ref().busName);
        if (!application)
            return AXError::InvalidUIElement;
        pid = application->pid();
        return AXError::Success;
    }
    return AXError::IllegalArgument;
}

Accessibility::Answer AtspiAccessibility::containsEditableText(const AXUIElement &element)
{
    const auto *other = as<RemoteElement>(element);
    if (!other)
        return Answer::Unsupported;
    const ObjectRef document = other->ref();
    AtspiApplication *application = m_bus.application(document.busName);
    if (!hasConsent() || !application)
        return Answer::No;
    const std::optional<bool> contains = m_answers.find(*application, document);
    if (!contains)
        return Answer::Pending;
    return *contains ? Answer::Yes : Answer::No;
}

bool AtspiAccessibility::copyTreeText(const AXUIElement &element,
                                      std::function<void(const QString &)> completion)
{
    const auto *other = as<RemoteElement>(element);
    AtspiApplication *application = other ? m_bus.application(other->ref().busName) : nullptr;
    if (!hasConsent() || !application)
        return false;
    // Of all inputs, only the one that has the focus is the user's subject.
    const FocusTracker::Focus &focus = m_reader.lastFocus();
    const bool isFocused =
        focus.kind == FocusTracker::Kind::Element && focus.element.busName == other->ref().busName;
    readTreeText(*application, other->ref().path, isFocused ? focus.element.path : QByteArray(),
                 std::move(completion));
    return true;
}

std::unique_ptr<TypingTarget> AtspiAccessibility::typingTarget(const AXUIElement &element)
{
    const auto *other = as<RemoteElement>(element);
    AtspiApplication *application = nullptr;
    ElementFacts facts;
    if (!other || !hasConsent() || m_reader.factsOf(*other, application, facts) != AXError::Success)
        return nullptr;
    return AtspiTypingTarget::of(m_bus, m_focus, other->ref(), std::move(facts), other->window());
}

QString AtspiAccessibility::adviceForFocusedApplication()
{
    const FocusTracker::Focus &focus = m_reader.lastFocus();
    if (focus.kind != FocusTracker::Kind::Application)
        return {};
    // It is on the bus and active, and yet nothing in its windows has the focus.
    const QList<AtspiApplication *> applications = m_bus.applications(focus.pid);
    for (const AtspiApplication *application : applications) {
        if (application->toolkit() == "Chromium")
            return tr("This application shows Quillet only its window: quit it and start it with "
                      "the option --force-renderer-accessibility.");
    }
    return {};
}

} // namespace platform::linux_
