// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "quillet/writing/BackendService.h"

class WritingEndpoint;

/// The one way to the writing backend: takes a command and a text, and answers with what the
/// backend made of it. An answer for which isNote() in commands/Note.h holds is a sentence for the
/// user: shown as it stands, never written into a document. Main thread.
class WritingService : public QObject
{
    Q_OBJECT

public:
    /// Both outlive this object.
    WritingService(WritingEndpoint &endpoint, BackendService &backend, QObject *parent = nullptr);

    /// Sends one command of the catalogue with the text that it is for. Calls `completion` exactly
    /// once, as BackendService::get does; a backend that does not run is a failure with the reason.
    void write(const QString &command, const QString &text, BackendService::Completion completion);

    /// As write(), and meanwhile hands each piece of the answer to `beginning` as it comes. The
    /// completed text counts: it can differ from the pieces. Destroying the request ends the
    /// backend's work, and nothing is called back any more. `instruction` is for the command
    /// OwnCommands::once, and goes with the text.
    [[nodiscard]] std::unique_ptr<BackendRequest>
    writeAsItComes(const QString &command, const QString &text, BackendService::Beginning beginning,
                   BackendService::AnswerCompletion completion, const QString &instruction = {});

private:
    WritingEndpoint &m_endpoint;
    BackendService &m_backend;
};
