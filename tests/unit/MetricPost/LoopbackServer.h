#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace metricpost::test
{

/// An HTTP server on the loopback address with plain sockets, a thread for each connection. It
/// keeps every byte of each request and answers with the bytes that the test wants, so that it
/// can also break the protocol.
class LoopbackServer
{
public:
    enum class Then { KeepOpen, Close, Reset, Hang };
    struct Answer {
        QByteArray bytes;
        Then then = Then::KeepOpen;
    };
    /// The number counts from 1. Called on the connection's thread.
    using Behaviour = std::function<Answer(int number)>;

    explicit LoopbackServer(Behaviour behaviour);
    ~LoopbackServer();

    QString url() const;
    QList<QByteArray> requests() const;

    /// A whole response with a Content-Length.
    static QByteArray response(int status, const QByteArray &body,
                               const QByteArray &moreHeaders = {});

private:
    void accept();
    void serve(int connection);

    const Behaviour m_behaviour;
    int m_listener = -1;
    int m_port = 0;
    mutable std::mutex m_mutex;
    QList<QByteArray> m_requests;
    std::vector<int> m_connections;
    std::vector<std::thread> m_threads;
    bool m_ending = false;
    std::thread m_acceptor;
};

/// What follows the first empty line.
QByteArray bodyOf(const QByteArray &request);
QByteArray gunzip(const QByteArray &data);

} // namespace metricpost::test
