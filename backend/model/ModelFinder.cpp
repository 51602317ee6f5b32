// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/model/ModelFinder.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QTimer>

#include <chrono>

using namespace std::chrono_literals;

namespace
{

constexpr auto patience = 150ms;
constexpr std::chrono::milliseconds probeTimeout = 2s;
constexpr auto foundHolds = 60s;
constexpr auto nothingHolds = 10s;
constexpr qint64 maxList = 4 * 1024 * 1024;

/// The first model of Ollama's list that writes; some only compute embeddings.
std::optional<QString> firstWritingModel(const QByteArray &list)
{
    const auto models = QJsonDocument::fromJson(list).object().value(u"models").toArray();
    for (const auto &entry : models) {
        const QJsonObject model = entry.toObject();
        const QString name = model.value(u"name").toString();
        const QString family =
            model.value(u"details").toObject().value(u"family").toString().toLower();
        if (!name.isEmpty() && !name.contains(u"embed") && !family.contains(u"bert"))
            return name;
    }
    return std::nullopt;
}

} // namespace

ModelFinder::ModelFinder(QUrl address)
    : m_address(std::move(address))
{
    m_network.setProxy(QNetworkProxy::NoProxy);
}

void ModelFinder::find(const ModelSettings &settings, QObject *context, Found found)
{
    const int ticket = m_nextTicket++;
    const auto holds = m_model ? foundHolds : nothingHolds;
    const bool known =
        !m_probing && m_age.isValid() && std::chrono::milliseconds(m_age.elapsed()) < holds;
    m_waiting.push_back({ticket, {context, settings, std::move(found)}});
    if (!known && !m_probing)
        probe();
    QTimer::singleShot(known ? 0ms : patience, this, [this, ticket] {
        const auto entry = std::find_if(m_waiting.begin(), m_waiting.end(),
                                        [&](const auto &other) { return other.first == ticket; });
        if (entry == m_waiting.end())
            return;
        const Waiting waiting = std::move(entry->second);
        m_waiting.erase(entry);
        tell(waiting);
    });
}

void ModelFinder::forget()
{
    m_model.reset();
    m_age.start();
}

void ModelFinder::probe()
{
    m_probing = true;
    QUrl url = m_address;
    url.setPath(QStringLiteral("/api/tags"));
    QNetworkRequest request(url);
    request.setTransferTimeout(int(probeTimeout.count()));
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    QNetworkReply *reply = m_network.get(request);
    connect(reply, &QNetworkReply::downloadProgress, this, [reply](qint64 received) {
        if (received > maxList)
            reply->abort();
    });
    connect(reply, &QNetworkReply::finished, this, [this, reply] {
        reply->deleteLater();
        const bool answered =
            reply->error() == QNetworkReply::NoError &&
            reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() == 200;
        conclude(answered ? firstWritingModel(reply->readAll()) : std::nullopt);
    });
}

void ModelFinder::conclude(std::optional<QString> model)
{
    m_probing = false;
    m_model = std::move(model);
    m_age.start();
    const auto waiting = std::exchange(m_waiting, {});
    for (const auto &[ticket, entry] : waiting)
        tell(entry);
}

void ModelFinder::tell(const Waiting &waiting) const
{
    if (!waiting.context)
        return;
    if (!m_model) {
        waiting.found(std::nullopt);
        return;
    }
    ModelSettings settings = waiting.settings;
    settings.url = m_address;
    settings.url.setPath(QStringLiteral("/v1/chat/completions"));
    if (settings.name.isEmpty())
        settings.name = *m_model;
    // A key is for the server that it was given for.
    settings.key.clear();
    waiting.found(settings);
}
