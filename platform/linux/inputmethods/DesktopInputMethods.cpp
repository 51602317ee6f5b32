// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/inputmethods/DesktopInputMethods.h"

#include "platform/linux/inputmethods/Ibus.h"

#include <QFile>
#include <QStandardPaths>
#include <QTimer>

#include <chrono>
#include <utility>

namespace platform::linux_
{

namespace
{

constexpr char ibusName[] = "org.freedesktop.IBus";
constexpr char ibusPath[] = "/org/freedesktop/IBus";
constexpr char fcitxName[] = "org.fcitx.Fcitx5";
constexpr char fcitxPath[] = "/controller";
constexpr char fcitxInterface[] = "org.fcitx.Fcitx.Controller1";
constexpr int fcitxActive = 2;
/// An engine that hands on keys as they are.
const QString directEngine = QStringLiteral("xkb:us::eng");
constexpr quint64 patience = 500'000; // microseconds
constexpr std::chrono::milliseconds layoutPause{150};

QByteArray firstLine(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readLine().trimmed() : QByteArray();
}

QByteArray currentIbusAddress()
{
    if (QByteArray address = qgetenv("IBUS_ADDRESS"); !address.isEmpty())
        return address;
    QByteArray machine = firstLine(QStringLiteral("/var/lib/dbus/machine-id"));
    if (machine.isEmpty())
        machine = firstLine(QStringLiteral("/etc/machine-id"));
    QFile file(
        ibusAddressFile(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation),
                        machine, qgetenv("DISPLAY")));
    return file.open(QIODevice::ReadOnly) ? ibusAddress(file.readAll()) : QByteArray();
}

} // namespace

DesktopInputMethods::DesktopInputMethods(QByteArray sessionBus)
    : m_sessionBus(sessionBus.isEmpty() ? qgetenv("DBUS_SESSION_BUS_ADDRESS")
                                        : std::move(sessionBus))
{
}

DBusConnection *DesktopInputMethods::ibus()
{
    if (!m_ibus || !m_ibus->isOpen()) {
        const QByteArray address = currentIbusAddress();
        m_ibus = address.isEmpty() ? nullptr : DBusConnection::openBus(address, this);
    }
    return m_ibus;
}

DBusConnection *DesktopInputMethods::session()
{
    if ((!m_session || !m_session->isOpen()) && !m_sessionBus.isEmpty())
        m_session = DBusConnection::openBus(m_sessionBus, this);
    return m_session;
}

void DesktopInputMethods::suspend(std::function<void(bool)> done)
{
    m_done = std::move(done);
    m_areDirect = true;
    m_open = 3;
    askIbus();
    askFcitx();
    settled(true);
}

void DesktopInputMethods::settled(bool isDirect)
{
    m_areDirect &= isDirect;
    if (--m_open > 0)
        return;
    if (const auto done = std::exchange(m_done, nullptr))
        done(m_areDirect);
}

void DesktopInputMethods::askIbus()
{
    const auto onEngine = [this](DBusMessage &reply) {
        // An IBusEngineDesc: its type's name, attachments, then its own name.
        while (reply.enterAnyVariant()) {
        }
        const bool known = reply.enterAnyStruct() && reply.skip("sa{sv}");
        const QString engine = known ? reply.readString().value_or(QString()) : QString();
        if (isDirectIbusEngine(engine)) {
            settled(true);
            return;
        }
        setIbusEngine(directEngine, [this, engine](DBusMessage &answer) {
            if (answer.isError()) {
                settled(false);
                return;
            }
            m_ibusEngine = engine;
            // Its panel may set the engine's keyboard layout.
            QTimer::singleShot(layoutPause, this, [this] { settled(true); });
        });
    };
    DBusConnection *bus = ibus();
    if (!bus || !bus->call(ibusName, ibusPath, "org.freedesktop.DBus.Properties", "Get", onEngine,
                           patience, "ss", ibusName, "GlobalEngine"))
        settled(true);
}

void DesktopInputMethods::setIbusEngine(const QString &engine, CallChannel::Handler handler)
{
    if (!m_ibus || !m_ibus->call(ibusName, ibusPath, ibusName, "SetGlobalEngine",
                                 std::move(handler), patience, "s", engine.toUtf8().constData()))
        settled(false);
}

void DesktopInputMethods::askFcitx()
{
    const auto onState = [this](DBusMessage &reply) {
        if (reply.readInt32() != fcitxActive) {
            settled(true);
            return;
        }
        callFcitx("Deactivate", [this](DBusMessage &answer) {
            m_fcitxWasActive = !answer.isError();
            settled(!answer.isError());
        });
    };
    const auto onOwner = [this, onState](DBusMessage &reply) {
        // A call to the name alone would start it.
        if (reply.readBool().value_or(false))
            callFcitx("State", onState);
        else
            settled(true);
    };
    DBusConnection *bus = session();
    if (!bus || !bus->call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                           "NameHasOwner", onOwner, patience, "s", fcitxName))
        settled(true);
}

void DesktopInputMethods::callFcitx(const char *method, CallChannel::Handler handler)
{
    if (!m_session || !m_session->call(fcitxName, fcitxPath, fcitxInterface, method,
                                       std::move(handler), patience))
        settled(false);
}

void DesktopInputMethods::resume()
{
    const auto ignore = [](DBusMessage &) {};
    if (const QString engine = std::exchange(m_ibusEngine, QString()); !engine.isEmpty() && m_ibus)
        m_ibus->call(ibusName, ibusPath, ibusName, "SetGlobalEngine", ignore, patience, "s",
                     engine.toUtf8().constData());
    if (std::exchange(m_fcitxWasActive, false) && m_session)
        m_session->call(fcitxName, fcitxPath, fcitxInterface, "Activate", ignore, patience);
}

} // namespace platform::linux_
