// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

namespace metricpost::bench
{

/// An HTTP server on the loopback address that reads requests and looks at nothing.
class NullServer
{
public:
    enum class Manner { Accept, Fail, Hang };

    explicit NullServer(Manner manner);
    ~NullServer();

    QString url() const;
    /// What its own threads used, of the process's time.
    double cpuSeconds() const { return double(m_cpuNanoseconds.load()) * 1e-9; }

private:
    void serve(int connection);

    const Manner m_manner;
    int m_listener = -1;
    int m_port = 0;
    std::atomic<long long> m_cpuNanoseconds{0};
    std::mutex m_mutex;
    std::vector<int> m_connections;
    std::vector<std::thread> m_threads;
    std::thread m_acceptor;
};

} // namespace metricpost::bench
