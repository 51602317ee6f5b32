// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/ServerConsent.h"

#include "backend/model/ListenerOwner.h"
#include "backend/model/ModelFinder.h"

#include <unistd.h>

namespace
{

FoundServer::Consent consentTo(const FoundServer &server, const Configuration &configuration)
{
    using Consent = FoundServer::Consent;
    if (server.owner != ::geteuid() && !isSystemAccount(server.owner))
        return Consent::Foreign;
    const auto &answer = configuration.foundServer;
    if (!answer || answer->address != server.address || answer->owner != server.owner)
        return Consent::Unanswered;
    return answer->agreed ? Consent::Agreed : Consent::Refused;
}

} // namespace

ServerConsent::ServerConsent(ConfigurationFile &configuration, ModelFinder &finder, OwnerOf ownerOf)
    : m_configuration(configuration)
    , m_finder(finder)
    , m_ownerOf(std::move(ownerOf))
{
}

void ServerConsent::look(QObject *context, Found found)
{
    const Configuration &configuration = m_configuration.current();
    if (!configuration.findServer) {
        QMetaObject::invokeMethod(
            context, [found = std::move(found)] { found(std::nullopt); }, Qt::QueuedConnection);
        return;
    }
    find(context, [found = std::move(found)](const std::optional<FoundServer> &server,
                                             const ModelSettings &) { found(server); });
}

void ServerConsent::find(QObject *context, Usable usable)
{
    m_finder.find(
        m_configuration.current().defaults, context,
        [this, usable = std::move(usable)](const std::optional<ModelSettings> &settings) {
            std::optional<unsigned> owner;
            if (settings)
                owner = m_ownerOf(quint16(settings->url.port()));
            if (!owner) {
                usable(std::nullopt, {});
                return;
            }
            FoundServer server{settings->server(), *owner, accountName(*owner), settings->name};
            server.consent = consentTo(server, m_configuration.current());
            usable(server, *settings);
        });
}

bool ServerConsent::remember(const FoundServer &server, bool agreed)
{
    return m_configuration.remember({server.address, server.owner, agreed});
}

void ServerConsent::forget()
{
    m_finder.forget();
}
