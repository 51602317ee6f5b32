// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/http/StreamSocket.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

StreamSocket::StreamSocket(int descriptor, std::function<void()> changed)
    : m_descriptor(descriptor)
    , m_changed(std::move(changed))
    , m_readNotifier(descriptor, QSocketNotifier::Read)
    , m_writeNotifier(descriptor, QSocketNotifier::Write)
{
    ::fcntl(m_descriptor, F_SETFL, ::fcntl(m_descriptor, F_GETFL) | O_NONBLOCK);
    ::fcntl(m_descriptor, F_SETFD, FD_CLOEXEC);
    // Pieces of an answer leave as they are written.
    const int on = 1;
    ::setsockopt(m_descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    m_writeNotifier.setEnabled(false);
    QObject::connect(&m_readNotifier, &QSocketNotifier::activated, &m_readNotifier,
                     [this] { m_changed(); });
    QObject::connect(&m_writeNotifier, &QSocketNotifier::activated, &m_writeNotifier, [this] {
        flush();
        if (bytesToWrite() == 0 || m_broken)
            m_changed();
    });
}

StreamSocket::~StreamSocket()
{
    m_readNotifier.setEnabled(false);
    m_writeNotifier.setEnabled(false);
    ::close(m_descriptor);
}

QByteArray StreamSocket::take(qsizetype max)
{
    QByteArray bytes;
    while (!m_ended && !m_broken && bytes.size() < max) {
        char piece[64 * 1024];
        const auto wanted = std::min<qsizetype>(qsizetype(sizeof piece), max - bytes.size());
        const auto count = ::recv(m_descriptor, piece, std::size_t(wanted), 0);
        if (count > 0) {
            bytes.append(piece, count);
        } else if (count == 0) {
            m_ended = true;
            m_readNotifier.setEnabled(false);
        } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
            break;
        } else if (errno != EINTR) {
            fail();
        }
    }
    return bytes;
}

void StreamSocket::setReading(bool reading)
{
    m_reading = reading;
    m_readNotifier.setEnabled(reading && !m_ended && !m_broken);
}

void StreamSocket::write(const QByteArray &bytes)
{
    if (m_broken || m_ending)
        return;
    if (m_written > 0) {
        m_out.remove(0, m_written);
        m_written = 0;
    }
    m_out += bytes;
    flush();
}

void StreamSocket::endWriting()
{
    m_ending = true;
    flush();
}

bool StreamSocket::hasReset()
{
    pollfd state{m_descriptor, 0, 0};
    if (!m_broken && ::poll(&state, 1, 0) > 0 && (state.revents & (POLLERR | POLLNVAL)))
        fail();
    return m_broken;
}

void StreamSocket::flush()
{
    while (bytesToWrite() > 0 && !m_broken) {
        const auto count = ::send(m_descriptor, m_out.constData() + m_written,
                                  std::size_t(bytesToWrite()), MSG_NOSIGNAL);
        if (count >= 0)
            m_written += count;
        else if (errno == EAGAIN || errno == EWOULDBLOCK)
            break;
        else if (errno != EINTR)
            fail();
    }
    if (bytesToWrite() == 0) {
        m_out.clear();
        m_written = 0;
        if (m_ending && !m_broken)
            ::shutdown(m_descriptor, SHUT_WR);
    }
    m_writeNotifier.setEnabled(bytesToWrite() > 0 && !m_broken);
}

void StreamSocket::fail()
{
    m_broken = true;
    m_readNotifier.setEnabled(false);
    m_writeNotifier.setEnabled(false);
}
