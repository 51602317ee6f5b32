// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/writing/WritingService.h"

#include "quillet/writing/WritingEndpoint.h"

#include <QPointer>

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
                backend->get(url,
                             {{QStringLiteral("command"), command}, {QStringLiteral("text"), text}},
                             completion);
        });
}
