// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/engine/Engine.h"
#include "backend/http/AccessPolicy.h"
#include "backend/http/HttpHandler.h"

/// The paths that the backend serves: "/generate" for the writing commands, and
/// the analytics paths, whose reports are thanked for and dropped.
/// Thread: the event loop's.
class Service
{
public:
    /// `engine` outlives the service.
    Service(AccessPolicy policy, Engine &engine);

    /// The handler for HttpServer.
    std::unique_ptr<PendingWork> handle(const HttpRequest &request, HttpRespond respond);

private:
    std::unique_ptr<PendingWork> generate(const QHash<QString, QString> &items,
                                          HttpRespond respond);

    AccessPolicy m_policy;
    Engine &m_engine;
};
