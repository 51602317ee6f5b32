// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/diagnosis/AccessibilityFacts.h"

#include <QDir>

#include <systemd/sd-bus.h>

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <optional>
#include <utility>

namespace platform::linux_
{

namespace
{

constexpr std::chrono::microseconds answerLimit = std::chrono::seconds(2);
constexpr int maxObjects = 500;
constexpr char rootPath[] = "/org/a11y/atspi/accessible/root";
constexpr char nullPath[] = "/org/a11y/atspi/null";
constexpr char accessible[] = "org.a11y.atspi.Accessible";

struct Release {
    void operator()(sd_bus *bus) const { sd_bus_flush_close_unref(bus); }
    void operator()(sd_bus_message *message) const { sd_bus_message_unref(message); }
};
using Bus = std::unique_ptr<sd_bus, Release>;
using Message = std::unique_ptr<sd_bus_message, Release>;
/// Bus name and path.
using Object = std::pair<QByteArray, QByteArray>;

/// The answer of a method without arguments, or of one that takes a string; null on any error.
Message call(sd_bus *bus, const Object &object, const char *interface, const char *member,
             const char *argument = nullptr)
{
    sd_bus_message *reply = nullptr;
    sd_bus_call_method(bus, object.first.constData(), object.second.constData(), interface, member,
                       nullptr, &reply, argument ? "s" : nullptr, argument);
    return Message(reply);
}

Bus openSession()
{
    sd_bus *bus = nullptr;
    if (sd_bus_open_user(&bus) < 0)
        return {};
    sd_bus_set_method_call_timeout(bus, std::uint64_t(answerLimit.count()));
    return Bus(bus);
}

Bus openAccessibilityBus(sd_bus *session)
{
    const Message reply =
        call(session, {"org.a11y.Bus", "/org/a11y/bus"}, "org.a11y.Bus", "GetAddress");
    const char *address = nullptr;
    sd_bus *bus = nullptr;
    if (!reply || sd_bus_message_read(reply.get(), "s", &address) < 0 || sd_bus_new(&bus) < 0)
        return {};
    Bus owned(bus);
    if (sd_bus_set_address(bus, address) < 0 || sd_bus_set_bus_client(bus, true) < 0 ||
        sd_bus_start(bus) < 0)
        return {};
    sd_bus_set_method_call_timeout(bus, std::uint64_t(answerLimit.count()));
    return owned;
}

QString textProperty(sd_bus *bus, const Object &object, const char *interface, const char *name)
{
    char *value = nullptr;
    if (sd_bus_get_property_string(bus, object.first.constData(), object.second.constData(),
                                   interface, name, nullptr, &value) < 0)
        return {};
    QString text = QString::fromUtf8(value);
    std::free(value);
    return text;
}

bool hasName(sd_bus *bus, const char *name)
{
    const Message reply = call(bus, {"org.freedesktop.DBus", "/org/freedesktop/DBus"},
                               "org.freedesktop.DBus", "NameHasOwner", name);
    int owned = 0;
    return reply && sd_bus_message_read(reply.get(), "b", &owned) >= 0 && owned;
}

/// Absent when the object does not answer.
std::optional<QList<Object>> children(sd_bus *bus, const Object &object)
{
    const Message reply = call(bus, object, accessible, "GetChildren");
    if (!reply || sd_bus_message_enter_container(reply.get(), 'a', "(so)") < 0)
        return {};
    QList<Object> found;
    const char *name = nullptr;
    const char *path = nullptr;
    for (int i = 0; i < maxObjects && sd_bus_message_read(reply.get(), "(so)", &name, &path) > 0;
         ++i) {
        // A window that keeps its contents to itself has one child, which is none.
        if (QByteArrayView(path) != QByteArrayView(nullPath))
            found.append(Object(name, path));
    }
    return found;
}

std::int32_t processOf(sd_bus *bus, const QByteArray &name)
{
    const Message reply =
        call(bus, {"org.freedesktop.DBus", "/org/freedesktop/DBus"}, "org.freedesktop.DBus",
             "GetConnectionUnixProcessID", name.constData());
    std::uint32_t pid = 0;
    return reply && sd_bus_message_read(reply.get(), "u", &pid) >= 0 ? std::int32_t(pid) : 0;
}

/// What makes a program with this toolkit show its elements for good.
QString remedyFor(const QString &toolkit)
{
    if (toolkit != QLatin1StringView("Chromium"))
        return {};
    // Debian's Chromium takes its options from the files of this folder.
    if (QDir(QStringLiteral("/etc/chromium.d")).exists())
        return QStringLiteral(
            "echo 'export CHROMIUM_FLAGS=\"$CHROMIUM_FLAGS --force-renderer-accessibility\"' | "
            "sudo tee /etc/chromium.d/accessibility");
    return QStringLiteral("Start it with the option --force-renderer-accessibility.");
}

/// A program that has no window is left out.
std::optional<SystemFacts::Program> programOf(sd_bus *bus, const Object &application)
{
    using Shows = SystemFacts::Program::Shows;
    const std::optional<QList<Object>> windows = children(bus, application);
    if (!windows || windows->isEmpty())
        return {};
    SystemFacts::Program program;
    program.pid = processOf(bus, application.first);
    if (program.pid == getpid())
        return {};
    program.name = textProperty(bus, application, accessible, "Name");
    program.shows = Shows::Windows;
    for (const Object &window : *windows) {
        const std::optional<QList<Object>> contents = children(bus, window);
        if (contents && !contents->isEmpty())
            program.shows = Shows::Elements;
    }
    if (program.shows == Shows::Windows)
        program.remedy =
            remedyFor(textProperty(bus, application, "org.a11y.atspi.Application", "ToolkitName"));
    return program;
}

} // namespace

void addAccessibilityFacts(SystemFacts &facts)
{
    const Bus session = openSession();
    if (!session)
        return;
    facts.hasTray = facts.hasTray || hasName(session.get(), "org.kde.StatusNotifierWatcher");
    facts.accessibility = SystemFacts::Service::Missing;
    const Bus bus = openAccessibilityBus(session.get());
    if (!bus)
        return;
    int enabled = 0;
    sd_bus_get_property_trivial(session.get(), "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Status",
                                "IsEnabled", nullptr, 'b', &enabled);
    facts.accessibility = enabled ? SystemFacts::Service::On : SystemFacts::Service::Off;
    const auto applications = children(bus.get(), {"org.a11y.atspi.Registry", rootPath});
    for (const Object &application : applications.value_or(QList<Object>())) {
        if (const auto program = programOf(bus.get(), application))
            facts.programs.append(*program);
    }
}

} // namespace platform::linux_
