// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/writing/FoundServer.h"

#include "quillet/writing/WritingEndpoint.h"

#include <QHostAddress>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QPointer>
#include <QUrlQuery>

#include <chrono>

namespace
{

constexpr std::chrono::milliseconds timeWithoutData = std::chrono::seconds(10);

bool isOk(const QNetworkReply &reply)
{
    return reply.error() == QNetworkReply::NoError &&
           reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() == 200;
}

QNetworkRequest requestFor(const QUrl &url)
{
    QNetworkRequest request(url);
    request.setTransferTimeout(int(timeWithoutData.count()));
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    return request;
}

} // namespace

FoundServerDesk::FoundServerDesk(WritingEndpoint &endpoint, QObject *parent)
    : QObject(parent)
    , m_endpoint(endpoint)
{
    m_network.setProxy(QNetworkProxy::NoProxy);
}

void FoundServerDesk::look()
{
    ask(this, [this](const FoundServer &server, const QString &consent) {
        const QString name = server.address + u' ' + QString::number(server.owner);
        if (consent != u"unanswered" || m_askedAbout == name)
            return;
        m_askedAbout = name;
        Q_EMIT unanswered(server);
    });
}

void FoundServerDesk::find(QObject *context, std::function<void(const FoundServer &, bool)> found)
{
    ask(context, [found = std::move(found)](const FoundServer &server, const QString &consent) {
        if (consent == u"unanswered" || consent == u"agreed" || consent == u"refused")
            found(server, consent == u"agreed");
    });
}

void FoundServerDesk::answer(const FoundServer &server, bool agreed,
                             std::function<void(bool)> stored)
{
    withAddress([this, server, agreed, stored = std::move(stored)](QUrl url) {
        url.setQuery(QUrlQuery{{QStringLiteral("agree"), agreed ? u"yes"_qs : u"no"_qs},
                               {QStringLiteral("address"), server.address},
                               {QStringLiteral("owner"), QString::number(server.owner)}});
        QNetworkRequest request = requestFor(url);
        request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArray("text/plain"));
        QNetworkReply *reply = m_network.post(request, QByteArray());
        connect(reply, &QNetworkReply::finished, this, [reply, stored] {
            reply->deleteLater();
            if (stored)
                stored(isOk(*reply));
        });
    });
}

void FoundServerDesk::withAddress(std::function<void(const QUrl &)> use)
{
    m_endpoint.withEndpoint(
        [self = QPointer(this), use = std::move(use)](const QString &generate, const QString &) {
            QUrl url(generate, QUrl::StrictMode);
            // Only a backend on this machine can have found something on it.
            if (!self || !QHostAddress(url.host()).isLoopback())
                return;
            url.setPath(url.path().section(u'/', 0, -2) + QStringLiteral("/found-server"));
            use(url);
        });
}

void FoundServerDesk::ask(QObject *context, Take take)
{
    withAddress([this, context = QPointer(context), take = std::move(take)](const QUrl &url) {
        QNetworkReply *reply = m_network.get(requestFor(url));
        connect(reply, &QNetworkReply::finished, this, [reply, context, take] {
            reply->deleteLater();
            if (!context || !isOk(*reply))
                return;
            const QJsonObject object = QJsonDocument::fromJson(reply->readAll()).object();
            take({object.value(u"address").toString(), unsigned(object.value(u"owner").toInteger()),
                  object.value(u"ownerName").toString(), object.value(u"model").toString()},
                 object.value(u"consent").toString());
        });
    });
}
