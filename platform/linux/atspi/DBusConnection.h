// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QList>
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <systemd/sd-bus.h>

namespace platform::linux_
{

/// A reference to an object of an application on the accessibility bus.
struct ObjectRef {
    QByteArray busName;
    QByteArray path;

    bool isNull() const;
    friend bool operator==(const ObjectRef &, const ObjectRef &) = default;
    friend size_t qHash(const ObjectRef &ref, size_t seed = 0)
    {
        return qHashMulti(seed, ref.busName, ref.path);
    }
};

/// One message that came in: the answer to a call, or a signal. Valid only while the handler that
/// got it runs. Each read takes the next argument; a read of another type than the message holds
/// yields nothing, and so does every read of an error.
class DBusMessage
{
public:
    explicit DBusMessage(sd_bus_message *message)
        : m_message(message)
    {
    }

    bool isError() const;
    /// The D-Bus error name; empty when this is no error.
    QByteArray errorName() const;
    QByteArray sender() const;
    QByteArray path() const;
    QByteArray member() const;

    std::optional<QString> readString();
    std::optional<QByteArray> readBytes();
    std::optional<qint32> readInt32();
    std::optional<quint32> readUInt32();
    std::optional<bool> readBool();
    std::optional<double> readDouble();
    std::optional<ObjectRef> readObject();
    std::optional<QList<ObjectRef>> readObjects();
    std::optional<QList<QByteArray>> readStrings();
    std::optional<QList<quint32>> readUInt32s();
    std::optional<QList<std::pair<QByteArray, QByteArray>>> readDictionary();
    bool enterVariant(const char *contents);
    bool enterStruct(const char *contents);
    bool exit();
    bool skip(const char *types);

private:
    sd_bus_message *m_message;
};

/// A D-Bus connection that belongs to Qt's event loop: to a bus, or straight to one peer. Calls are
/// sent without waiting, as many as one likes; their answers arrive from the event loop, or from
/// waitFor(), which serves this connection alone and so re-enters nothing else. Built on sd-bus
/// because that leaves deadlines, pipelining and dispatch to its user. Main thread only.
class DBusConnection : public QObject
{
    Q_OBJECT
public:
    enum class Kind { Bus, Peer };
    using Handler = std::function<void(DBusMessage &)>;
    static constexpr quint64 WithoutLimit = UINT64_MAX;

    /// Starts to connect; calls made before the connection stands are sent when it does.
    static DBusConnection *open(const QByteArray &address, Kind kind, QObject *parent);
    ~DBusConnection() override;

    bool isOpen() const;
    /// True once the other side has accepted us.
    bool isReady() const;
    /// Our own name on the bus; empty before isReady().
    QByteArray uniqueName() const;

    /// Sends a call; `handler` is called exactly once with the answer or an error, unless this
    /// connection is destroyed before. `limit` (microseconds) bounds how long the answer is
    /// awaited. False, and no call of `handler`, when it could not be sent.
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

    /// For arguments that call() cannot append: a message to fill in, for send() to take over.
    sd_bus_message *newCall(const QByteArray &destination, const QByteArray &path,
                            const char *interface, const char *member);
    bool send(sd_bus_message *message, Handler handler, quint64 limit);

    /// Calls `handler` for every signal that `rule` matches (a bus only).
    bool addMatch(const QByteArray &rule, Handler handler);

    /// Serves this connection until `done` or the deadline; nothing else runs meanwhile. True when
    /// it ended because of `done`.
    bool waitFor(const std::function<bool()> &done, QDeadlineTimer deadline);

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
