// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QList>
#include <QMap>
#include <QPair>
#include <QString>

#include <memory>

namespace metricpost
{

using QueryItems = QList<QPair<QString, QString>>;
using Headers = QMap<QString, QString>;

/// What a proxy server wants to see with each request.
struct ProxyServerResource {
    Headers headers;
    QueryItems queryItems;
};

/// Asked before each flush, on the network queue.
class ProxyServerDelegate
{
public:
    virtual ~ProxyServerDelegate() = default;
    virtual ProxyServerResource resourceForProxyServer(const QString &instanceName) = 0;
};

/// A proxy server in front of the analytics service. Requests go to its address instead of the
/// service's.
struct ProxyServerConfig {
    QString serverURL;
    std::shared_ptr<ProxyServerDelegate> delegate;
};

} // namespace metricpost
