// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/atspi/CallChannel.h"

#include <QSocketNotifier>
#include <QTimer>

#include <memory>

namespace platform::linux_
{

/// A D-Bus connection that belongs to Qt's event loop: to a bus, or straight to one peer. Calls are
/// sent without waiting, as many as one likes; their answers arrive from the event loop, or from
/// waitFor(), which serves this connection alone and so re-enters nothing else. Built on sd-bus
/// because that leaves deadlines, pipelining and dispatch to its user. Main thread only.
class DBusConnection : public CallChannel
{
    Q_OBJECT
public:
    /// Starts to connect to the message bus at `address`; calls made before the connection stands
    /// are sent when it does. Null where that cannot be.
    static DBusConnection *openBus(const QByteArray &address, QObject *parent);
    /// Speaks to one peer over a connected stream socket, which it takes over.
    static DBusConnection *openPeer(int descriptor, QObject *parent);
    ~DBusConnection() override;

    bool isOpen() const;
    bool isReady() const override;
    /// Our own name on the bus; empty before isReady().
    QByteArray uniqueName() const;

    sd_bus_message *newCall(const QByteArray &destination, const QByteArray &path,
                            const char *interface, const char *member) override;
    bool send(sd_bus_message *message, Handler handler, quint64 limit) override;

    /// Calls `handler` for every signal that `rule` matches (a bus only).
    bool addMatch(const QByteArray &rule, Handler handler);

    bool waitFor(const std::function<bool()> &done, QDeadlineTimer deadline) override;

    /// Handles what has arrived, without waiting.
    void catchUp();

Q_SIGNALS:
    void closed();

private:
    struct Pending {
        Handler handler;
        DBusConnection *connection = nullptr;
    };

    explicit DBusConnection(sd_bus *bus, QObject *parent);
    void serve();
    void watch();
    void close();
    static int onMessage(sd_bus_message *message, void *userData, sd_bus_error *error);
    static int onReply(sd_bus_message *message, void *userData, sd_bus_error *error);

    sd_bus *m_bus;
    /// Calls without an answer so far.
    int m_open = 0;
    /// Whether the last look found something.
    bool m_flowing = false;
    std::unique_ptr<QSocketNotifier> m_readable;
    std::unique_ptr<QSocketNotifier> m_writable;
    QTimer m_timer;
    bool m_serving = false;
    bool m_closed = false;
};

} // namespace platform::linux_
