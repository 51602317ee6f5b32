// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/atspi/AtspiBus.h"

#include "platform/linux/atspi/AtspiProtocol.h"

#include <algorithm>
#include <unistd.h>

namespace platform::linux_
{

namespace
{

constexpr char a11yBusName[] = "org.a11y.Bus";
constexpr char a11yBusPath[] = "/org/a11y/bus";
constexpr char a11yStatus[] = "org.a11y.Status";
constexpr char dbusName[] = "org.freedesktop.DBus";
constexpr char dbusPath[] = "/org/freedesktop/DBus";

/// Starting the service can take a while on a busy machine.
constexpr quint64 serviceLimit = 30'000'000; // microseconds

/// If a listener has left before an application learns about it, the application keeps it for good.
/// So a listener stays this long, and waits this long before it comes back.
constexpr int shortestListening = 500; // milliseconds
constexpr int resumeAfter = 300;       // milliseconds

/// Registered with the registry, and the signals that applications send for them. Chromium, GTK and
/// Qt send only what somebody has registered for.
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

QByteArray sessionAddressFromEnvironment()
{
    QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    if (!address.isEmpty())
        return address;
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    return runtime.isEmpty() ? QByteArray() : "unix:path=" + runtime + "/bus";
}

} // namespace

AtspiBus::AtspiBus(const QByteArray &sessionAddress, QObject *parent)
    : Applications(parent)
    , m_sessionAddress(sessionAddress)
{
    if (m_sessionAddress.isEmpty())
        m_sessionAddress = sessionAddressFromEnvironment();
    m_retry.setSingleShot(true);
    m_resume.setSingleShot(true);
    connect(&m_resume, &QTimer::timeout, this, &AtspiBus::listenAgain);
    connect(&m_retry, &QTimer::timeout, this, [this] {
        if (!m_session)
            connectSession();
        else
            askForBus();
    });
    connectSession();
}

AtspiBus::~AtspiBus() = default;

void AtspiBus::connectSession()
{
    m_session = DBusConnection::openBus(m_sessionAddress, this);
    if (!m_session) {
        setService(Service::Missing, false);
        retry();
        return;
    }
    connect(m_session, &DBusConnection::closed, this, [this] {
        m_session->deleteLater();
        m_session = nullptr;
        disconnectBus();
        setService(Service::Missing, false);
        retry();
    });
    m_session->addMatch("type='signal',sender='org.a11y.Bus',path='/org/a11y/bus',"
                        "interface='org.freedesktop.DBus.Properties',member='PropertiesChanged',"
                        "arg0='org.a11y.Status'",
                        [this](DBusMessage &) { readEnabled(); });
    m_session->addMatch("type='signal',sender='org.freedesktop.DBus',"
                        "interface='org.freedesktop.DBus',member='NameOwnerChanged',"
                        "arg0='org.a11y.Bus'",
                        [this](DBusMessage &) {
                            readEnabled();
                            if (m_listening && !m_calls)
                                askForBus();
                        });
    readEnabled();
    if (m_listening)
        askForBus();
}

void AtspiBus::readEnabled()
{
    if (!m_session)
        return;
    m_session->call(
        a11yBusName, a11yBusPath, atspi::propertiesInterface, "Get",
        [this](DBusMessage &reply) {
            if (!reply.enterVariant("b")) {
                setService(Service::Missing, false);
                return;
            }
            setService(Service::Present, reply.readBool().value_or(false));
        },
        serviceLimit, "ss", a11yStatus, "IsEnabled");
}

void AtspiBus::setService(Service service, bool enabled)
{
    if (m_service == service && m_enabled == enabled)
        return;
    m_service = service;
    m_enabled = enabled;
    Q_EMIT changed();
}

void AtspiBus::setEnabled(bool enabled)
{
    if (!m_session)
        return;
    m_session->call(
        a11yBusName, a11yBusPath, atspi::propertiesInterface, "Set",
        [this](DBusMessage &) { readEnabled(); }, serviceLimit, "ssv", a11yStatus, "IsEnabled", "b",
        int(enabled));
}

void AtspiBus::setListening(bool listening)
{
    if (m_listening == listening)
        return;
    m_listening = listening;
    if (listening)
        askForBus();
    else
        disconnectBus();
}

bool AtspiBus::isConnected() const
{
    return m_calls && m_calls->isReady() && m_names->isReady() &&
           (!m_reports || m_reports->isReady());
}

void AtspiBus::askForBus()
{
    if (!m_session || m_calls || m_asking || !m_listening)
        return;
    m_asking = m_session->call(
        a11yBusName, a11yBusPath, a11yBusName, "GetAddress",
        [this](DBusMessage &reply) {
            m_asking = false;
            const auto address = reply.readBytes();
            if (address && !address->isEmpty() && m_listening)
                connectBus(*address);
            else if (m_listening)
                retry();
        },
        serviceLimit);
    if (!m_asking)
        retry();
}

void AtspiBus::retry()
{
    if (m_retry.isActive())
        return;
    m_retry.start(std::min(100 << std::min(m_failures, 6), 5000));
    ++m_failures;
}

void AtspiBus::connectBus(const QByteArray &address)
{
    m_address = address;
    m_calls = connectTo(address);
    m_names = connectTo(address);
    if (m_pauses == 0)
        startListening();
    if (!m_calls || !m_names || (m_pauses == 0 && !m_reports)) {
        disconnectBus();
        retry();
        return;
    }
    watchNames();
    Q_EMIT changed();
}

DBusConnection *AtspiBus::connectTo(const QByteArray &address)
{
    DBusConnection *connection = DBusConnection::openBus(address, this);
    if (connection) {
        connect(connection, &DBusConnection::closed, this, [this] {
            disconnectBus();
            readEnabled();
            retry();
        });
    }
    return connection;
}

void AtspiBus::disconnectBus()
{
    const bool was = m_calls != nullptr;
    m_namesListed = false;
    m_unknownProcesses.clear();
    m_registryOwner.clear();
    m_leavingName.clear();
    m_toldOfPause.clear();
    while (!m_applications.empty())
        removeName(QByteArray(m_applications.back()->busName()));
    for (DBusConnection **connection : {&m_calls, &m_names, &m_reports})
        drop(connection);
    if (was)
        Q_EMIT changed();
}

void AtspiBus::drop(DBusConnection **connection)
{
    if (!*connection)
        return;
    (*connection)->disconnect(this);
    (*connection)->deleteLater();
    *connection = nullptr;
}

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

void AtspiBus::watchNames()
{
    m_names->addMatch("type='signal',sender='org.freedesktop.DBus',"
                      "interface='org.freedesktop.DBus',member='NameOwnerChanged'",
                      [this](DBusMessage &event) {
                          const QByteArray name = event.readBytes().value_or(QByteArray());
                          event.readBytes();
                          const QByteArray owner = event.readBytes().value_or(QByteArray());
                          if (name == atspi::registryName) {
                              // A new registry knows nothing of us; none at all is started by
                              // asking it.
                              if (owner != m_registryOwner)
                                  QTimer::singleShot(owner.isEmpty() ? 300 : 0, this,
                                                     &AtspiBus::registerListeners);
                              m_registryOwner = owner;
                          } else if (name.startsWith(':')) {
                              if (!owner.isEmpty()) {
                                  addName(name);
                                  return;
                              }
                              removeName(name);
                              if (name == m_leavingName) {
                                  m_leavingName.clear();
                                  tellOfPause();
                              }
                          }
                      });
    m_calls->call(
        dbusName, dbusPath, dbusName, "ListNames",
        [this](DBusMessage &reply) {
            for (const QByteArray &name : reply.readStrings().value_or(QList<QByteArray>())) {
                if (name.startsWith(':'))
                    addName(name);
            }
            m_namesListed = true;
            // Either of the two connections may be the later one to be ready.
            Q_EMIT changed();
        },
        serviceLimit);
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
    m_toldOfPause.emplace_back(busName, std::move(known));
    if (m_pauses++ == 0 && m_reports && m_sinceListening.elapsed() >= shortestListening) {
        m_leavingName = m_reports->uniqueName();
        drop(&m_reports);
    }
    if (m_leavingName.isEmpty())
        tellOfPause();
}

// The registry first: Qt's programs learn it from there. A program that answers, even with an
// error, has handled what the bus sent before.
void AtspiBus::tellOfPause()
{
    if (!m_calls)
        return;
    m_calls->call(
        atspi::registryName, atspi::registryPath, atspi::registryInterface, "GetRegisteredEvents",
        [this, told = std::exchange(m_toldOfPause, {})](DBusMessage &) {
            for (const auto &[busName, known] : told) {
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

void AtspiBus::addName(const QByteArray &name)
{
    if (!m_calls || m_unknownProcesses.contains(name) || application(name))
        return;
    m_unknownProcesses.insert(name);
    m_calls->call(
        dbusName, dbusPath, dbusName, "GetConnectionUnixProcessID",
        [this, name](DBusMessage &reply) {
            if (!m_unknownProcesses.remove(name))
                return;
            // Our own windows are never asked over the bus: the answer would have to come from us.
            const qint32 pid = qint32(reply.readUInt32().value_or(0));
            if (pid != getpid() && !reply.isError()) {
                m_applications.push_back(std::make_unique<AtspiApplication>(name, pid, m_calls));
                m_applications.back()->setListener(m_reports);
            }
        },
        serviceLimit, "s", name.constData());
}

void AtspiBus::removeName(const QByteArray &name)
{
    m_unknownProcesses.remove(name);
    const auto found = std::find_if(m_applications.begin(), m_applications.end(),
                                    [&](const auto &each) { return each->busName() == name; });
    if (found == m_applications.end())
        return;
    // Its connection may be the one that is being served right now.
    found->release()->deleteLater();
    m_applications.erase(found);
    Q_EMIT applicationLeft(name);
}

void AtspiBus::waitUntilSettled(QDeadlineTimer deadline)
{
    if (m_session && (m_service == Service::Unknown || (m_listening && !m_calls)))
        m_session->waitFor(
            [this] {
                return m_service != Service::Unknown &&
                       (!m_listening || m_calls || m_service == Service::Missing);
            },
            deadline);
    for (DBusConnection *connection : {m_names, m_reports}) {
        if (connection && !connection->isReady())
            connection->waitFor([connection] { return connection->isReady(); }, deadline);
    }
    if (m_calls && (!m_namesListed || !m_unknownProcesses.isEmpty()))
        m_calls->waitFor([this] { return m_namesListed && m_unknownProcesses.isEmpty(); },
                         deadline);
}

void AtspiBus::catchUp()
{
    for (DBusConnection *connection : {m_names, m_reports}) {
        if (connection)
            connection->catchUp();
    }
}

AtspiApplication *AtspiBus::application(const QByteArray &busName)
{
    for (const auto &each : m_applications) {
        if (each->busName() == busName)
            return each.get();
    }
    return nullptr;
}

QList<AtspiApplication *> AtspiBus::applications(qint32 pid)
{
    QList<AtspiApplication *> found;
    for (const auto &each : m_applications) {
        if (each->pid() == pid)
            found.append(each.get());
    }
    return found;
}

} // namespace platform::linux_
