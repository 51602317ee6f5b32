// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/application/WritingEndpoints.h"

void RemoteWritingEndpoint::withEndpoint(std::function<void(const QString &, const QString &)> use)
{
    use(m_url, {});
}

LocalWritingEndpoint::LocalWritingEndpoint(std::function<void(const QString &)> analyticsMoved)
    : m_analyticsMoved(std::move(analyticsMoved))
{
}

void LocalWritingEndpoint::withEndpoint(std::function<void(const QString &, const QString &)> use)
{
    m_backend.withEndpoint([this, use = std::move(use)](const LocalEndpoint &endpoint) {
        if (!endpoint.failure.isEmpty()) {
            use({}, endpoint.failure);
            return;
        }
        m_analyticsMoved(endpoint.analytics.toString(QUrl::FullyEncoded));
        use(endpoint.generate.toString(QUrl::FullyEncoded), {});
    });
}
