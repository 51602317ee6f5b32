// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "LocalBackend.h"
#include "quillet/popup/WritingEndpoint.h"

/// A backend somewhere else, fixed when the program was built.
class RemoteWritingEndpoint : public WritingEndpoint
{
public:
    explicit RemoteWritingEndpoint(QString url)
        : m_url(std::move(url))
    {
    }
    void withEndpoint(std::function<void(const QString &, const QString &)> use) override;

private:
    const QString m_url;
};

/// The backend that this program runs as its child; started, and started again, when it is needed.
class LocalWritingEndpoint : public WritingEndpoint
{
public:
    /// `analyticsMoved` is told where the child takes analytics each time that this may be new.
    explicit LocalWritingEndpoint(std::function<void(const QString &baseURL)> analyticsMoved);
    void withEndpoint(std::function<void(const QString &, const QString &)> use) override;

private:
    LocalBackend m_backend;
    std::function<void(const QString &)> m_analyticsMoved;
};
