// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "support/HttpStub.h"

#include <QJsonObject>
#include <QPointer>
#include <functional>

/// An HTTP server that plays the chat completions interface, as well or as badly
/// as a test tells it to.
class FakeModel : public HttpDouble
{
public:
    struct Request {
        QByteArray head;
        QJsonObject body;
        QString message(int index) const;
        /// What stands between the delimiter lines of the user's message.
        QString text() const;
    };
    using Behaviour = std::function<void(QTcpSocket *, const Request &)>;

    explicit FakeModel(Behaviour behaviour);

    QUrl url() const;
    quint16 port() const { return serverPort(); }
    const QList<Request> &requests() const { return m_requests; }
    int openConnections() const;

    /// Behaviours, and parts of them.
    static Behaviour raw(const QByteArray &answer);
    static Behaviour status(int code, const QByteArray &body = "{}");
    /// A whole answer as JSON.
    static Behaviour json(const QString &content, const QString &finishReason = u"stop"_qs);
    /// A streamed answer, one event a piece.
    static Behaviour stream(const QStringList &pieces);
    static QByteArray streamHead();
    static QByteArray event(const QString &piece);

protected:
    void serve(QTcpSocket *socket, const QByteArray &head, const QByteArray &body) override;

private:
    Behaviour m_behaviour;
    QList<Request> m_requests;
};
