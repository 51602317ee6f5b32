// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QNetworkAccessManager>
#include <memory>
#include <vector>

/// Network access managers, each for one request at a time: a manager queues
/// all but six requests to one host, and a slow model would hold up the others.
/// Those that are free are kept for their open connections. Thread: one.
class NetworkPool
{
public:
    using Manager = std::unique_ptr<QNetworkAccessManager>;

    /// `direct`: past any proxy, for servers on this machine.
    Manager take(bool direct);
    void giveBack(Manager manager);

private:
    std::vector<Manager> m_free;
};
