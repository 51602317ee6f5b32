// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

#include <csignal>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

namespace fake
{

/// A bus of its own, and on it another process that is the accessibility service, the registry and
/// a program at once. It records what happens to it, in order. Nothing else is ever started there.
class Desktop
{
public:
    Desktop() { start(); }
    ~Desktop() { stop(); }

    QByteArray address() const { return "unix:path=" + path(); }
    pid_t programPid() const { return m_program; }
    /// Of the program on the bus.
    QByteArray programName() { return log("Name").value(0).toLatin1(); }

    void start()
    {
        QFile file(m_folder.filePath(QStringLiteral("bus.conf")));
        (void)file.open(QIODevice::WriteOnly);
        file.write("<busconfig><listen>" + address() +
                   "</listen><policy context='default'><allow send_destination='*'/>"
                   "<allow receive_sender='*'/><allow own='*'/></policy></busconfig>");
        file.close();
        const QByteArray option = "--config-file=" + file.fileName().toLocal8Bit();
        m_daemon = forked();
        if (m_daemon == 0) {
            execlp("dbus-daemon", "dbus-daemon", "--nofork", option.constData(), nullptr);
            _exit(127);
        }
        while (!(m_control = connected()) && waitpid(m_daemon, nullptr, WNOHANG) == 0)
            usleep(1000);
        m_program = forked();
        if (m_program == 0)
            Program(connected(), address()).run();
        while (!tell("Ping") && waitpid(m_program, nullptr, WNOHANG) == 0)
            usleep(1000);
    }
    void stop()
    {
        sd_bus_flush_close_unref(m_control);
        for (const pid_t process : {m_daemon, m_program}) {
            kill(process, SIGKILL);
            waitpid(process, nullptr, 0);
        }
        QFile::remove(QString::fromLocal8Bit(path()));
    }

    /// Has the program own a name on the bus, or give it up.
    void take(const char *name) { tell("Take", name); }
    void release(const char *name) { tell("Release", name); }
    /// The accessibility bus is another one from now on.
    void setBusAddress(const QByteArray &other) { tell("Address", other.constData()); }
    /// Has another client turn the service's switch.
    void turn(bool on)
    {
        sd_bus_call_method(m_control, "org.a11y.Bus", "/org/a11y/bus",
                           "org.freedesktop.DBus.Properties", "Set", nullptr, nullptr, "ssv",
                           "org.a11y.Status", "IsEnabled", "b", int(on));
    }
    /// Has the program report that its element "/input" has the focus.
    void reportFocus() { tell("Focus"); }
    QStringList log(const char *member = "Log")
    {
        sd_bus_message *reply = nullptr;
        char **lines = nullptr;
        QStringList result;
        if (tell(member, "", &reply) && sd_bus_message_read_strv(reply, &lines) >= 0) {
            for (char **line = lines; line && *line; ++line) {
                result.append(QString::fromUtf8(*line));
                free(*line);
            }
            free(lines);
        }
        sd_bus_message_unref(reply);
        return result;
    }

private:
    class Program
    {
    public:
        Program(sd_bus *bus, const QByteArray &address)
            : m_bus(bus)
            , m_address(address)
        {
        }

        [[noreturn]] void run()
        {
            sd_bus_request_name(m_bus, controlName, 0);
            sd_bus_call_method(m_bus, "org.freedesktop.DBus", "/", "org.freedesktop.DBus",
                               "AddMatch", nullptr, nullptr, "s",
                               "type='signal',member='NameOwnerChanged'");
            for (;;) {
                sd_bus_message *message = nullptr;
                const int count = sd_bus_process(m_bus, &message);
                if (count < 0)
                    _exit(0);
                if (message)
                    handle(message);
                sd_bus_message_unref(message);
                if (count == 0)
                    sd_bus_wait(m_bus, UINT64_MAX);
            }
        }

    private:
        void handle(sd_bus_message *message)
        {
            const QByteArray member = sd_bus_message_get_member(message);
            if (member == "NameOwnerChanged") {
                const char *name = "", *before = "", *after = "";
                sd_bus_message_read(message, "sss", &name, &before, &after);
                if (*after == '\0')
                    m_log.append("left " + QByteArray(name));
            } else if (sd_bus_message_is_method_call(message, nullptr, nullptr)) {
                answer(message, member);
            }
        }

        void answer(sd_bus_message *call, const QByteArray &member)
        {
            const char *text = "";
            if (member == "Get") {
                sd_bus_reply_method_return(call, "v", "b", int(m_isEnabled));
                return;
            }
            if (member == "Set") {
                int isEnabled = 0;
                sd_bus_message_skip(call, "ss");
                sd_bus_message_read(call, "v", "b", &isEnabled);
                m_isEnabled = isEnabled;
                sd_bus_emit_signal(m_bus, "/org/a11y/bus", "org.freedesktop.DBus.Properties",
                                   "PropertiesChanged", "sa{sv}as", "org.a11y.Status", 0, 0);
            } else if (member == "GetAddress") {
                sd_bus_reply_method_return(call, "s", m_address.constData());
                return;
            } else if (member == "Log" || member == "Name") {
                replyWithLines(call, member == "Log" ? m_log : QList<QByteArray>{uniqueName()});
                return;
            } else if (member == "Focus") {
                sd_bus_emit_signal(m_bus, "/input", "org.a11y.atspi.Event.Object", "StateChanged",
                                   "siiva{sv}", "focused", 1, 0, "i", 0, 0);
            } else if (member == "Take" && sd_bus_message_read(call, "s", &text) >= 0) {
                sd_bus_request_name(m_bus, text, 0);
            } else if (member == "Release" && sd_bus_message_read(call, "s", &text) >= 0) {
                sd_bus_release_name(m_bus, text);
            } else if (member == "Address" && sd_bus_message_read(call, "s", &text) >= 0) {
                m_address = text;
            } else if (member == "RegisterEvent") {
                sd_bus_message_read(call, "s", &text);
                m_log.append("RegisterEvent " + QByteArray(text));
            } else if (member != "Ping") {
                m_log.append(member);
            }
            sd_bus_reply_method_return(call, "");
        }

        void replyWithLines(sd_bus_message *call, const QList<QByteArray> &lines)
        {
            sd_bus_message *reply = nullptr;
            sd_bus_message_new_method_return(call, &reply);
            sd_bus_message_open_container(reply, 'a', "s");
            for (const QByteArray &line : lines)
                sd_bus_message_append(reply, "s", line.constData());
            sd_bus_message_close_container(reply);
            sd_bus_send(m_bus, reply, nullptr);
            sd_bus_message_unref(reply);
        }

        QByteArray uniqueName() const
        {
            const char *name = "";
            sd_bus_get_unique_name(m_bus, &name);
            return name;
        }

        sd_bus *m_bus;
        QByteArray m_address;
        bool m_isEnabled = false;
        QList<QByteArray> m_log;
    };

    static constexpr char controlName[] = "fake.Desktop";

    QByteArray path() const { return m_folder.filePath(QStringLiteral("bus")).toLocal8Bit(); }

    /// Like fork(), for a process that ends with this one.
    static pid_t forked()
    {
        const pid_t process = fork();
        if (process == 0)
            prctl(PR_SET_PDEATHSIG, SIGKILL);
        return process;
    }

    /// A connection of its own to the bus; null while there is none.
    sd_bus *connected() const
    {
        sd_bus *bus = nullptr;
        sd_bus_new(&bus);
        sd_bus_set_address(bus, address().constData());
        sd_bus_set_bus_client(bus, true);
        const char *name = nullptr;
        if (sd_bus_start(bus) < 0 || sd_bus_get_unique_name(bus, &name) < 0)
            bus = sd_bus_close_unref(bus);
        return bus;
    }

    bool tell(const char *member, const char *text = "", sd_bus_message **reply = nullptr)
    {
        return sd_bus_call_method(m_control, controlName, "/", controlName, member, nullptr, reply,
                                  "s", text) >= 0;
    }

    QTemporaryDir m_folder;
    pid_t m_daemon = -1;
    pid_t m_program = -1;
    sd_bus *m_control = nullptr;
};

} // namespace fake
