// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/atspi/DBusConnection.h"

#include <QElapsedTimer>

#include <chrono>
#include <ctime>
#include <poll.h>
#include <unistd.h>

namespace platform::linux_
{

namespace
{

/// How much of the event loop one turn may take before windows get theirs.
constexpr int turnMilliseconds = 4;
constexpr int turnMessages = 200;
/// With so many calls under way, answers are looked for at this interval as long as they come.
constexpr int manyOpen = 100;
constexpr std::chrono::milliseconds manyOpenPause{1};

quint64 monotonicMicroseconds()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return quint64(now.tv_sec) * 1'000'000 + quint64(now.tv_nsec) / 1000;
}

} // namespace

DBusConnection *DBusConnection::openBus(const QByteArray &address, QObject *parent)
{
    sd_bus *bus = nullptr;
    if (address.isEmpty() || sd_bus_new(&bus) < 0)
        return nullptr;
    const bool opened = sd_bus_set_address(bus, address.constData()) >= 0 &&
                        sd_bus_set_bus_client(bus, true) >= 0 &&
                        sd_bus_negotiate_fds(bus, false) >= 0 && sd_bus_start(bus) >= 0;
    if (!opened) {
        sd_bus_close_unref(bus);
        return nullptr;
    }
    return new DBusConnection(bus, parent);
}

DBusConnection *DBusConnection::openPeer(int descriptor, QObject *parent)
{
    sd_bus *bus = nullptr;
    if (sd_bus_new(&bus) < 0) {
        ::close(descriptor);
        return nullptr;
    }
    if (sd_bus_set_fd(bus, descriptor, descriptor) < 0) {
        ::close(descriptor);
        sd_bus_unref(bus);
        return nullptr;
    }
    // From here on the descriptor is the bus's.
    if (sd_bus_negotiate_fds(bus, false) < 0 || sd_bus_start(bus) < 0) {
        sd_bus_close_unref(bus);
        return nullptr;
    }
    return new DBusConnection(bus, parent);
}

DBusConnection::DBusConnection(sd_bus *bus, QObject *parent)
    : CallChannel(parent)
    , m_bus(bus)
{
    const int fd = sd_bus_get_fd(bus);
    m_readable = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Read);
    m_writable = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Write);
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(m_readable.get(), &QSocketNotifier::activated, this, &DBusConnection::serve);
    connect(m_writable.get(), &QSocketNotifier::activated, this, &DBusConnection::serve);
    connect(&m_timer, &QTimer::timeout, this, &DBusConnection::serve);
    watch();
}

DBusConnection::~DBusConnection()
{
    m_readable.reset();
    m_writable.reset();
    sd_bus_close_unref(m_bus);
}

bool DBusConnection::isOpen() const
{
    return !m_closed && sd_bus_is_open(m_bus) > 0;
}

bool DBusConnection::isReady() const
{
    return !m_closed && sd_bus_is_ready(m_bus) > 0;
}

QByteArray DBusConnection::uniqueName() const
{
    const char *name = nullptr;
    return isReady() && sd_bus_get_unique_name(m_bus, &name) >= 0 ? QByteArray(name) : QByteArray();
}

sd_bus_message *DBusConnection::newCall(const QByteArray &destination, const QByteArray &path,
                                        const char *interface, const char *member)
{
    sd_bus_message *message = nullptr;
    const char *to = destination.isEmpty() ? nullptr : destination.constData();
    if (m_closed || sd_bus_message_new_method_call(m_bus, &message, to, path.constData(), interface,
                                                   member) < 0)
        return nullptr;
    return message;
}

bool DBusConnection::send(sd_bus_message *message, Handler handler, quint64 limit)
{
    auto pending = std::make_unique<Pending>(Pending{std::move(handler)});
    sd_bus_slot *slot = nullptr;
    const int sent =
        sd_bus_call_async(m_bus, &slot, message, &DBusConnection::onReply, pending.get(), limit);
    sd_bus_message_unref(message);
    if (sent < 0)
        return false;
    // The slot owns the handler, whichever way the call ends.
    sd_bus_slot_set_destroy_callback(slot, [](void *data) { delete static_cast<Pending *>(data); });
    pending->connection = this;
    ++m_open;
    (void)pending.release();
    sd_bus_slot_set_floating(slot, 1);
    sd_bus_slot_unref(slot);
    if (!m_serving)
        watch();
    return true;
}

bool DBusConnection::addMatch(const QByteArray &rule, Handler handler)
{
    auto pending = std::make_unique<Pending>(Pending{std::move(handler)});
    sd_bus_slot *slot = nullptr;
    if (sd_bus_add_match_async(m_bus, &slot, rule.constData(), &DBusConnection::onMessage, nullptr,
                               pending.get()) < 0)
        return false;
    sd_bus_slot_set_destroy_callback(slot, [](void *data) { delete static_cast<Pending *>(data); });
    (void)pending.release();
    sd_bus_slot_set_floating(slot, 1);
    sd_bus_slot_unref(slot);
    watch();
    return true;
}

int DBusConnection::onMessage(sd_bus_message *message, void *userData, sd_bus_error *)
{
    DBusMessage wrapped(message);
    static_cast<Pending *>(userData)->handler(wrapped);
    return 0;
}

int DBusConnection::onReply(sd_bus_message *message, void *userData, sd_bus_error *)
{
    DBusMessage wrapped(message);
    // Taken out first: an answer is delivered once.
    const Handler handler = std::move(static_cast<Pending *>(userData)->handler);
    --static_cast<Pending *>(userData)->connection->m_open;
    handler(wrapped);
    return 1;
}

bool DBusConnection::waitFor(const std::function<bool()> &done, QDeadlineTimer deadline)
{
    // A handler must not wait for an answer that only its caller could deliver.
    if (m_serving)
        return done();
    m_serving = true;
    bool reached = false;
    while (!(reached = done()) && !m_closed) {
        const int processed = sd_bus_process(m_bus, nullptr);
        if (processed < 0) {
            reached = done();
            break;
        }
        if (processed > 0) {
            if (deadline.hasExpired()) {
                reached = done();
                break;
            }
            continue;
        }
        const qint64 remaining = deadline.remainingTimeNSecs();
        if (remaining == 0)
            break;
        pollfd descriptor{sd_bus_get_fd(m_bus), short(sd_bus_get_events(m_bus)), 0};
        timespec timeout{remaining / 1'000'000'000, remaining % 1'000'000'000};
        ppoll(&descriptor, 1, remaining < 0 ? nullptr : &timeout, nullptr);
    }
    m_serving = false;
    watch();
    return reached;
}

void DBusConnection::catchUp()
{
    if (!m_serving)
        serve();
}

void DBusConnection::serve()
{
    if (m_closed || m_serving)
        return;
    m_serving = true;
    QElapsedTimer turn;
    turn.start();
    int processed = 0;
    int messages = 0;
    for (; messages < turnMessages; ++messages) {
        processed = sd_bus_process(m_bus, nullptr);
        if (processed <= 0 || turn.elapsed() >= turnMilliseconds)
            break;
    }
    m_serving = false;
    m_flowing = messages > 0;
    if (processed < 0 || !sd_bus_is_open(m_bus))
        close();
    else
        watch();
}

void DBusConnection::watch()
{
    if (m_closed)
        return;
    const int events = sd_bus_get_events(m_bus);
    if (events < 0) {
        // Told from the event loop, never from within the call that noticed it.
        m_timer.start(0);
        return;
    }
    m_writable->setEnabled(events & POLLOUT);
    // Being woken for each of many answers would cost both sides more than the answers do.
    const bool many = m_open >= manyOpen && m_flowing;
    m_readable->setEnabled(!many);
    if (many) {
        m_timer.start(manyOpenPause);
        return;
    }
    std::uint64_t due = UINT64_MAX;
    if (sd_bus_get_timeout(m_bus, &due) < 0 || due == UINT64_MAX) {
        m_timer.stop();
        return;
    }
    const std::uint64_t now = monotonicMicroseconds();
    m_timer.start(due <= now ? 0 : int(std::min<std::uint64_t>((due - now) / 1000 + 1, 3'600'000)));
}

void DBusConnection::close()
{
    if (m_closed)
        return;
    m_closed = true;
    m_readable->setEnabled(false);
    m_writable->setEnabled(false);
    m_timer.stop();
    Q_EMIT closed();
}

} // namespace platform::linux_
