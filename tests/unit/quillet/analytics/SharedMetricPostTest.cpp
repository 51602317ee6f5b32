// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/analytics/SharedMetricPost.h"

#include "LoopbackServer.h"
#include "MetricPost/MetricPost.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

using namespace metricpost;
using namespace metricpost::test;

TEST(SharedMetricPostTest, SendsEachEventAtOnceToTheRunsProject)
{
    LoopbackServer server(LoopbackServer::always(LoopbackServer::response(200, "1")));
    const auto record = [&](int number) {
        EXPECT_TRUE(waitUntil([&] { return server.requests().size() == number; }));
        const QByteArray request = server.requests().value(number - 1);
        EXPECT_TRUE(request.startsWith("POST /analytics/track/?ip=1 HTTP/1.1\r\n"));
        EXPECT_FALSE(request.contains("Content-Encoding"));
        return recordsOf(bodyOf(request)).value(0);
    };
    const QString url = server.url() + u"/analytics"_qs;

    SharedMetricPost development({.developmentRun = true, .serverURL = url});
    development.track(u"Execute"_qs, {{u"command"_qs, u"reply"_qs}});
    const Properties execute = record(1);
    EXPECT_EQ(textAt(execute, {u"event"_qs}), u"Execute"_qs);
    EXPECT_EQ(textAt(execute, {u"properties"_qs, u"command"_qs}), u"reply"_qs);
    EXPECT_EQ(textAt(execute, {u"properties"_qs, u"token"_qs}),
              u"c3e8f0a2b5d74196e0a1f3c5b7d92e48"_qs);

    // The address may come later than the first event.
    SharedMetricPost production({.developmentRun = false, .serverURL = {}});
    production.track(u"Apply"_qs);
    production.setServerURL(url);
    const Properties apply = record(2);
    EXPECT_EQ(textAt(apply, {u"event"_qs}), u"Apply"_qs);
    EXPECT_EQ(textAt(apply, {u"properties"_qs, u"token"_qs}),
              u"5d1c0a7e3b9f42e6a8c4d2f1b0e97a63"_qs);
    EXPECT_EQ(MetricPost::mainInstance()->flushInterval(), Seconds(60));
    MetricPost::shutdown();
}
