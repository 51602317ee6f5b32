// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QNetworkAccessManager>
#include <QProcess>
#include <QTemporaryDir>
#include <QUrl>

/// A real quillet-backend on a free port, with settings of the test's own.
class BackendProcess
{
public:
    using Environment = QList<QPair<QString, QString>>;

    explicit BackendProcess(const Environment &environment = {}, const QStringList &options = {});
    ~BackendProcess();

    quint16 port() const { return m_port; }
    QByteArray log();
    QUrl generate(const QString &command, const QString &text) const;
    /// Sends bytes as they are and returns all that comes back until the server
    /// closes or has sent one whole answer.
    QByteArray exchange(const QByteArray &bytes) const;

    QTemporaryDir folder;

private:
    QProcess m_process;
    quint16 m_port = 0;
    QByteArray m_log;
};

struct Answer {
    int status = 0;
    QString text;
};

/// GET or, with a body, POST; waits for the answer.
Answer fetch(const QUrl &url);
Answer post(const QUrl &url, const QByteArray &body);
