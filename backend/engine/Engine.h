// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/engine/PendingWork.h"

#include <QString>
#include <functional>
#include <memory>

/// A piece of an answer that is still being written.
struct EnginePiece {
    QString text;
    /// The pieces before this one are withdrawn.
    bool startsOver = false;
};

struct EngineRequest {
    /// A command identifier of the catalogue, or one of the user's own commands.
    QString command;
    /// The user's text. Never logged, never stored.
    QString text;
    /// Takes the answer's beginning as it is written; may be empty. What was taken is a promise
    /// until a later piece starts over or the answer is another.
    std::function<void(const EnginePiece &)> piece = {};
    /// What a command of the user's own is to do. Empty for the commands of the catalogue.
    QString instruction = {};
};

struct EngineAnswer {
    /// An HTTP status; anything but 200 comes with a sentence for the user.
    int status = 200;
    QString text = {};
    /// Who wrote the text, as a person knows it: a language model and where it runs. Empty for
    /// the offline engine and for notes.
    QString writer = {};
    /// A sentence for the user about a text that is good to use, such as why the offline engine
    /// wrote it. Not a part of the text.
    QString remark = {};
};

/// What turns a command and a text into another text. Thread: the event loop's;
/// an engine never blocks it, and works on any number of requests at a time.
class Engine
{
public:
    using Done = std::function<void(EngineAnswer)>;

    Engine() = default;
    Engine(const Engine &) = delete;
    Engine &operator=(const Engine &) = delete;
    virtual ~Engine() = default;

    /// Calls `done` once, later from the event loop, never inside this call.
    /// The work must not be destroyed inside `done`.
    [[nodiscard]] virtual std::unique_ptr<PendingWork> answer(const EngineRequest &request,
                                                              Done done) = 0;
};
