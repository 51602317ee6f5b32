// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/accessibility/AtspiAccessibility.h"

#include "platform/linux/accessibility/ConsentWindow.h"
#include "platform/linux/accessibility/Elements.h"
#include "platform/linux/accessibility/OwnWindows.h"
#include "platform/linux/accessibility/ValueWriter.h"
#include "platform/linux/focus/AtspiTextInput.h"
#include "platform/linux/focus/AtspiTypingTarget.h"
#include "platform/linux/reading/CodePoints.h"
#include "platform/linux/reading/FocusSearch.h"
#include "platform/linux/reading/Geometry.h"
#include "platform/linux/reading/RichText.h"
#include "platform/linux/reading/TreeWalk.h"

namespace platform::linux_
{

using atspi::Role;

namespace
{

const QString consentKey = QStringLiteral("accessibility/allowed");

/// How long the states of an element that does not have the focus are believed.
constexpr int factsLifetime = 50; // milliseconds
constexpr int mostKnownFacts = 512;
/// More children than a window can show are data, and no way to look for an input.
constexpr int mostChildren = 50'000;
constexpr int deepestClip = 64;
constexpr qint32 longest = 1 << 24; // pixels
/// How long a document is believed to hold editable text, or not, without an event that says
/// otherwise, and how long the first search may hold up the user interface.
constexpr int shortestAnswer = 1000; // milliseconds
constexpr int longestAnswer = 4000;  // milliseconds
constexpr int searchPatience = 25;   // milliseconds

/// The element's data as `Data`, when that is what it is.
template <typename Data> const Data *as(const AXUIElement &element)
{
    return dynamic_cast<const Data *>(element.data());
}

AXUIElement remote(const ObjectRef &ref, std::uint32_t window = 0)
{
    return AXUIElement(std::make_shared<RemoteElement>(ref, window));
}

std::optional<QRect> readExtents(DBusMessage &reply)
{
    if (!reply.enterStruct("iiii"))
        return std::nullopt;
    const auto x = reply.readInt32();
    const auto y = reply.readInt32();
    const auto width = reply.readInt32();
    const auto height = reply.readInt32();
    // What scrolls may be long, but no longer than can be reckoned with.
    const auto isPlace = [](qint32 place) { return place >= -longest && place <= longest; };
    if (!x || !y || !width || !height || *width <= 0 || *height <= 0 || !isPlace(*x) ||
        !isPlace(*y) || !isPlace(*width) || !isPlace(*height))
        return std::nullopt;
    return QRect(*x, *y, *width, *height);
}

/// Whether the element's text can be replaced: by its application where that offers it, else by
/// typing, for which the element gets the time to have the focus back.
bool isValueSettable(const ElementFacts &facts)
{
    return isEditable(facts) && hasTextValue(facts);
}

bool isTopLevel(quint32 role)
{
    return Role(role) == Role::Frame || Role(role) == Role::Window || Role(role) == Role::Dialog;
}

/// Whether an element shows only a part of what lies in it.
bool clipsItsContents(quint32 role)
{
    switch (Role(role)) {
    case Role::ScrollPane:
    case Role::Viewport:
    case Role::Frame:
    case Role::Window:
    case Role::Dialog:
    case Role::InternalFrame:
    case Role::DocumentWeb:
        return true;
    default:
        return false;
    }
}

} // namespace

AtspiAccessibility::AtspiAccessibility(Typist &typist, ActiveWindow &activeWindow,
                                       QSettings &settings, const QByteArray &sessionBus)
    : m_typist(typist)
    , m_activeWindow(activeWindow)
    , m_settings(settings)
    , m_bus(sessionBus)
    , m_focus(m_bus, activeWindow)
{
    connect(&m_bus, &AtspiBus::applicationLeft, this, [this](const QByteArray &busName) {
        m_facts.removeIf([&](auto it) { return it.key().busName == busName; });
        m_answers->removeIf([&](auto it) { return it.key().busName == busName; });
    });
    connect(&m_bus, &AtspiBus::contentChanged, this, &AtspiAccessibility::forgetAnswers);
    connect(&m_bus, &AtspiBus::focusChanged, this,
            [this](const ObjectRef &focused) { forgetAnswers(focused.busName); });
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
    m_lastFocus = m_focus.current();
    switch (m_lastFocus.kind) {
    case FocusTracker::Kind::Unknown:
    case FocusTracker::Kind::Waiting:
        return AXError::CannotComplete;
    case FocusTracker::Kind::Nothing:
    case FocusTracker::Kind::Application:
        value = AXUIElement(std::make_shared<ApplicationElement>(m_lastFocus.pid));
        return AXError::Success;
    case FocusTracker::Kind::Own:
        if (const AXUIElement own = OwnWindows::focusedElement())
            value = own;
        else
            value = AXUIElement(std::make_shared<ApplicationElement>(m_lastFocus.pid));
        return AXError::Success;
    case FocusTracker::Kind::Element:
        remember(m_lastFocus.element, m_lastFocus.facts);
        value = remote(m_lastFocus.element, m_lastFocus.window);
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
        return OwnWindows::copyAttributeValue(*own, attribute, value);
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
        return copyRemoteValue(*other, attribute, value);
    return AXError::IllegalArgument;
}

AXError AtspiAccessibility::factsOf(const RemoteElement &element, AtspiApplication *&application,
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
        (known->since.elapsed() < factsLifetime || !application->isAnswering())) {
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

void AtspiAccessibility::remember(const ObjectRef &element, const ElementFacts &facts)
{
    if (m_facts.size() >= mostKnownFacts)
        m_facts.clear();
    KnownFacts &known = m_facts[element];
    known.facts = facts;
    known.since.start();
}

AXError AtspiAccessibility::copyRemoteValue(const RemoteElement &element, const QString &attribute,
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
            return copyText(*application, element.ref().path, value);
        if (isPassword(facts))
            return AXError::NoValue;
        if (!facts.has(ElementFacts::Value))
            return AXError::AttributeUnsupported;
        std::optional<double> number;
        Pipeline pipeline(*application);
        pipeline.property(element.ref().path, atspi::ValueInterface, "CurrentValue", "d",
                          [&](DBusMessage &reply) { number = reply.readDouble(); });
        if (!pipeline.wait())
            return AXError::CannotComplete;
        if (!number)
            return AXError::NoValue;
        value = *number;
        return AXError::Success;
    }
    if (attribute == QLatin1String("AXSelectedText") ||
        attribute == QLatin1String("AXSelectedTextRange")) {
        if (!hasTextValue(facts))
            return isPassword(facts) ? AXError::NoValue : AXError::AttributeUnsupported;
        return copySelection(*application, element.ref().path,
                             attribute == QLatin1String("AXSelectedTextRange"), value);
    }
    if (attribute == QLatin1String("AXChildren"))
        return copyChildren(*application, element.ref().path, value);
    if (attribute == QLatin1String("AXFrame"))
        return copyFrame(*application, element.ref(), facts, value);
    if (attribute == QLatin1String("AXFocusedUIElement") && isDocument(facts))
        return copyFocusedBelow(element, value);
    return AXError::AttributeUnsupported;
}

AXError AtspiAccessibility::copyText(AtspiApplication &application, const QByteArray &path,
                                     AXValue &value)
{
    const std::optional<QString> text = waitForRichText(application, path);
    if (!text)
        return application.isAnswering() ? AXError::Failure : AXError::CannotComplete;
    value = withLineFeeds(*text);
    return AXError::Success;
}

AXError AtspiAccessibility::copySelection(AtspiApplication &application, const QByteArray &path,
                                          bool range, AXValue &value)
{
    QString text;
    std::optional<qint32> caret;
    qint32 selections = 0;
    std::optional<std::pair<qint32, qint32>> selection;
    qint32 count = 0;
    Pipeline pipeline(application);
    pipeline.property(path, atspi::TextInterface, "CharacterCount", "i",
                      [&](DBusMessage &reply) { count = reply.readInt32().value_or(0); });
    pipeline.call(
        path, atspi::TextInterface, "GetText",
        [&](DBusMessage &reply) { text = reply.readString().value_or(QString()); }, "ii", 0, -1);
    pipeline.property(path, atspi::TextInterface, "CaretOffset", "i",
                      [&](DBusMessage &reply) { caret = reply.readInt32(); });
    pipeline.call(path, atspi::TextInterface, "GetNSelections",
                  [&](DBusMessage &reply) { selections = reply.readInt32().value_or(0); });
    pipeline.call(
        path, atspi::TextInterface, "GetSelection",
        [&](DBusMessage &reply) {
            const auto start = reply.readInt32();
            const auto end = reply.readInt32();
            if (start && end)
                selection = {*start, *end};
        },
        "i", 0);
    if (!pipeline.wait())
        return AXError::CannotComplete;
    if (selections <= 0 || !selection) {
        if (!caret || *caret < 0)
            return AXError::NoValue;
        selection = {*caret, *caret};
    }
    const CFRange found = utf16Range(text, selection->first, selection->second, count);
    if (range)
        value = found;
    else
        value = withLineFeeds(
            text.mid(found.location, found.length).remove(QChar::ObjectReplacementCharacter));
    return AXError::Success;
}

AXError AtspiAccessibility::copyChildren(AtspiApplication &application, const QByteArray &path,
                                         AXValue &value)
{
    std::optional<qint32> count;
    Pipeline first(application);
    first.property(path, atspi::AccessibleInterface, "ChildCount", "i",
                   [&](DBusMessage &reply) { count = reply.readInt32(); });
    if (!first.wait())
        return AXError::CannotComplete;
    // Asking a spreadsheet for all of its cells would stop it.
    if (count.value_or(0) > mostChildren)
        return AXError::CannotComplete;
    std::optional<QList<ObjectRef>> refs;
    Pipeline second(application);
    second.call(path, atspi::AccessibleInterface, "GetChildren",
                [&](DBusMessage &reply) { refs = reply.readObjects(); });
    if (!second.wait())
        return AXError::CannotComplete;
    if (!refs)
        return AXError::InvalidUIElement;
    QList<AXUIElement> children;
    for (const ObjectRef &ref : std::as_const(*refs)) {
        if (!ref.isNull())
            children.append(remote(ref));
    }
    value = children;
    return AXError::Success;
}

AXError AtspiAccessibility::copyFrame(AtspiApplication &application, const ObjectRef &element,
                                      const ElementFacts &facts, AXValue &value)
{
    const auto window = m_focus.windowOf(element.busName);
    auto place = window ? m_activeWindow.geometry(*window) : std::nullopt;
    const bool isGtk4 = facts.toolkit == "GTK";
    if (!place && (isGtk4 || m_activeWindow.isPlaceNeeded()))
        return AXError::NoValue;
    // Of a place on the screen that they do not know, programs say what they like.
    const auto coordinates =
        place && place->countsFromWindow ? atspi::CoordType::Window : atspi::CoordType::Screen;
    const QDeadlineTimer deadline(AtspiApplication::patience);
    std::optional<QRect> extents;
    ObjectRef parent;
    const auto askParent = [](Pipeline &pipeline, const QByteArray &path, ObjectRef &to) {
        pipeline.property(
            path, atspi::AccessibleInterface, "Parent", "(so)",
            [&to](DBusMessage &reply) { to = reply.readObject().value_or(ObjectRef()); });
    };
    {
        Pipeline pipeline(application);
        pipeline.call(
            element.path, atspi::ComponentInterface, "GetExtents",
            [&](DBusMessage &reply) { extents = readExtents(reply); }, "u", quint32(coordinates));
        askParent(pipeline, element.path, parent);
        if (!pipeline.wait(deadline))
            return AXError::CannotComplete;
    }
    if (!extents)
        return AXError::NoValue;
    QRect visible = *extents;
    std::optional<QRect> topLevel;
    // A text that scrolls may report all of itself: the part that can be seen is what lies in each
    // element around it that clips.
    for (int depth = 0;
         depth < deepestClip && !parent.isNull() && parent.busName == element.busName; ++depth) {
        quint32 role = 0;
        std::optional<QRect> around;
        ObjectRef next;
        Pipeline pipeline(application);
        pipeline.call(parent.path, atspi::AccessibleInterface, "GetRole",
                      [&](DBusMessage &reply) { role = reply.readUInt32().value_or(0); });
        pipeline.call(
            parent.path, atspi::ComponentInterface, "GetExtents",
            [&](DBusMessage &reply) { around = readExtents(reply); }, "u", quint32(coordinates));
        askParent(pipeline, parent.path, next);
        // Better a frame that is not clipped than none: a busy application may need long for all
        // that lies around its input.
        if (!pipeline.wait(deadline))
            break;
        if (Role(role) == Role::Application)
            break;
        if (around && clipsItsContents(role))
            visible = visible.intersected(*around);
        if (around && isTopLevel(role))
            topLevel = around;
        parent = next;
    }
    QList<ScreenGeometry> screens = currentScreens();
    if (place) {
        place->countsFromWindow |= isGtk4;
        visible =
            ontoScreen(visible, topLevel.value_or(QRect(QPoint(), place->contents.size())), *place);
        if (place->contents.intersects(visible))
            visible = visible.intersected(place->contents);
        if (place->inPoints) {
            for (ScreenGeometry &screen : screens)
                screen.scale = 1;
        }
    }
    if (!isPlausible(visible, screens))
        return AXError::NoValue;
    value = toPoints(visible, screens);
    return AXError::Success;
}

AXError AtspiAccessibility::copyFocusedBelow(const RemoteElement &element, AXValue &value)
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
    for (int depth = 0; depth < deepestClip; ++depth) {
        ObjectRef parent;
        Pipeline pipeline(*application);
        pipeline.property(
            above.path, atspi::AccessibleInterface, "Parent", "(so)",
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
    if (const AXError error = factsOf(*other, application, facts); error != AXError::Success)
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
    if (const AXError error = factsOf(*other, application, facts); error != AXError::Success)
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
        error = factsOf(*other, application, facts);
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

void AtspiAccessibility::forgetAnswers(const QByteArray &busName)
{
    for (auto it = m_answers->begin(); it != m_answers->end(); ++it) {
        if (it.key().busName == busName)
            it->lifetime = 0;
    }
}

void AtspiAccessibility::startSearch(AtspiApplication &application, const ObjectRef &document)
{
    KnownAnswer &answer = (*m_answers)[document];
    answer.searching = true;
    const auto note = [answers = std::weak_ptr(m_answers), document](std::optional<bool> found) {
        const auto known = answers.lock();
        if (!known || !known->contains(document))
            return;
        const auto it = known->find(document);
        it->searching = false;
        it->since.start();
        if (!found)
            return;
        const bool same = it->contains == found && it->lifetime > 0;
        it->lifetime = same ? std::min(it->lifetime * 2, longestAnswer) : shortestAnswer;
        it->contains = found;
    };
    findEditable(application, document.path, note);
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
    if (m_answers->size() > mostKnownFacts)
        m_answers->clear();
    const KnownAnswer known = m_answers->value(document);
    const bool fresh = known.contains && known.since.elapsed() < known.lifetime;
    if (!fresh && !known.searching && application->isAnswering()) {
        startSearch(*application, document);
        application->waitFor([&] { return !(*m_answers)[document].searching; },
                             QDeadlineTimer(searchPatience));
    }
    // While it is being looked for again, the last answer is the best there is.
    const std::optional<bool> contains = m_answers->value(document).contains;
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
    readTreeText(*application, other->ref().path, std::move(completion));
    return true;
}

std::unique_ptr<TypingTarget> AtspiAccessibility::typingTarget(const AXUIElement &element)
{
    const auto *other = as<RemoteElement>(element);
    AtspiApplication *application = nullptr;
    ElementFacts facts;
    if (!other || !hasConsent() || factsOf(*other, application, facts) != AXError::Success)
        return nullptr;
    return AtspiTypingTarget::of(m_bus, m_focus, other->ref(), std::move(facts), other->window());
}

QString AtspiAccessibility::adviceForFocusedApplication()
{
    if (m_lastFocus.kind != FocusTracker::Kind::Application)
        return {};
    // It is on the bus and active, and yet nothing in its windows has the focus.
    const QList<AtspiApplication *> applications = m_bus.applications(m_lastFocus.pid);
    for (const AtspiApplication *application : applications) {
        if (application->toolkit() == "Chromium")
            return tr("This application shows Quillet only its window: quit it and start it with "
                      "the option --force-renderer-accessibility.");
    }
    return {};
}

} // namespace platform::linux_
