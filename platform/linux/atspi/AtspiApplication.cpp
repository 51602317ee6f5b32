// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/atspi/AtspiApplication.h"

#include "platform/linux/atspi/AtspiProtocol.h"
#include "platform/linux/atspi/DBusConnection.h"
#include "platform/linux/atspi/PrivateSocket.h"

#include <unistd.h>

namespace platform::linux_
{

AtspiApplication::AtspiApplication(QByteArray busName, qint32 pid, CallChannel *bus)
    : m_busName(std::move(busName))
    , m_pid(pid)
    , m_bus(bus)
{
}

void AtspiApplication::setListener(CallChannel *listener)
{
    m_listener = listener;
    m_askedForPrivate = m_private != nullptr;
}

void AtspiApplication::missedDeadline()
{
    m_answering = false;
    if (m_probing)
        return;
    m_probing = call(atspi::rootPath, atspi::accessibleInterface, "GetRole",
                     [this](DBusMessage &) { m_probing = false; });
}

CallChannel *AtspiApplication::connection()
{
    introduce();
    if (m_private && m_private->isReady())
        return m_private;
    return m_bus;
}

QByteArray AtspiApplication::destination(const CallChannel *to) const
{
    return to == m_bus ? m_busName : QByteArray();
}

void AtspiApplication::askForPrivate()
{
    if (m_askedForPrivate || !m_listener)
        return;
    m_askedForPrivate = true;
    m_listener->call(m_busName, atspi::rootPath, atspi::applicationInterface,
                     "GetApplicationBusAddress", noting([this](DBusMessage &reply) {
                         if (const auto address = reply.readBytes())
                             connectDirectly(*address);
                     }),
                     CallChannel::withoutLimit);
}

// The address is the application's own claim: it may name a transport that runs a command, or the
// socket of another process. In doubt all calls stay on the bus.
void AtspiApplication::connectDirectly(const QByteArray &address)
{
    const auto socket = parsePrivateAddress(address);
    if (m_private || !socket)
        return;
    const int descriptor = connectToProcess(*socket, m_pid, geteuid());
    if (descriptor < 0)
        return;
    DBusConnection *const direct = DBusConnection::openPeer(descriptor, this);
    m_private = direct;
    if (direct)
        connect(direct, &DBusConnection::closed, direct, &QObject::deleteLater);
}

void AtspiApplication::introduce()
{
    askForPrivate();
    if (m_introduced || !m_bus)
        return;
    m_introduced = true;
    m_bus->call(m_busName, atspi::rootPath, atspi::propertiesInterface, "Get",
                noting([this](DBusMessage &reply) {
                    if (reply.enterVariant("s"))
                        m_toolkit = reply.readBytes().value_or(QByteArray());
                }),
                CallChannel::withoutLimit, "ss", atspi::applicationInterface, "ToolkitName");
}

CallChannel::Handler AtspiApplication::noting(CallChannel::Handler handler)
{
    // The connections may outlive the application's entry: they are the bus's.
    return [self = QPointer(this), handler = std::move(handler)](DBusMessage &message) {
        if (!self)
            return;
        self->m_answering = true;
        handler(message);
    };
}

sd_bus_message *AtspiApplication::newCall(const QByteArray &path, const char *interface,
                                          const char *member)
{
    CallChannel *to = connection();
    return to ? to->newCall(destination(to), path, interface, member) : nullptr;
}

bool AtspiApplication::send(sd_bus_message *message, CallChannel::Handler handler)
{
    CallChannel *to = connection();
    return to && to->send(message, noting(std::move(handler)), CallChannel::withoutLimit);
}

bool AtspiApplication::waitFor(const std::function<bool()> &done, QDeadlineTimer deadline)
{
    // Answers come over one connection or the other, seldom over both: the bus only has some while
    // the private connection is being set up.
    if (m_private && m_private->isReady() && m_private->waitFor(done, deadline))
        return true;
    return m_bus && m_bus->waitFor(done, deadline);
}

void Pipeline::property(const QByteArray &path, const char *interface, const char *name,
                        const char *type, CallChannel::Handler handler)
{
    call(
        path, atspi::propertiesInterface, "Get",
        [type, handler = std::move(handler)](DBusMessage &reply) {
            if (reply.enterVariant(type))
                handler(reply);
        },
        "ss", interface, name);
}

bool Pipeline::wait(QDeadlineTimer deadline)
{
    if (*m_open > 0 && !m_application.waitFor([open = m_open] { return *open == 0; }, deadline)) {
        m_application.missedDeadline();
        return false;
    }
    return !m_failed;
}

CallChannel::Handler Pipeline::counting(CallChannel::Handler handler)
{
    return [open = std::weak_ptr<int>(m_open), handler = std::move(handler)](DBusMessage &reply) {
        const auto count = open.lock();
        if (!count)
            return;
        --*count;
        handler(reply);
    };
}

} // namespace platform::linux_
