// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/engine/FoundServer.h"
#include "backend/model/Configuration.h"

class ModelFinder;

/// Looks for a model server on this machine, says whose it is, and keeps the user's answer in the
/// configuration. Thread: the event loop's.
class ServerConsent : public FoundServers
{
public:
    /// Who listens at a port of this machine.
    using OwnerOf = std::function<std::optional<unsigned>(quint16 port)>;
    /// With the settings to reach the server by.
    using Usable =
        std::function<void(const std::optional<FoundServer> &, const ModelSettings &settings)>;

    /// Both outlive this object.
    ServerConsent(ConfigurationFile &configuration, ModelFinder &finder, OwnerOf ownerOf);

    void look(QObject *context, Found found) override;
    bool remember(const FoundServer &server, bool agreed) override;

    /// As look(), with the settings of what was found. The owner is read each time: another
    /// program can have taken the port.
    void find(QObject *context, Usable usable);
    /// What was found turned out to be gone.
    void forget();

private:
    ConfigurationFile &m_configuration;
    ModelFinder &m_finder;
    OwnerOf m_ownerOf;
};
