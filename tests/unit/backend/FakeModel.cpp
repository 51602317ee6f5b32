// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "FakeModel.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QUrl>

QString FakeModel::Request::message(int index) const
{
    return body.value(u"messages").toArray().at(index).toObject().value(u"content").toString();
}

QString FakeModel::Request::text() const
{
    static const QRegularExpression between(u"^<text-(\\w+)>\\n(.*)\\n</text-\\1>\\n"_qs,
                                            QRegularExpression::DotMatchesEverythingOption);
    return between.match(message(1)).captured(2);
}

FakeModel::FakeModel(Behaviour behaviour)
    : m_behaviour(std::move(behaviour))
{
}

QUrl FakeModel::url() const
{
    return QUrl(u"http://127.0.0.1:%1/v1/chat/completions"_qs.arg(port()));
}

int FakeModel::openConnections() const
{
    return int(findChildren<QTcpSocket *>().size());
}

void FakeModel::serve(QTcpSocket *socket, const QByteArray &head, const QByteArray &body)
{
    m_requests.append({head, QJsonDocument::fromJson(body).object()});
    m_behaviour(socket, m_requests.last());
}

FakeModel::Behaviour FakeModel::raw(const QByteArray &answer)
{
    return [answer](QTcpSocket *socket, const Request &) {
        socket->write(answer);
        socket->disconnectFromHost();
    };
}

FakeModel::Behaviour FakeModel::status(int code, const QByteArray &body)
{
    return raw("HTTP/1.1 " + QByteArray::number(code) +
               " X\r\nContent-Type: application/json\r\nConnection: close\r\nContent-Length: " +
               QByteArray::number(body.size()) + "\r\n\r\n" + body);
}

FakeModel::Behaviour FakeModel::json(const QString &content, const QString &finishReason)
{
    const QJsonObject choice{{u"message"_qs, QJsonObject{{u"content"_qs, content}}},
                             {u"finish_reason"_qs, finishReason}};
    return status(200, QJsonDocument(QJsonObject{{u"choices"_qs, QJsonArray{choice}}}).toJson());
}

QByteArray FakeModel::streamHead()
{
    return "HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\nConnection: close\r\n\r\n";
}

QByteArray FakeModel::event(const QString &piece)
{
    const QJsonObject choice{{u"delta"_qs, QJsonObject{{u"content"_qs, piece}}}};
    return "data: " +
           QJsonDocument(QJsonObject{{u"choices"_qs, QJsonArray{choice}}})
               .toJson(QJsonDocument::Compact) +
           "\n\n";
}

FakeModel::Behaviour FakeModel::stream(const QStringList &pieces)
{
    QByteArray answer = streamHead();
    for (const QString &piece : pieces)
        answer += event(piece);
    return raw(answer + "data: [DONE]\n\n");
}
