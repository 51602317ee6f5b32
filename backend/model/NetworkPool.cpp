// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/model/NetworkPool.h"

#include <QNetworkProxy>

namespace
{
constexpr std::size_t maxFree = 4;
}

NetworkPool::Manager NetworkPool::take(bool direct)
{
    Manager manager;
    if (m_free.empty()) {
        manager = std::make_unique<QNetworkAccessManager>();
    } else {
        manager = std::move(m_free.back());
        m_free.pop_back();
    }
    manager->setProxy(direct ? QNetworkProxy::NoProxy : QNetworkProxy::DefaultProxy);
    return manager;
}

void NetworkPool::giveBack(Manager manager)
{
    if (m_free.size() < maxFree)
        m_free.push_back(std::move(manager));
}
