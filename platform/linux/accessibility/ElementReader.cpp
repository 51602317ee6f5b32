// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/accessibility/ElementReader.h"

#include "platform/linux/accessibility/Elements.h"
#include "platform/linux/reading/Attributes.h"
#include "platform/linux/reading/Frame.h"

#include <chrono>

namespace platform::linux_
{

namespace
{

/// How long the states of an element that does not have the focus are believed.
constexpr std::chrono::milliseconds factsLifetime{50};
constexpr int maxKnownFacts = 512;
constexpr int maxDepth = 64;

AXUIElement remote(const ObjectRef &ref, std::uint32_t window = 0)
{
    return AXUIElement(std::make_shared<RemoteElement>(ref, window));
}

} // namespace

ElementReader::ElementReader(AtspiBus &bus, FocusTracker &focus, ActiveWindow &activeWindow)
    : m_bus(bus)
    , m_focus(focus)
    , m_activeWindow(activeWindow)
{
}

const FocusTracker::Focus &ElementReader::findFocus()
{
    m_lastFocus = m_focus.current();
    if (m_lastFocus.kind == FocusTracker::Kind::Element)
        remember(m_lastFocus.element, m_lastFocus.facts);
    return m_lastFocus;
}

AXUIElement ElementReader::focusedElement() const
{
    return m_lastFocus.kind == FocusTracker::Kind::Element
               ? remote(m_lastFocus.element, m_lastFocus.window)
               : AXUIElement();
}

void ElementReader::forget(const QByteArray &busName)
{
    m_facts.removeIf([&](auto it) { return it.key().busName == busName; });
}

AXError ElementReader::factsOf(const RemoteElement &element, AtspiApplication *&application,
                               ElementFacts &facts)
{
    application = m_bus.application(element.ref().busName);
    if (!application)
        return AXError::InvalidUIElement;
    if (m_lastFocus.kind == FocusTracker::Kind::Element && m_lastFocus.element == element.ref()) {
        facts = m_lastFocus.facts;
        return AXError::Success;
    }
    // What an element is does not change while its application is silent.
    const auto known = m_facts.constFind(element.ref());
    if (known != m_facts.cend() &&
        (std::chrono::milliseconds(known->since.elapsed()) < factsLifetime ||
         !application->isAnswering())) {
        facts = known->facts;
        return AXError::Success;
    }
    if (!fetchFacts(*application, element.ref().path, facts))
        return application->isAnswering() ? AXError::InvalidUIElement : AXError::CannotComplete;
    if (facts.has(atspi::State::Defunct))
        return AXError::InvalidUIElement;
    remember(element.ref(), facts);
    return AXError::Success;
}

void ElementReader::remember(const ObjectRef &element, const ElementFacts &facts)
{
    if (m_facts.size() >= maxKnownFacts)
        m_facts.clear();
    KnownFacts &known = m_facts[element];
    known.facts = facts;
    known.since.start();
}

AXError ElementReader::copyAttributeValue(const RemoteElement &element, const QString &attribute,
                                          AXValue &value)
{
    AtspiApplication *application = nullptr;
    ElementFacts facts;
    if (const AXError error = factsOf(element, application, facts); error != AXError::Success)
        return error;
    if (attribute == QLatin1String("AXRole")) {
        value = axRole(facts);
        return AXError::Success;
    }
    if (attribute == QLatin1String("AXEditable")) {
        value = isEditable(facts);
        return AXError::Success;
    }
    if (attribute == QLatin1String("AXSubrole")) {
        if (isPassword(facts))
            value = QStringLiteral("AXSecureTextField");
        else if (isDocument(facts) && isEditable(facts))
            value = QStringLiteral("AXEditor");
        else
            return AXError::AttributeUnsupported;
        return AXError::Success;
    }
    if (!application->isAnswering())
        return AXError::CannotComplete;
    if (attribute == QLatin1String("AXValue")) {
        if (hasTextValue(facts))
            return readText(*application, element.ref().path, value);
        if (isPassword(facts))
            return AXError::NoValue;
        if (!facts.has(ElementFacts::Value))
            return AXError::AttributeUnsupported;
        return readNumber(*application, element.ref().path, value);
    }
    if (attribute == QLatin1String("AXSelectedText") ||
        attribute == QLatin1String("AXSelectedTextRange")) {
        if (!hasTextValue(facts))
            return isPassword(facts) ? AXError::NoValue : AXError::AttributeUnsupported;
        return readSelection(*application, element.ref().path,
                             attribute == QLatin1String("AXSelectedTextRange"), value);
    }
    if (attribute == QLatin1String("AXChildren"))
        return copyChildren(*application, element.ref().path, value);
    if (attribute == QLatin1String("AXFrame")) {
        const auto window = m_focus.windowOf(element.ref().busName);
        QRectF frame;
        const AXError error = readFrame(*application, element.ref(), facts,
                                        window ? m_activeWindow.geometry(*window) : std::nullopt,
                                        m_activeWindow.isPlaceNeeded(), frame);
        if (error == AXError::Success)
            value = frame;
        return error;
    }
    if (attribute == QLatin1String("AXFocusedUIElement") && isDocument(facts))
        return copyFocusedBelow(element, value);
    return AXError::AttributeUnsupported;
}

AXError ElementReader::copyChildren(AtspiApplication &application, const QByteArray &path,
                                    AXValue &value)
{
    QList<ObjectRef> refs;
    const AXError error = readChildren(application, path, refs);
    if (error != AXError::Success)
        return error;
    QList<AXUIElement> children;
    for (const ObjectRef &ref : std::as_const(refs))
        children.append(remote(ref));
    value = children;
    return AXError::Success;
}

AXError ElementReader::copyFocusedBelow(const RemoteElement &element, AXValue &value)
{
    // The focused element of the desktop is the only one that anything can have.
    const FocusTracker::Focus focus = m_focus.current();
    if (focus.kind != FocusTracker::Kind::Element || focus.element == element.ref() ||
        focus.element.busName != element.ref().busName)
        return AXError::NoValue;
    AtspiApplication *application = m_bus.application(element.ref().busName);
    if (!application)
        return AXError::InvalidUIElement;
    ObjectRef above = focus.element;
    for (int depth = 0; depth < maxDepth; ++depth) {
        ObjectRef parent;
        Pipeline pipeline(*application);
        pipeline.property(
            above.path, atspi::accessibleInterface, "Parent", "(so)",
            [&](DBusMessage &reply) { parent = reply.readObject().value_or(ObjectRef()); });
        if (!pipeline.wait())
            return AXError::CannotComplete;
        if (parent == element.ref()) {
            value = remote(focus.element, focus.window);
            return AXError::Success;
        }
        if (parent.isNull() || parent.busName != element.ref().busName)
            break;
        above = parent;
    }
    return AXError::NoValue;
}

} // namespace platform::linux_
