// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/writing/WritingService.h"

#include "quillet/writing/WritingEndpoint.h"

#include <QPointer>

namespace
{

/// A request from the wait for the backend to its end.
class WaitingRequest : public BackendWork
{
public:
    using BackendWork::BackendWork;

    void end() override
    {
        isEnded = true;
        request.reset();
        deleteLater();
    }

    std::unique_ptr<BackendRequest> request;
    bool isEnded = false;
};

QMap<QString, QString> parameters(const QString &command, const QString &text,
                                  const QString &instruction = {})
{
    QMap<QString, QString> items{{QStringLiteral("command"), command},
                                 {QStringLiteral("text"), text}};
    if (!instruction.isEmpty())
        items.insert(QStringLiteral("instruction"), instruction);
    return items;
}

} // namespace

WritingService::WritingService(WritingEndpoint &endpoint, BackendService &backend, QObject *parent)
    : QObject(parent)
    , m_endpoint(endpoint)
    , m_backend(backend)
{
}

void WritingService::write(const QString &command, const QString &text,
                           BackendService::Completion completion)
{
    m_endpoint.withEndpoint(
        [backend = QPointer(&m_backend), command, text,
         completion = std::move(completion)](const QString &url, const QString &failure) {
            if (url.isEmpty())
                completion(BackendFailure(failure));
            else if (backend)
                backend->get(url, parameters(command, text), completion);
        });
}

std::unique_ptr<BackendRequest> WritingService::writeAsItComes(
    const QString &command, const QString &text, BackendService::Beginning beginning,
    BackendService::AnswerCompletion completion, const QString &instruction)
{
    auto *waiting = new WaitingRequest(this);
    auto request = std::make_unique<BackendRequest>(waiting);
    m_endpoint.withEndpoint(
        [waiting = QPointer(waiting), backend = QPointer(&m_backend), command, text, instruction,
         beginning = std::move(beginning),
         completion = std::move(completion)](const QString &url, const QString &failure) {
            if (!waiting || !backend || waiting->isEnded)
                return;
            const auto done = [waiting, completion](const BackendService::AnswerResult &result) {
                if (waiting)
                    waiting->deleteLater();
                completion(result);
            };
            if (url.isEmpty()) {
                // Later, as everything else is called back.
                QMetaObject::invokeMethod(
                    waiting,
                    [waiting, done, failure] {
                        if (!waiting->isEnded)
                            done(BackendFailure(failure));
                    },
                    Qt::QueuedConnection);
                return;
            }
            waiting->request =
                backend->getAsItComes(url, parameters(command, text, instruction), beginning, done);
        });
    return request;
}
