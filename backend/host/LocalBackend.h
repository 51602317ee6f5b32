// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QProcess>
#include <QTimer>
#include <QUrl>
#include <functional>
#include <memory>
#include <vector>

/// Where the local backend serves, or why it does not.
struct LocalEndpoint {
    /// For GET with the query items `command` and `text`. Carries the user name
    /// and the secret of this launch: not for logs.
    QUrl generate;
    /// The address below which the analytics paths lie; carries them as well.
    QUrl analytics;
    /// Empty when there is an endpoint; otherwise a sentence for the log.
    QString failure;
};

/// Runs quillet-backend as a child of this process: on a free port of the
/// loopback address, with a secret of its own for each start. The child ends with
/// this process, also when that is killed. Thread: the one that made it, which
/// must have an event loop.
class LocalBackend : public QObject
{
public:
    using Ready = std::function<void(const LocalEndpoint &)>;

    /// `program` is the path of quillet-backend, by default what findProgram() finds.
    explicit LocalBackend(QString program = findProgram(), QObject *parent = nullptr);
    ~LocalBackend() override;

    /// Calls `ready` once, later from the event loop, with the endpoint of a
    /// running backend; starts it, or starts it again, when it does not run.
    /// An endpoint holds for the request at hand: ask again for the next one.
    void withEndpoint(Ready ready);

    /// Beside the application, in the build tree, or in $PATH; empty if nowhere.
    static QString findProgram();
    /// The child's process id; 0 when it does not run.
    qint64 processId() const { return m_process ? m_process->processId() : 0; }

private:
    void start();
    void readPort();
    void stop();
    void tellWaiting(const LocalEndpoint &endpoint);

    QString m_program;
    std::unique_ptr<QProcess> m_process;
    QTimer m_deadline;
    QByteArray m_secret;
    LocalEndpoint m_endpoint;
    std::vector<Ready> m_waiting;
};
