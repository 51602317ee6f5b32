// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "quillet/writing/BackendService.h"

class WritingEndpoint;

/// The one way to the writing backend: takes a command and a text, and answers with what the
/// backend made of it. Main thread.
class WritingService : public QObject
{
    Q_OBJECT

public:
    /// Both outlive this object.
    WritingService(WritingEndpoint &endpoint, BackendService &backend, QObject *parent = nullptr);

    /// Sends one command of the catalogue with the text that it is for. Calls `completion` exactly
    /// once, as BackendService::get does; a backend that does not run is a failure with the reason.
    void write(const QString &command, const QString &text, BackendService::Completion completion);

private:
    WritingEndpoint &m_endpoint;
    BackendService &m_backend;
};
