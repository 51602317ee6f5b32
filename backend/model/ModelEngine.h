// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/engine/Engine.h"
#include "backend/model/ChatCompletion.h"

/// Answers commands with a language model behind a chat completions interface.
/// A text that does not fit the model's window is worked on part by part.
/// Thread: the event loop's.
class ModelEngine
{
public:
    /// As ChatResult; `text` is the finished text, or a sentence for the user.
    using Done = std::function<void(ChatResult)>;

    /// Calls `done` once, later; the job must not be destroyed inside it. The
    /// engine outlives the job.
    [[nodiscard]] std::unique_ptr<PendingWork> answer(const ModelSettings &settings,
                                                      const EngineRequest &request, Done done);

private:
    NetworkPool m_pool;
};
