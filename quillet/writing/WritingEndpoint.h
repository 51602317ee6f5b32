// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <functional>
#include <utility>

/// Where the writing backend is. Main thread.
class WritingEndpoint
{
public:
    using Ready = std::function<void(const QString &url, const QString &failure)>;

    virtual ~WritingEndpoint() = default;

    /// Calls `ready` exactly once, at once or when the backend is up, with the URL of its
    /// `/generate`; or with an empty URL and the reason why there is none. The URL can carry
    /// credentials: it is not for logs. It holds for the request at hand; ask again for the next.
    virtual void withEndpoint(Ready ready) = 0;
};

/// A backend somewhere else, fixed when the program was built.
class FixedEndpoint : public WritingEndpoint
{
public:
    explicit FixedEndpoint(QString url)
        : m_url(std::move(url))
    {
    }
    void withEndpoint(Ready ready) override { ready(m_url, {}); }

private:
    const QString m_url;
};
