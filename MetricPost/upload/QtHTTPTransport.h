// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "HTTPTransport.h"

#include <memory>
#include <mutex>

QT_BEGIN_NAMESPACE
class QThread;
QT_END_NAMESPACE

namespace metricpost
{

/// HTTP through Qt Network, on a thread of its own, which is started with the first request.
/// Any thread.
///
/// Redirections are not followed and cookies neither kept nor sent. A request fails when
/// nothing moves for 60 seconds, and when the answer's body is longer than `bodyLimit`.
class QtHTTPTransport : public HTTPTransport
{
public:
    static constexpr qint64 bodyLimit = 64 * 1024;

    QtHTTPTransport();
    /// Abandons what is under way.
    ~QtHTTPTransport() override;

    Cancel start(const URLRequest &request, Completion completion) override;

private:
    class Worker;

    std::mutex m_mutex;
    std::unique_ptr<QThread> m_thread;
    std::shared_ptr<Worker> m_worker;
};

} // namespace metricpost
