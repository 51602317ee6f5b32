// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/atspi/Applications.h"
#include "platform/linux/atspi/DBusConnection.h"

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QTimer>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace platform::linux_
{

/// The desktop's accessibility service as it comes and goes: its switch on the session bus, the
/// accessibility bus, the registry, and the applications on it. Connects again and registers its
/// listeners again by itself. Listens to other applications only while listening is asked for.
/// Main thread only.
class AtspiBus : public Applications
{
    Q_OBJECT
public:
    enum class Service {
        /// Not heard from yet.
        Unknown,
        /// There is no session bus, or no accessibility service on it.
        Missing,
        Present,
    };

    /// `sessionAddress`: of the session bus; empty for the one that the environment names.
    explicit AtspiBus(const QByteArray &sessionAddress = {}, QObject *parent = nullptr);
    ~AtspiBus() override;

    Service service() const { return m_service; }
    /// org.a11y.Status IsEnabled: whether applications show their elements.
    bool isEnabled() const { return m_enabled; }
    /// Switches it; does not wait.
    void setEnabled(bool enabled);

    void setListening(bool listening);
    bool isConnected() const override;
    void waitUntilSettled(QDeadlineTimer deadline) override;
    void catchUp() override;

    /// Ends the listening until resumeEvents() has been called as many times, and a moment longer,
    /// unless listening has only just begun. While a client listens, programs with at-spi2-atk or
    /// Qt ask the registry about every key before they handle it, which takes longer than the key
    /// itself; at-spi2-atk stops only when the listener has left the bus.
    ///
    /// `known` is called once the application of that name knows. Until then it must get no keys:
    /// a browser that learns that its last listener has left while it asks about a key crashes, and
    /// Qt handles those that come afterwards before those that it has asked about.
    void pauseEvents(const QByteArray &busName, std::function<void()> known);
    void resumeEvents();

    AtspiApplication *application(const QByteArray &busName) override;
    QList<AtspiApplication *> applications(qint32 pid) override;

Q_SIGNALS:
    /// The service, its switch, or the connection has changed.
    void changed();
    /// A document was loaded, or parts of one came or went.
    void contentChanged(const QByteArray &busName);

private:
    /// Starting the service can take a while on a busy machine. Microseconds.
    static constexpr quint64 serviceLimit = 30'000'000;

    void connectSession();
    void askForBus();
    void connectBus(const QByteArray &address);
    void disconnectBus();
    void watchNames();
    DBusConnection *connectTo(const QByteArray &address);
    void drop(DBusConnection **connection);
    void startListening();
    void listenAgain();
    void announcePause();
    void registerListeners();
    void addName(const QByteArray &name);
    void removeName(const QByteArray &name);
    void readEnabled();
    void setService(Service service, bool enabled);
    void retry();

    QByteArray m_sessionAddress;
    DBusConnection *m_session = nullptr;
    QByteArray m_address;
    DBusConnection *m_calls = nullptr;
    /// Who comes and goes on the bus, and what applications report. Each has a connection of its
    /// own: waiting for an answer never handles an event.
    DBusConnection *m_names = nullptr;
    DBusConnection *m_reports = nullptr;
    QTimer m_retry;
    int m_failures = 0;
    Service m_service = Service::Unknown;
    bool m_enabled = false;
    bool m_listening = false;
    int m_pauses = 0;
    /// The listener that has ended, while the bus still knows it.
    QByteArray m_leavingName;
    /// The applications that have to know that the listening has ended, and what to call then.
    std::vector<std::pair<QByteArray, std::function<void()>>> m_awaitingPause;
    QElapsedTimer m_sinceListening;
    QTimer m_resume;
    bool m_asking = false;
    bool m_namesListed = false;
    QByteArray m_registryOwner;
    QSet<QByteArray> m_unknownProcesses;
    std::vector<std::unique_ptr<AtspiApplication>> m_applications;
};

} // namespace platform::linux_
