// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/writing/FoundServer.h"

#include "quillet/writing/WritingEndpoint.h"
#include "support/HttpStub.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

namespace
{

TEST(FoundServerDesk, AsksOnceAndBringsTheAnswer)
{
    HttpStub backend;
    QByteArray found = R"({"address":"127.0.0.1:11434","owner":998,"ownerName":"ollama",
        "model":"m","consent":"unanswered"})";
    backend.answer = [&](const QByteArray &request) {
        return HttpStub::reply(request.startsWith("GET") ? found : "1");
    };
    FixedEndpoint endpoint(backend.url("/with/secret/generate"));
    FoundServerDesk desk(endpoint);
    QList<FoundServer> asked;
    QObject::connect(&desk, &FoundServerDesk::unanswered, &desk,
                     [&](const FoundServer &server) { asked += server; });
    const auto look = [&](int requests) {
        desk.look();
        EXPECT_TRUE(waitUntil([&] { return backend.requests.size() == requests; }));
        waitUntil([n = 0]() mutable { return ++n > 20; });
    };
    look(1);
    ASSERT_EQ(asked.size(), 1);
    EXPECT_TRUE(backend.requests[0].startsWith("GET /with/secret/found-server "));
    EXPECT_EQ(asked[0].ownerName, QStringLiteral("ollama"));
    look(2);
    EXPECT_EQ(asked.size(), 1) << "not about the same server again";
    found.replace("unanswered", "refused").replace("998", "0");
    look(3);
    EXPECT_EQ(asked.size(), 1);

    std::optional<bool> agreed;
    desk.find(&desk, [&](const FoundServer &, bool answer) { agreed = answer; });
    EXPECT_TRUE(waitUntil([&] { return agreed.has_value(); }));
    EXPECT_FALSE(*agreed) << "the settings show it, whatever the answer was";

    std::optional<bool> stored;
    desk.answer(asked[0], true, [&](bool worked) { stored = worked; });
    EXPECT_TRUE(waitUntil([&] { return stored.has_value(); }));
    EXPECT_TRUE(*stored);
    EXPECT_TRUE(backend.requests[4].startsWith(
        "POST /with/secret/found-server?agree=yes&address=127.0.0.1:11434&owner=998 "))
        << backend.requests[4].constData();
}

} // namespace
