// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/atspi/DBusMessage.h"

#include <QDeadlineTimer>
#include <QObject>

#include <cstdint>
#include <functional>

namespace platform::linux_
{

/// The port to other programs: method calls over D-Bus that are sent without waiting, as many as
/// one likes. The real one is DBusConnection; tests have one that answers from a table. Main thread
/// only.
class CallChannel : public QObject
{
    Q_OBJECT
public:
    using Handler = std::function<void(DBusMessage &)>;
    static constexpr quint64 withoutLimit = UINT64_MAX;

    using QObject::QObject;

    /// True once the other side has accepted us.
    virtual bool isReady() const = 0;

    /// A call to fill in, for send() to take over; null when there is no connection.
    virtual sd_bus_message *newCall(const QByteArray &destination, const QByteArray &path,
                                    const char *interface, const char *member) = 0;

    /// Sends a call; `handler` is called exactly once with the answer or an error, unless this
    /// channel is destroyed before. `limit` (microseconds) bounds how long the answer is awaited.
    /// False, and no call of `handler`, when it could not be sent.
    virtual bool send(sd_bus_message *message, Handler handler, quint64 limit) = 0;

    /// Handles answers until `done` or the deadline; nothing else runs meanwhile. True when it
    /// ended because of `done`.
    virtual bool waitFor(const std::function<bool()> &done, QDeadlineTimer deadline) = 0;

    /// newCall() and send() in one, with the arguments that sd_bus_message_append() takes.
    template <typename... Args>
    bool call(const QByteArray &destination, const QByteArray &path, const char *interface,
              const char *member, Handler handler, quint64 limit, const char *types = "",
              Args... args)
    {
        sd_bus_message *message = newCall(destination, path, interface, member);
        if (!message)
            return false;
        if (*types && sd_bus_message_append(message, types, args...) < 0) {
            sd_bus_message_unref(message);
            return false;
        }
        return send(message, std::move(handler), limit);
    }
};

} // namespace platform::linux_
