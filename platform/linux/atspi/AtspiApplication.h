// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/atspi/CallChannel.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>

#include <memory>

namespace platform::linux_
{

/// One application on the accessibility bus: its process, the shortest way to it, and whether it
/// answers. Calls go over the application's private connection where it offers one, else over the
/// bus. Main thread only.
class AtspiApplication : public QObject
{
    Q_OBJECT
public:
    /// What a blocking question may cost the user interface, the time to connect included.
    static constexpr int patience = 200; // milliseconds

    AtspiApplication(QByteArray busName, qint32 pid, CallChannel *bus);

    /// The connection over which it is asked for its private one; null for none at present.
    /// at-spi2-atk counts a client that has asked as a listener until that connection is closed.
    void setListener(CallChannel *listener);

    const QByteArray &busName() const { return m_busName; }
    qint32 pid() const { return m_pid; }

    /// What it is built with, as it says; empty until it has said.
    const QByteArray &toolkit() const { return m_toolkit; }

    /// False after it let a question pass the deadline, until it has answered that or another one.
    bool isAnswering() const { return m_answering; }
    /// Marks it as not answering, and asks it something whose answer clears the mark.
    void missedDeadline();

    /// Sends a call without waiting; see CallChannel::call().
    template <typename... Args>
    bool call(const QByteArray &path, const char *interface, const char *member,
              CallChannel::Handler handler, const char *types = "", Args... args)
    {
        CallChannel *to = connection();
        return to && to->call(destination(to), path, interface, member, noting(std::move(handler)),
                              CallChannel::withoutLimit, types, args...);
    }
    sd_bus_message *newCall(const QByteArray &path, const char *interface, const char *member);
    bool send(sd_bus_message *message, CallChannel::Handler handler);

    /// Waits for `done` on whichever connections answers may come, at most until the deadline.
    bool waitFor(const std::function<bool()> &done, QDeadlineTimer deadline);

private:
    CallChannel *connection();
    QByteArray destination(const CallChannel *to) const;
    CallChannel::Handler noting(CallChannel::Handler handler);
    void introduce();
    void askForPrivate();
    void connectDirectly(const QByteArray &address);

    QByteArray m_busName;
    qint32 m_pid;
    QPointer<CallChannel> m_bus;
    QPointer<CallChannel> m_listener;
    QPointer<CallChannel> m_private;
    QByteArray m_toolkit;
    bool m_introduced = false;
    bool m_askedForPrivate = false;
    bool m_answering = true;
    bool m_probing = false;
};

/// Calls to one application that are sent together and awaited together. Answers that come after
/// this object is gone are dropped, so handlers may refer to what lives as long as it does.
class Pipeline
{
public:
    explicit Pipeline(AtspiApplication &application)
        : m_application(application)
        , m_open(std::make_shared<int>(0))
    {
    }

    template <typename... Args>
    void call(const QByteArray &path, const char *interface, const char *member,
              CallChannel::Handler handler, const char *types = "", Args... args)
    {
        if (m_application.call(path, interface, member, counting(std::move(handler)), types,
                               args...))
            ++*m_open;
        else
            m_failed = true;
    }

    /// Reads a property; the handler finds the variant's contents entered.
    void property(const QByteArray &path, const char *interface, const char *name, const char *type,
                  CallChannel::Handler handler);

    /// False when the application did not answer all in time; it is then marked.
    bool wait(QDeadlineTimer deadline = QDeadlineTimer(AtspiApplication::patience));

private:
    CallChannel::Handler counting(CallChannel::Handler handler);

    AtspiApplication &m_application;
    std::shared_ptr<int> m_open;
    bool m_failed = false;
};

} // namespace platform::linux_
