// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/http/Service.h"

#include "backend/http/RequestTarget.h"
#include "commands/Catalogue.h"

namespace
{

bool isAnalyticsPath(const QString &path)
{
    return path == u"/track/" || path == u"/engage/" || path == u"/groups/";
}

HttpResponse methodNotAllowed(const QByteArray &allowed)
{
    return {405, "This path answers " + allowed + " only.", {{"Allow", allowed}}};
}

} // namespace

Service::Service(AccessPolicy policy, Engine &engine)
    : m_policy(std::move(policy))
    , m_engine(engine)
{
}

std::unique_ptr<PendingWork> Service::handle(const HttpRequest &request, HttpRespond respond)
{
    if (const auto refusal = m_policy.refusal(request)) {
        respond(*refusal);
        return nullptr;
    }
    const auto target = parseRequestTarget(request.target);
    if (!target) {
        respond({400, "The request's address is not percent-encoded UTF-8."});
    } else if (isAnalyticsPath(target->path)) {
        respond(request.method == "POST" ? HttpResponse{200, "1"} : methodNotAllowed("POST"));
    } else if (target->path != u"/generate") {
        respond({404, "There is nothing at this address; writing commands are at /generate."});
    } else if (request.method != "GET") {
        respond(methodNotAllowed("GET"));
    } else {
        return generate(target->items, std::move(respond));
    }
    return nullptr;
}

std::unique_ptr<PendingWork> Service::generate(const QHash<QString, QString> &items,
                                               HttpRespond respond)
{
    for (const auto name : {u"command", u"text"}) {
        const auto key = QString::fromUtf16(name);
        if (!items.contains(key)) {
            respond({400, "The query item \"" + key.toUtf8() + "\" is missing."});
            return nullptr;
        }
    }
    const EngineRequest request{items[QStringLiteral("command")], items[QStringLiteral("text")]};
    const auto kind = commandKind(request.command);
    if (!kind) {
        respond({400, "There is no command \"" + request.command.left(100).toUtf8() +
                          "\" in the catalogue."});
        return nullptr;
    }
    if (*kind != CommandKind::More && request.text.trimmed().isEmpty()) {
        respond({400, "There is no text to work on yet. Write something first."});
        return nullptr;
    }
    return m_engine.answer(request, [respond = std::move(respond)](const EngineAnswer &answer) {
        respond({answer.status, answer.text.toUtf8()});
    });
}
