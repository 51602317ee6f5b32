// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/engine/PendingWork.h"
#include "backend/http/HttpMessage.h"

#include <QByteArrayView>

#include <chrono>
#include <functional>
#include <memory>

/// Where the answer to one request goes.
struct HttpRespond {
    /// Any number of times, before `complete`.
    std::function<void(HttpPiece)> piece;
    /// Once, with the whole answer, whatever pieces were sent.
    std::function<void(HttpResponse)> complete;
};

/// Answers by calling `complete`, at once or later from the event loop. Work that
/// is still going on is returned; otherwise null.
using HttpHandler = std::function<std::unique_ptr<PendingWork>(const HttpRequest &, HttpRespond)>;

/// Which clients have shown that they may use the server. Until one has, its
/// connection gets little time and memory.
class HttpAdmission
{
public:
    virtual ~HttpAdmission() = default;
    /// By the first bytes of a request, whose head may be long.
    virtual bool admitsBeginning(QByteArrayView bytes) const = 0;
    /// By a whole request.
    virtual bool admits(const HttpRequest &request) const = 0;
};

/// What a server gives its clients. Tests hand in less.
struct HttpLimits {
    /// For a request to arrive, or the next one on the same connection.
    std::chrono::milliseconds request{60'000};
    /// For a new client to show that it is admitted.
    std::chrono::milliseconds admission{5'000};
    /// The longest silence while an answer is worked on.
    std::chrono::milliseconds silence{8'000};
    qsizetype maxStrangersHead = 64 * 1024;
    std::size_t maxConnections = 256;
};
