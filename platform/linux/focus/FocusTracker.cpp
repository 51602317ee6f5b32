// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/focus/FocusTracker.h"

#include "platform/linux/reading/Attributes.h"
#include "platform/linux/reading/FocusSearch.h"

#include <algorithm>
#include <chrono>
#include <unistd.h>
#include <utility>

namespace platform::linux_
{

using atspi::State;

namespace
{

/// How long the states of the focused element are believed without asking.
constexpr std::chrono::milliseconds refreshInterval{200};
/// An application that has left such a question open for longer does not answer.
constexpr std::chrono::milliseconds refreshPatience{1000};
constexpr std::chrono::milliseconds firstSearchPause{400};
constexpr std::chrono::milliseconds maxSearchPause{6000};
constexpr int maxHostDepth = 64;
/// Firefox fetches a page's attributes only when they are first asked for, and answers without them
/// until it has them.
constexpr int maxAttributeRequests = 5;

std::chrono::milliseconds since(const QElapsedTimer &timer)
{
    return std::chrono::milliseconds(timer.elapsed());
}

} // namespace

FocusTracker::FocusTracker(Applications &bus, ActiveWindow &activeWindow, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
    , m_activeWindow(activeWindow)
{
    connect(&m_bus, &Applications::focusChanged, this, &FocusTracker::onFocusChanged);
    connect(&m_bus, &Applications::windowActivated, this, &FocusTracker::onWindowActivated);
    connect(&m_bus, &Applications::eventsResumed, this, &FocusTracker::forgetChecks);
    connect(&m_bus, &Applications::applicationLeft, this,
            [this](const QByteArray &busName) { m_focus.remove(busName); });
}

void FocusTracker::onFocusChanged(const ObjectRef &element, bool focused)
{
    // Only recorded: thousands of these a second cost almost nothing until the focus is asked for.
    ApplicationFocus &focus = m_focus[element.busName];
    if (focused) {
        focus.order = ++m_order;
        m_lastReporter = element.busName;
        if (focus.reported == element && focus.verified)
            return;
        if (!focus.reported.isNull() && focus.reported != element)
            focus.former = focus.reported;
        focus.reported = element;
    } else if (focus.reported == element) {
        focus.reported = {};
    } else {
        return;
    }
    focus.element = {};
    focus.verified = false;
    focus.unconfirmed = false;
    focus.searched = false;
    focus.fruitlessSearches = 0;
    focus.attributeRequests = 0;
}

void FocusTracker::onWindowActivated(const ObjectRef &window, bool active)
{
    ApplicationFocus &focus = m_focus[window.busName];
    focus.verified = false;
    focus.searched = false;
    focus.fruitlessSearches = 0;
    if (active)
        m_lastReporter = window.busName;
}

void FocusTracker::forgetChecks()
{
    for (ApplicationFocus &focus : m_focus) {
        focus.verified = false;
        focus.searched = false;
        focus.fruitlessSearches = 0;
    }
}

AtspiApplication *FocusTracker::applicationOf(const QList<qint32> &pids)
{
    for (const qint32 pid : pids) {
        QList<AtspiApplication *> found = m_bus.applications(pid);
        if (found.isEmpty())
            continue;
        // A process may be on the bus several times; the one that reports the focus is meant.
        return *std::max_element(found.begin(), found.end(), [this](const auto *a, const auto *b) {
            return m_focus.value(a->busName()).order < m_focus.value(b->busName()).order;
        });
    }
    return nullptr;
}

FocusTracker::Focus FocusTracker::current()
{
    const QDeadlineTimer deadline(AtspiApplication::patience);
    m_bus.catchUp();
    AtspiApplication *application = nullptr;
    if (m_activeWindow.isAvailable()) {
        const auto window = m_activeWindow.activeWindow();
        if (!window) {
            // What the programs say until a window is active again is not believed then.
            m_window = 0;
            return {Kind::Nothing, 0, {}, {}};
        }
        if (window->id != m_window) {
            m_window = window->id;
            forgetChecks();
        }
        if (window->pids.contains(getpid()))
            return {Kind::Own, getpid(), {}, {}};
        m_windowPid = window->pids.value(0);
        m_bus.waitUntilSettled(deadline);
        application = applicationOf(window->pids);
        if (!application)
            return {Kind::Application, m_windowPid, {}, {}};
    } else {
        m_bus.waitUntilSettled(deadline);
        application = m_bus.application(m_lastReporter);
        if (!application)
            return {m_bus.isConnected() ? Kind::Nothing : Kind::Unknown, 0, {}, {}};
        m_windowPid = application->pid();
    }
    Focus focus = inApplication(*application);
    focus.window = m_activeWindow.isAvailable() ? m_window : 0;
    // While nothing is known of an application that the user has just turned to, it is at least
    // known that the focus is no longer where it was.
    if (focus.kind == Kind::Waiting && focus.pid != m_answeredPid)
        focus.kind = Kind::Application;
    m_answeredPid = focus.pid;
    return focus;
}

FocusTracker::Focus FocusTracker::inApplication(AtspiApplication &application)
{
    const QDeadlineTimer deadline(AtspiApplication::patience);
    const qint32 pid = application.pid();
    ApplicationFocus &focus = m_focus[application.busName()];
    if (!application.isAnswering())
        return {Kind::Waiting, pid, {}, {}};
    if (!focus.verified && !focus.reported.isNull())
        verify(application, focus, deadline);
    if (!focus.verified && application.isAnswering())
        search(application, focus, deadline);
    if (!application.isAnswering())
        return {Kind::Waiting, pid, {}, {}};
    if (focus.verified) {
        refresh(application, focus);
        return {Kind::Element, pid, focus.element, focus.facts};
    }
    return {focus.searching ? Kind::Waiting : Kind::Application, pid, {}, {}};
}

bool FocusTracker::verify(AtspiApplication &application, ApplicationFocus &focus,
                          QDeadlineTimer deadline)
{
    const ObjectRef reported = focus.reported;
    ElementFacts facts;
    if (!fetchFacts(application, reported.path, facts, deadline) || facts.has(State::Defunct)) {
        if (application.isAnswering())
            focus.reported = {};
        return false;
    }
    if (!facts.has(State::Focused) && !focus.unconfirmed)
        return false;
    if (mayClaimWithoutFocus(facts.role, application) &&
        !isParentFocused(application, reported.path, deadline)) {
        focus.reported = std::exchange(focus.former, {});
        return !focus.reported.isNull() && verify(application, focus, deadline);
    }

    // Editors report the paragraph that the caret is in; the input is all of the region.
    ObjectRef host = reported;
    ElementFacts hostFacts = facts;
    for (int depth = 0; depth < maxHostDepth && mayBeInsideEditingHost(hostFacts); ++depth) {
        ObjectRef parent;
        Pipeline pipeline(application);
        pipeline.property(host.path, atspi::accessibleInterface, "Parent", "(so)",
                          [&](DBusMessage &reply) { parent = *reply.readObject(); });
        if (!pipeline.wait(deadline))
            return false;
        ElementFacts parentFacts;
        if (parent.isNull() || parent.busName != reported.busName ||
            !fetchFacts(application, parent.path, parentFacts, deadline) ||
            !mayBeInsideEditingHost(parentFacts))
            break;
        host = parent;
        hostFacts = parentFacts;
    }
    focus.element = host;
    focus.facts = hostFacts;
    focus.verified = true;
    focus.sinceRefresh.start();
    return true;
}

/// Whether the element around another one has the focus too.
bool FocusTracker::isParentFocused(AtspiApplication &application, const QByteArray &path,
                                   QDeadlineTimer deadline)
{
    ObjectRef parent;
    Pipeline pipeline(application);
    pipeline.property(path, atspi::accessibleInterface, "Parent", "(so)", [&](DBusMessage &reply) {
        parent = reply.readObject().value_or(ObjectRef());
    });
    ElementFacts facts;
    return pipeline.wait(deadline) && !parent.isNull() &&
           fetchFacts(application, parent.path, facts, deadline) && facts.has(State::Focused);
}

void FocusTracker::search(AtspiApplication &application, ApplicationFocus &focus,
                          QDeadlineTimer deadline)
{
    const QByteArray busName = application.busName();
    if (focus.searching) {
        if (since(focus.sinceSearch) > refreshPatience)
            application.missedDeadline();
        return;
    }
    const std::chrono::milliseconds pause =
        std::min(firstSearchPause * (1 << std::min(focus.fruitlessSearches, 5)), maxSearchPause);
    if (focus.searched && since(focus.sinceSearch) < pause)
        return;
    focus.searching = true;
    focus.searched = true;
    focus.sinceSearch.start();
    const auto done = std::make_shared<bool>(false);
    findFocused(application,
                [self = QPointer(this), busName, done](const std::optional<ObjectRef> &found) {
                    *done = true;
                    // The search ends with its connection, which may outlive this object.
                    if (!self || !self->m_focus.contains(busName))
                        return;
                    const auto it = self->m_focus.find(busName);
                    it->searching = false;
                    if (found) {
                        it->reported = *found;
                        it->unconfirmed = false;
                        it->fruitlessSearches = 0;
                    } else {
                        ++it->fruitlessSearches;
                        it->unconfirmed = !it->reported.isNull();
                    }
                });
    if (!application.waitFor([done] { return *done; }, deadline)) {
        application.missedDeadline();
        return;
    }
    const auto it = m_focus.find(busName);
    if (it != m_focus.end() && !it->reported.isNull())
        verify(application, *it, deadline);
}

void FocusTracker::refresh(AtspiApplication &application, ApplicationFocus &focus)
{
    if (focus.refreshing) {
        if (since(focus.sinceRefresh) > refreshPatience)
            application.missedDeadline();
        return;
    }
    if (since(focus.sinceRefresh) < refreshInterval)
        return;
    focus.refreshing = true;
    focus.sinceRefresh.start();
    const auto asked = [this, busName = application.busName(), element = focus.element,
                        reported = focus.reported](DBusMessage &reply, bool isReported) {
        const auto it = m_focus.find(busName);
        if (it == m_focus.end())
            return;
        if (isReported)
            it->refreshing = false;
        if (it->element != element || it->reported != reported)
            return;
        const auto words = reply.readUInt32s();
        ElementFacts facts;
        facts.setStates(words.value_or(QList<quint32>()));
        if (!words || facts.has(State::Defunct)) {
            it->reported = {};
            it->verified = false;
            it->searched = false;
            return;
        }
        if (isReported && !facts.has(State::Focused) && !it->unconfirmed) {
            it->verified = false;
            it->searched = false;
        }
        if (!isReported || element == reported)
            it->facts.states = facts.states;
    };
    if (focus.facts.tag.isEmpty() && focus.attributeRequests < maxAttributeRequests) {
        ++focus.attributeRequests;
        application.call(
            focus.element.path, atspi::accessibleInterface, "GetAttributes",
            [this, busName = application.busName(), element = focus.element](DBusMessage &reply) {
                const auto it = m_focus.find(busName);
                const auto attributes = reply.readDictionary();
                if (it == m_focus.end() || it->element != element || !attributes)
                    return;
                ElementFacts facts;
                facts.setAttributes(*attributes);
                // What the element is, and which region it lies in, is decided by them.
                if (!facts.tag.isEmpty())
                    it->verified = false;
            });
    }
    if (focus.element == m_watched)
        askPlace(application, focus.facts);
    if (focus.element != focus.reported)
        application.call(focus.element.path, atspi::accessibleInterface, "GetState",
                         [asked](DBusMessage &reply) { asked(reply, false); });
    application.call(focus.reported.path, atspi::accessibleInterface, "GetState",
                     [asked](DBusMessage &reply) { asked(reply, true); });
}

void FocusTracker::watchExtents(const ObjectRef &element)
{
    m_watched = element;
    m_watchedPlace.reset();
}

void FocusTracker::askPlace(AtspiApplication &application, const ElementFacts &facts)
{
    // GTK 4 knows no place on the screen.
    const auto coordinates =
        facts.toolkit == "GTK" ? atspi::CoordType::Window : atspi::CoordType::Screen;
    application.call(
        m_watched.path, atspi::componentInterface, "GetExtents",
        [this, watched = m_watched, isHidden = isHidden(facts)](DBusMessage &reply) {
            if (watched != m_watched || !reply.enterStruct("iiii"))
                return;
            const auto x = reply.readInt32().value_or(0);
            const auto y = reply.readInt32().value_or(0);
            const auto width = reply.readInt32().value_or(0);
            const Place place{QRect(x, y, width, reply.readInt32().value_or(0)), isHidden};
            const bool isOther = m_watchedPlace && *m_watchedPlace != place;
            m_watchedPlace = place;
            if (isOther)
                Q_EMIT extentsChanged();
        },
        "u", quint32(coordinates));
}

bool FocusTracker::hasFocus(const ObjectRef &element)
{
    m_bus.catchUp();
    const auto it = m_focus.constFind(element.busName);
    if (it == m_focus.cend() || it->reported.isNull() ||
        (it->element != element && it->reported != element))
        return false;
    AtspiApplication *application = m_bus.application(element.busName);
    if (!application)
        return false;
    if (!m_activeWindow.isAvailable())
        return m_lastReporter == element.busName;
    const auto window = m_activeWindow.activeWindow();
    return window && window->id == m_window && window->pids.contains(application->pid());
}

bool FocusTracker::hasFocus(const ObjectRef &element, quint32 window)
{
    return hasFocus(element) && (!m_activeWindow.isAvailable() || window == m_window);
}

bool FocusTracker::reportsFocus(const ObjectRef &element) const
{
    const auto it = m_focus.constFind(element.busName);
    return it != m_focus.cend() && it->verified && it->reported == element && !it->unconfirmed;
}

std::optional<quint32> FocusTracker::windowOf(const QByteArray &busName)
{
    const auto window = m_activeWindow.activeWindow();
    AtspiApplication *application = m_bus.application(busName);
    if (!window || !application || !window->pids.contains(application->pid()))
        return std::nullopt;
    return window->id;
}

} // namespace platform::linux_
