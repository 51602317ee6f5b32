// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/http/Service.h"

#include "backend/http/LiveBody.h"
#include "backend/http/RequestTarget.h"
#include "commands/Catalogue.h"
#include "commands/Note.h"
#include "commands/OwnCommands.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

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

/// UTF-8, without the three characters that a live answer uses as its marks.
QByteArray bytesOf(const QString &text)
{
    QByteArray bytes = text.toUtf8();
    bytes.removeIf([](char c) {
        return c == LiveBody::padding || c == LiveBody::withdrawal || c == LiveBody::trailer;
    });
    return bytes;
}

/// A search whose end drops the search.
class Search : public PendingWork
{
public:
    QObject context;
};

QByteArray jsonOf(const std::optional<FoundServer> &found)
{
    if (!found)
        return "{}";
    static const QStringList consents{u"unanswered"_qs, u"agreed"_qs, u"refused"_qs, u"foreign"_qs};
    const QJsonObject object{{u"address"_qs, found->address},
                             {u"owner"_qs, qint64(found->owner)},
                             {u"ownerName"_qs, found->ownerName},
                             {u"model"_qs, found->model},
                             {u"consent"_qs, consents.value(int(found->consent))}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

/// What there is to say about an answer beside its text, in percent-encoded UTF-8.
HttpHeaders headersOf(const EngineAnswer &answer)
{
    HttpHeaders headers;
    for (const auto &[name, value] :
         {std::pair("Quillet-Writer", answer.writer), std::pair("Quillet-Remark", answer.remark)}) {
        if (!value.isEmpty())
            headers.append({name, QUrl::toPercentEncoding(value, " :()/,.")});
    }
    return headers;
}

} // namespace

Service::Service(AccessPolicy policy, Engine &engine, FoundServers &found)
    : m_policy(std::move(policy))
    , m_engine(engine)
    , m_found(found)
{
}

std::unique_ptr<PendingWork> Service::handle(HttpRequest request, HttpRespond respond)
{
    const auto absolute = parseRequestTarget(request.target);
    if (!absolute) {
        respond.complete({400, "The request's address is not percent-encoded UTF-8."});
        return nullptr;
    }
    if (absolute->authority)
        request.host = *absolute->authority;
    if (const auto refusal = m_policy.refusal(request)) {
        respond.complete(*refusal);
        return nullptr;
    }
    const auto target = parseRequestTarget(request.target).value_or(RequestTarget{});
    const bool reads = request.method == "GET" || request.method == "HEAD";
    if (isAnalyticsPath(target.path)) {
        respond.complete(request.method == "POST" ? HttpResponse{200, "1"}
                                                  : methodNotAllowed("POST"));
    } else if (target.path == u"/found-server") {
        return foundServer(request, target, std::move(respond));
    } else if (target.path != u"/generate") {
        respond.complete(
            {404, "There is nothing at this address; writing commands are at /generate."});
    } else if (!reads) {
        respond.complete(methodNotAllowed("GET, HEAD"));
    } else if (const auto refusal = refusalOf(target.items)) {
        respond.complete(*refusal);
    } else if (request.method == "HEAD") {
        // The fields of the answer are known without it.
        respond.complete({200, {}});
    } else {
        return generate(target.items, std::move(respond));
    }
    return nullptr;
}

std::unique_ptr<PendingWork> Service::foundServer(const HttpRequest &request,
                                                  const RequestTarget &target, HttpRespond respond)
{
    if (!m_policy.asksForSecret()) {
        respond.complete({403, "Only the application that started this server may ask that."});
        return nullptr;
    }
    if (request.method != "GET" && request.method != "POST") {
        respond.complete(methodNotAllowed("GET, POST"));
        return nullptr;
    }
    auto search = std::make_unique<Search>();
    m_found.look(&search->context,
                 [this, post = request.method == "POST", items = target.items,
                  complete = std::move(respond.complete)](const std::optional<FoundServer> &found) {
                     if (!post) {
                         complete({200, jsonOf(found), {}, "application/json"});
                         return;
                     }
                     const QString agree = items.value(QStringLiteral("agree"));
                     // The answer is about the server that the user was asked about, and no other.
                     const bool isSame =
                         found && found->consent != FoundServer::Consent::Foreign &&
                         items.value(QStringLiteral("address")) == found->address &&
                         items.value(QStringLiteral("owner")) == QString::number(found->owner);
                     if (!isSame || (agree != u"yes" && agree != u"no"))
                         complete({409, "The server that was found is another by now."});
                     else if (!m_found.remember(*found, agree == u"yes"))
                         complete({500, "The answer could not be stored."});
                     else
                         complete({200, "1"});
                 });
    return search;
}

std::optional<HttpResponse> Service::refusalOf(const QHash<QString, QString> &items)
{
    for (const auto name : {u"command", u"text"}) {
        const auto key = QString::fromUtf16(name);
        if (!items.contains(key))
            return HttpResponse{400, "The query item \"" + key.toUtf8() + "\" is missing."};
    }
    const auto kind = commandKind(items[QStringLiteral("command")]);
    if (!kind && !OwnCommands::isOwn(items[QStringLiteral("command")]))
        return HttpResponse{400, "There is no such command in the catalogue."};
    if (kind != CommandKind::More && items[QStringLiteral("text")].trimmed().isEmpty()) {
        return HttpResponse{
            400, asNote(QStringLiteral("There is no text to work on yet. Write something first."))
                     .toUtf8()};
    }
    return std::nullopt;
}

std::unique_ptr<PendingWork> Service::generate(const QHash<QString, QString> &items,
                                               HttpRespond respond)
{
    const EngineRequest request{items[QStringLiteral("command")], items[QStringLiteral("text")],
                                [piece = std::move(respond.piece)](const EnginePiece &part) {
                                    piece({bytesOf(part.text), part.startsOver});
                                },
                                items[QStringLiteral("instruction")]};
    return m_engine.answer(request,
                           [complete = std::move(respond.complete)](const EngineAnswer &answer) {
                               complete({answer.status, bytesOf(answer.text), headersOf(answer)});
                           });
}
