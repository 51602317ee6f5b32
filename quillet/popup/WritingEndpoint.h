// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <functional>

/// Where the writing backend is. Main thread.
class WritingEndpoint
{
public:
    virtual ~WritingEndpoint() = default;

    /// Calls back exactly once, at once or when the backend is up, with the URL of its `/generate`;
    /// or with an empty URL and the reason why there is none.
    virtual void withEndpoint(std::function<void(const QString &url, const QString &failure)>) = 0;
};
