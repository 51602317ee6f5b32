// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/shell/QuitSignals.h"

#include <QSocketNotifier>

#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

namespace
{

// Written by the signal handler, which may do little else; read by the event loop.
int signalSockets[2] = {-1, -1};

void noteSignal(int)
{
    const int before = errno;
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(signalSockets[0], &byte, 1);
    errno = before;
}

} // namespace

QuitSignals::QuitSignals(QObject *parent)
    : QObject(parent)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, signalSockets) != 0)
        return;
    auto *notifier = new QSocketNotifier(signalSockets[1], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        if (::read(signalSockets[1], &byte, 1) == 1)
            Q_EMIT quitRequested();
    });
    struct sigaction action = {};
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART | int(SA_RESETHAND);
    ::sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < handled.size(); ++i)
        ::sigaction(handled[i], &action, &m_before[i]);
}

QuitSignals::~QuitSignals()
{
    if (signalSockets[0] < 0)
        return;
    for (std::size_t i = 0; i < handled.size(); ++i)
        ::sigaction(handled[i], &m_before[i], nullptr);
    for (int &socket : signalSockets) {
        ::close(socket);
        socket = -1;
    }
}
