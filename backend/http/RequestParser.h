// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/http/HttpMessage.h"

#include <memory>

/// Reads one HTTP/1.1 request (RFC 9112) out of the bytes that a connection
/// delivers, in pieces of any size. Thread: any, one at a time.
class RequestParser
{
public:
    static constexpr qsizetype maxRequestLine = 1024 * 1024;

    RequestParser();
    ~RequestParser();
    RequestParser(const RequestParser &) = delete;
    RequestParser &operator=(const RequestParser &) = delete;

    enum class Outcome { NeedMore, Complete, Failed };

    /// Takes what it can from the front of `buffer` and removes it there.
    Outcome feed(QByteArray &buffer);
    /// After Failed: the status to answer, and a sentence for a person.
    int failureStatus() const;
    QByteArray failureSentence() const;
    /// Whether the client waits for a "100 Continue" (once for each request).
    bool takeExpectContinue();
    /// Whether the request line and the fields have come.
    bool hasHead() const;
    bool keepAlive() const;
    /// After Complete.
    HttpRequest request() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};
