// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include <MetricPost/MPAssert.h>
#include <MetricPost/MetricPost.h>
#include <MetricPost/MetricPostLogger.h>
#include <MetricPost/Version.h>

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    metricpost::MetricPost::setApplicationFacts({.bundleShortVersion = QStringLiteral("1")});
    metricpost::MetricPostOptions options;
    options.token = QStringLiteral("client");
    options.flushInterval = metricpost::Seconds(5);
    const auto instance = metricpost::MetricPost::initialize(options);
    instance->track(QStringLiteral("e"), {{QStringLiteral("k"), 1}});
    instance->waitUntilStored();
    std::printf("MetricPost %s tracks for %s\n", metricpost::libraryVersion,
                qPrintable(instance->apiToken()));
    metricpost::MetricPost::shutdown();
}
