// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/atspi/AtspiBus.h"

#include "platform/linux/atspi/AtspiProtocol.h"

#include <chrono>
#include <utility>

// The events that applications report: registering for them, and pausing them while keys are typed.

namespace platform::linux_
{

namespace
{

/// If a listener has left before an application learns about it, the application keeps it for good.
/// So a listener stays this long, and waits this long before it comes back.
constexpr std::chrono::milliseconds minListening{500};
constexpr std::chrono::milliseconds resumeAfter{300};

/// Registered with the registry, and the signals that applications send for them. Chromium, GTK and
/// Qt send only what a client has registered for.
struct Listener {
    const char *event;
    const char *rule;
};
constexpr Listener listeners[] = {
    {"object:state-changed:focused",
     "type='signal',interface='org.a11y.atspi.Event.Object',member='StateChanged',arg0='focused'"},
    {"window:activate", "type='signal',interface='org.a11y.atspi.Event.Window',member='Activate'"},
    {"window:deactivate",
     "type='signal',interface='org.a11y.atspi.Event.Window',member='Deactivate'"},
    {"document:load-complete",
     "type='signal',interface='org.a11y.atspi.Event.Document',member='LoadComplete'"},
};

} // namespace

void AtspiBus::startListening()
{
    m_reports = connectTo(m_address);
    if (!m_reports)
        return;
    m_sinceListening.start();
    for (const Listener &listener : listeners) {
        m_reports->addMatch(listener.rule, [this](DBusMessage &event) {
            m_failures = 0;
            const ObjectRef source{event.sender(), event.path()};
            const QByteArray member = event.member();
            if (member == "StateChanged") {
                if (event.readBytes() != "focused")
                    return;
                Q_EMIT focusChanged(source, event.readInt32().value_or(0) != 0);
            } else if (member == "LoadComplete") {
                Q_EMIT contentChanged(source.busName);
            } else {
                Q_EMIT windowActivated(source, member == "Activate");
            }
        });
    }
    registerListeners();
    for (const auto &application : m_applications)
        application->setListener(m_reports);
}

void AtspiBus::registerListeners()
{
    if (!m_reports)
        return;
    for (const Listener &listener : listeners) {
        sd_bus_message *message = m_reports->newCall(atspi::registryName, atspi::registryPath,
                                                     atspi::registryInterface, "RegisterEvent");
        if (!message)
            return;
        // The event, the properties to send along, and the only application to listen to.
        sd_bus_message_append(message, "sass", listener.event, 0, "");
        m_reports->send(
            message, [this](DBusMessage &) { Q_EMIT changed(); }, serviceLimit);
    }
}

void AtspiBus::pauseEvents(const QByteArray &busName, std::function<void()> known)
{
    m_resume.stop();
    m_awaitingPause.emplace_back(busName, std::move(known));
    if (m_pauses++ == 0 && m_reports &&
        std::chrono::milliseconds(m_sinceListening.elapsed()) >= minListening) {
        m_leavingName = m_reports->uniqueName();
        drop(&m_reports);
    }
    if (m_leavingName.isEmpty())
        announcePause();
}

// The registry first: Qt's programs learn it from there. A program that answers, even with an
// error, has handled what the bus sent before.
void AtspiBus::announcePause()
{
    if (!m_calls)
        return;
    m_calls->call(
        atspi::registryName, atspi::registryPath, atspi::registryInterface, "GetRegisteredEvents",
        [this, waiting = std::exchange(m_awaitingPause, {})](DBusMessage &) {
            for (const auto &[busName, known] : waiting) {
                // Not "Ping" of org.freedesktop.DBus.Peer, which a thread of Qt's answers.
                if (m_calls)
                    m_calls->call(
                        busName, atspi::rootPath, atspi::accessibleInterface, "GetState",
                        [known = known](DBusMessage &) { known(); }, DBusConnection::withoutLimit);
            }
        },
        serviceLimit);
}

void AtspiBus::resumeEvents()
{
    if (--m_pauses == 0)
        m_resume.start(resumeAfter);
}

void AtspiBus::listenAgain()
{
    if (m_calls && !m_reports) {
        startListening();
        if (!m_reports) {
            disconnectBus();
            retry();
        }
    }
    Q_EMIT eventsResumed();
}

} // namespace platform::linux_
