// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "quillet/writing/WritingEndpoint.h"

#include <QProcess>
#include <QTimer>
#include <memory>
#include <vector>

/// Runs quillet-backend as a child of this process: on a free port of the
/// loopback address, with a secret of its own for each start. The child ends with
/// this process, also when that is killed. Thread: the one that made it, which
/// must have an event loop.
class LocalBackend : public QObject, public WritingEndpoint
{
    Q_OBJECT

public:
    /// `program` is the path of quillet-backend, by default what findProgram() finds.
    explicit LocalBackend(QString program = findProgram(), QObject *parent = nullptr);
    ~LocalBackend() override;

    /// Calls `ready` later from the event loop, with the address of a running
    /// backend; starts it, or starts it again, when it does not run.
    void withEndpoint(Ready ready) override;

    /// Beside the application, in the build tree, or in $PATH; empty if nowhere.
    static QString findProgram();
    /// The child's process id; 0 when it does not run.
    qint64 processId() const { return m_process ? m_process->processId() : 0; }

Q_SIGNALS:
    /// A child has started, whose analytics paths lie below `baseURL`. That
    /// carries credentials: it is not for logs.
    void analyticsMoved(const QString &baseURL);

private:
    void start();
    void readPort();
    void stop();
    void tellWaiting(const QString &url, const QString &failure);

    QString m_program;
    std::unique_ptr<QProcess> m_process;
    QTimer m_deadline;
    QByteArray m_secret;
    /// Empty while the child does not serve.
    QString m_url;
    std::vector<Ready> m_waiting;
};
