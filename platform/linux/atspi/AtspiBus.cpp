// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/atspi/AtspiBus.h"

#include "platform/linux/atspi/AtspiProtocol.h"
#include "platform/linux/atspi/WebProcess.h"

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
    m_awaitingPause.clear();
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
                                  announcePause();
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
                m_applications.push_back(
                    std::make_unique<AtspiApplication>(name, processWithWindow(pid), m_calls));
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
