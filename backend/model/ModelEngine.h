// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/engine/Engine.h"
#include "backend/model/ChatCompletion.h"

#include <QSet>

/// How often and how soon a part of a text is tried again when the server is busy or faulty.
struct RetryPolicy {
    int maxRetries = 2;
    /// Before the first retry; doubled before each further one.
    std::chrono::milliseconds pause{1'000};
    /// A server that asks for more patience than this is not asked again.
    std::chrono::seconds maxPatience{30};
};

/// Answers commands with a language model behind a chat completions interface.
/// A text that does not fit the model's window is worked on part by part.
/// Thread: the event loop's.
class ModelEngine
{
public:
    explicit ModelEngine(const RetryPolicy &retries = {})
        : m_retries(retries)
    {
    }

    struct Result : ChatResult {
        /// A sentence about a text that is good to use; see EngineAnswer.
        QString remark;
    };
    /// `text` is the finished text, or a sentence for the user.
    using Done = std::function<void(Result)>;

    /// Calls `done` once, later; the work must not be destroyed inside it. Hands
    /// the pieces of the answer to the request's `piece` as they come. The
    /// engine outlives the work.
    [[nodiscard]] std::unique_ptr<PendingWork> answer(const ModelSettings &settings,
                                                      const EngineRequest &request, Done done);

private:
    class Job;

    RetryPolicy m_retries;
    NetworkPool m_pool;
    /// Servers that refuse fields which are new to them, by host and port.
    QSet<QString> m_plainServers;
};
