// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/analytics/SharedMetricPost.h"

#include "MetricPost/MetricPost.h"

#include <memory>

using metricpost::MetricPost;

namespace
{

const QString productionToken = QStringLiteral("5d1c0a7e3b9f42e6a8c4d2f1b0e97a63");
const QString developmentToken = QStringLiteral("c3e8f0a2b5d74196e0a1f3c5b7d92e48");

SharedMetricPost::Settings &preparedSettings()
{
    static SharedMetricPost::Settings prepared;
    return prepared;
}

} // namespace

SharedMetricPost::SharedMetricPost(const Settings &settings)
    : m_metricPostToken(settings.developmentRun ? developmentToken : productionToken)
{
    MetricPost::initialize(m_metricPostToken)->setServerURL(settings.serverURL);
}

void SharedMetricPost::prepareShared(const Settings &settings)
{
    preparedSettings() = settings;
}

SharedMetricPost &SharedMetricPost::shared()
{
    static SharedMetricPost instance(preparedSettings());
    return instance;
}

void SharedMetricPost::track(const QString &event, const QMap<QString, QString> &properties)
{
    metricpost::Properties values;
    for (auto it = properties.begin(); it != properties.end(); ++it)
        values.insert(it.key(), metricpost::MetricPostType(it.value()));
    const auto client = MetricPost::mainInstance();
    client->track(event, values);
    client->flush();
}

void SharedMetricPost::setServerURL(const QString &url)
{
    const auto client = MetricPost::mainInstance();
    if (client->serverURL() == url)
        return;
    client->setServerURL(url);
    client->flush();
}
