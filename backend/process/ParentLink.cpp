// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/process/ParentLink.h"

#include <cerrno>
#include <unistd.h>

namespace
{
constexpr qsizetype maximumSecret = 1024;
}

ParentLink::ParentLink(std::function<void(QByteArray)> secret, std::function<void()> gone)
    : m_secret(std::move(secret))
    , m_gone(std::move(gone))
    , m_notifier(STDIN_FILENO, QSocketNotifier::Read)
{
    connect(&m_notifier, &QSocketNotifier::activated, this, [this] { readSome(); });
}

void ParentLink::readSome()
{
    char bytes[512];
    const auto count = ::read(STDIN_FILENO, bytes, sizeof bytes);
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    if (count <= 0) {
        m_notifier.setEnabled(false);
        m_gone();
        return;
    }
    if (m_hasSecret)
        return;
    m_line.append(bytes, count);
    const auto end = m_line.indexOf('\n');
    if (end == 0 || m_line.size() > maximumSecret) {
        m_notifier.setEnabled(false);
        m_gone();
    } else if (end > 0) {
        m_hasSecret = true;
        m_secret(m_line.first(end));
        m_line.clear();
    }
}
