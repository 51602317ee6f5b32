// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/engine/Engine.h"
#include "backend/engine/FoundServer.h"
#include "backend/http/AccessPolicy.h"
#include "backend/http/HttpHandler.h"
#include "backend/http/RequestTarget.h"

/// The paths that the backend serves: "/generate" for the writing commands, and
/// "/found-server" for the model server that was found on this machine and the
/// user's answer about it, and the analytics paths, whose reports are thanked
/// for and dropped.
/// Thread: the event loop's.
class Service
{
public:
    /// Both outlive the service.
    Service(AccessPolicy policy, Engine &engine, FoundServers &found);

    /// The handler for HttpServer.
    std::unique_ptr<PendingWork> handle(HttpRequest request, HttpRespond respond);
    const HttpAdmission &admission() const { return m_policy; }

private:
    std::unique_ptr<PendingWork> foundServer(const HttpRequest &request,
                                             const RequestTarget &target, HttpRespond respond);
    static std::optional<HttpResponse> refusalOf(const QHash<QString, QString> &items);
    std::unique_ptr<PendingWork> generate(const QHash<QString, QString> &items,
                                          HttpRespond respond);

    AccessPolicy m_policy;
    Engine &m_engine;
    FoundServers &m_found;
};
