// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/atspi/AtspiProtocol.h"
#include "platform/linux/atspi/CallChannel.h"

#include <QHash>
#include <QRect>
#include <QStringList>

#include <deque>
#include <sys/socket.h>
#include <unistd.h>

namespace fake
{

using namespace platform::linux_;

/// Another program on the accessibility bus, in this process: it answers from a tree of elements
/// when it is served, never by itself, and records what it is asked. The time that it takes is
/// none: who waits for an answer that it holds back has waited until the deadline.
class Program : public CallChannel
{
public:
    struct Element {
        atspi::Role role = atspi::Role::Panel;
        QList<atspi::State> states = {atspi::State::Visible, atspi::State::Showing};
        QList<QByteArray> children = {};
        QString text = {};
        QList<std::pair<QByteArray, QByteArray>> attributes = {};
        QByteArray parent = {};
        QRect extents = {};
    };

    QByteArray busName = ":1.7";
    QByteArray toolkit = "gtk";
    /// By path. One that is not here is gone; "/foreign" belongs to another program.
    QHash<QByteArray, Element> elements;
    bool hasCollection = false;
    /// Holds all answers back.
    bool isSilent = false;
    /// "PATH MEMBER" of every call, in order.
    QStringList calls;

    Program()
    {
        (void)socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, m_sockets);
        sd_bus_new(&m_bus);
        sd_bus_set_fd(m_bus, m_sockets[0], m_sockets[0]);
        sd_bus_start(m_bus);
    }
    ~Program() override
    {
        for (const Open &open : m_open)
            sd_bus_message_unref(open.call);
        sd_bus_close_unref(m_bus);
        close(m_sockets[1]);
    }

    /// Adds an element below `parent`; the root's children are its windows.
    void add(const QByteArray &path, const QByteArray &parent, Element element)
    {
        element.parent = parent;
        elements.insert(path, element);
        elements[parent].children.append(path);
    }

    bool isReady() const override { return true; }

    sd_bus_message *newCall(const QByteArray &destination, const QByteArray &path,
                            const char *interface, const char *member) override
    {
        sd_bus_message *message = nullptr;
        sd_bus_message_new_method_call(m_bus, &message, destination.constData(), path.constData(),
                                       interface, member);
        return message;
    }

    bool send(sd_bus_message *message, Handler handler, quint64) override
    {
        sd_bus_message_seal(message, ++m_cookie, 0);
        calls.append(QString::fromLatin1(sd_bus_message_get_path(message)) + u' ' +
                     QString::fromLatin1(sd_bus_message_get_member(message)));
        m_open.push_back({message, std::move(handler)});
        return true;
    }

    bool waitFor(const std::function<bool()> &done, QDeadlineTimer) override
    {
        while (!done() && answerOne()) {
        }
        return done();
    }

    /// Answers everything.
    void serve()
    {
        while (answerOne()) {
        }
    }

private:
    struct Open {
        sd_bus_message *call;
        Handler handler;
    };

    bool answerOne()
    {
        if (isSilent || m_open.empty())
            return false;
        const Open open = std::move(m_open.front());
        m_open.pop_front();
        sd_bus_message_rewind(open.call, true);
        sd_bus_message *reply = nullptr;
        sd_bus_message_new_method_return(open.call, &reply);
        if (!fill(reply, open.call)) {
            sd_bus_message_unref(reply);
            sd_bus_message_new_method_errorf(open.call, &reply, "org.freedesktop.DBus.Error.Failed",
                                             "No");
        }
        sd_bus_message_seal(reply, ++m_cookie, 0);
        sd_bus_message_rewind(reply, true);
        DBusMessage answer(reply);
        open.handler(answer);
        sd_bus_message_unref(reply);
        sd_bus_message_unref(open.call);
        return true;
    }

    bool fill(sd_bus_message *reply, sd_bus_message *call) const
    {
        const QByteArray path = sd_bus_message_get_path(call);
        const QByteArray member = sd_bus_message_get_member(call);
        const auto it = elements.constFind(path);
        if (it == elements.cend())
            return false;
        const Element &element = *it;
        const quint64 states = statesOf(element);
        if (member == "GetRole")
            return sd_bus_message_append(reply, "u", quint32(element.role)) >= 0;
        if (member == "GetState")
            return sd_bus_message_append(reply, "au", 2, quint32(states), quint32(states >> 32)) >=
                   0;
        if (member == "GetInterfaces" && hasCollection)
            return sd_bus_message_append(reply, "as", 2, "org.a11y.atspi.Text",
                                         "org.a11y.atspi.Collection") >= 0;
        if (member == "GetInterfaces")
            return sd_bus_message_append(reply, "as", 1, "org.a11y.atspi.Text") >= 0;
        if (member == "GetExtents")
            return sd_bus_message_append(reply, "(iiii)", element.extents.x(), element.extents.y(),
                                         element.extents.width(), element.extents.height()) >= 0;
        if (member == "GetChildren")
            return appendRefs(reply, element.children);
        if (member == "GetText")
            return sd_bus_message_append(reply, "s", element.text.toUtf8().constData()) >= 0;
        if (member == "GetAttributes") {
            sd_bus_message_open_container(reply, 'a', "{ss}");
            for (const auto &[key, value] : element.attributes)
                sd_bus_message_append(reply, "{ss}", key.constData(), value.constData());
            return sd_bus_message_close_container(reply) >= 0;
        }
        if (member == "Get")
            return fillProperty(reply, call, element);
        return member == "GetMatches" && hasCollection && fillMatches(reply, call, path);
    }

    bool fillProperty(sd_bus_message *reply, sd_bus_message *call, const Element &element) const
    {
        const char *interface = nullptr;
        const char *name = nullptr;
        sd_bus_message_read(call, "ss", &interface, &name);
        if (qstrcmp(name, "ChildCount") == 0)
            return sd_bus_message_append(reply, "v", "i", int(element.children.size())) >= 0;
        if (qstrcmp(name, "CharacterCount") == 0)
            return sd_bus_message_append(reply, "v", "i", int(element.text.size())) >= 0;
        if (qstrcmp(name, "Parent") == 0)
            return sd_bus_message_append(
                       reply, "v", "(so)", busName.constData(),
                       element.parent.isEmpty() ? "/null" : element.parent.constData()) >= 0;
        return qstrcmp(name, "ToolkitName") == 0 &&
               sd_bus_message_append(reply, "v", "s", toolkit.constData()) >= 0;
    }

    bool fillMatches(sd_bus_message *reply, sd_bus_message *call, const QByteArray &path) const
    {
        DBusMessage rule(call);
        rule.enterStruct("aiia{ss}iaiiasib");
        const auto readWords = [call] {
            const void *data = nullptr;
            size_t size = 0;
            sd_bus_message_read_array(call, 'i', &data, &size);
            const auto *first = static_cast<const quint32 *>(data);
            return QList<quint32>(first, first + size / sizeof(quint32));
        };
        const QList<quint32> states = readWords();
        rule.skip("ia{ss}i");
        const QList<quint32> roles = readWords();
        QList<QByteArray> found;
        collect(path, states.value(0) | quint64(states.value(1)) << 32, roles, &found);
        return appendRefs(reply, found);
    }

    void collect(const QByteArray &path, quint64 states, const QList<quint32> &roles,
                 QList<QByteArray> *found, int depth = 0) const
    {
        if (depth > maxDepth)
            return;
        for (const QByteArray &child : elements.value(path).children) {
            const Element element = elements.value(child);
            const auto role = quint32(element.role);
            const bool isAnyRole = roles.count(0) == roles.size();
            if ((statesOf(element) & states) == states &&
                (isAnyRole || (roles.value(role / 32) & (1U << (role % 32)))))
                found->append(child);
            collect(child, states, roles, found, depth + 1);
        }
    }

    static quint64 statesOf(const Element &element)
    {
        quint64 states = 0;
        for (const atspi::State state : element.states)
            states |= atspi::bit(state);
        return states;
    }

    bool appendRefs(sd_bus_message *reply, const QList<QByteArray> &paths) const
    {
        sd_bus_message_open_container(reply, 'a', "(so)");
        for (const QByteArray &path : paths)
            sd_bus_message_append(reply, "(so)", path == "/foreign" ? ":1.99" : busName.constData(),
                                  path.constData());
        return sd_bus_message_close_container(reply) >= 0;
    }

    static constexpr int maxDepth = 8;

    int m_sockets[2] = {-1, -1};
    sd_bus *m_bus = nullptr;
    quint64 m_cookie = 0;
    std::deque<Open> m_open;
};

} // namespace fake
