// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/FlowControl.h"

#include "FakeKeyServer.h"

#include <gtest/gtest.h>

using namespace platform::linux_;

namespace
{

class FlowControlTest : public testing::Test
{
protected:
    FlowControl &begin(bool countable = true, bool oneByOne = false)
    {
        watch.start(fake::inputWindow);
        pings.begin(server.answersPings ? fake::inputWindow : 0);
        return flow.emplace(pings, target, countable, oneByOne, clock);
    }
    /// Sends as many keys as may be sent, and tells how many that were.
    std::size_t send()
    {
        const std::size_t keys = flow->room();
        if (keys > 0)
            flow->sent(keys, keys);
        return keys;
    }
    /// The program takes what was sent, and the input shows this much of it.
    void update(std::size_t shown, int later = 100)
    {
        clock.time += Milliseconds(later);
        server.typed = std::u32string(std::min(shown, flow->sentKeys()), U'x');
        server.answerPings();
        watch.poll();
        flow->update(true);
    }

    fake::KeyServer server;
    fake::Clock clock;
    fake::Target target{server};
    InputWatch watch{server};
    Pings pings{server, watch, clock};
    std::optional<FlowControl> flow;
};

TEST_F(FlowControlTest, BoundsWhatTheProgramHasNotTakenOrShown)
{
    begin();
    std::size_t sent = 0;
    while (const std::size_t keys = send()) {
        EXPECT_LE(keys, 48U);
        sent += keys;
    }
    EXPECT_EQ(sent, 256U) << "it has taken none";
    watch.poll();
    EXPECT_FALSE(flow->allTaken());
    update(0);
    EXPECT_TRUE(flow->allTaken());
    EXPECT_FALSE(flow->allShown());
    EXPECT_EQ(flow->handled(), 0U) << "taken is not enough where more is to be had";
    while (const std::size_t keys = send())
        sent += keys;
    EXPECT_EQ(sent, 384U) << "it shows none";
    update(384);
    EXPECT_TRUE(flow->allTaken() && flow->allShown());
    EXPECT_EQ(flow->handled(), 384U);
}

TEST_F(FlowControlTest, InAPageFewKeysAreOnTheirWayAndTheFocusIsConfirmed)
{
    target.maxUnconfirmed = 8;
    begin();
    EXPECT_EQ(send(), 8U);
    EXPECT_EQ(send(), 0U);
    update(5);
    target.confirms = false;
    EXPECT_EQ(send(), 0U) << "the input has not said that it has the focus";
    target.confirms = true;
    EXPECT_EQ(send(), 5U);

    target.countable = false;
    begin();
    clock.time += Milliseconds(1000);
    EXPECT_EQ(send(), 8U) << "also where the input does not count";
}

TEST_F(FlowControlTest, OneByOneWaitsForEachKeyToShow)
{
    begin(true, true);
    EXPECT_EQ(send(), 1U);
    update(0);
    EXPECT_EQ(send(), 0U);
    update(1);
    EXPECT_EQ(send(), 1U);
}

TEST_F(FlowControlTest, GoesByTimeWhereTheProgramTellsNothing)
{
    server.answersPings = false;
    target.countable = false;
    begin();
    EXPECT_EQ(send(), 0U);
    clock.time += Milliseconds(80);
    EXPECT_EQ(send(), 16U);
    update(0, 79);
    EXPECT_FALSE(flow->allTaken());
    update(0, 1);
    EXPECT_TRUE(flow->allTaken() && flow->allShown());
}

TEST_F(FlowControlTest, AProgramThatDoesNotAnswerIsDeafAfterAWhile)
{
    begin();
    EXPECT_EQ(send(), 48U);
    update(48, int(Pings::limit.count()) + 1);
    EXPECT_TRUE(pings.answers());
    begin();
    server.answersPings = false;
    EXPECT_EQ(send(), 48U);
    clock.time += Pings::limit + Milliseconds(1);
    flow->update(true);
    EXPECT_FALSE(pings.answers());
    server.typed = std::u32string(96, U'x');
    clock.time += Milliseconds(100);
    flow->update(true);
    EXPECT_TRUE(flow->allTaken()) << "what the input shows has been taken";
}

TEST_F(FlowControlTest, KnowsATextThatIsAsLongAsWhatItReplaces)
{
    target.before = target.selected = 20;
    begin();
    flow->sent(20, 20);
    update(20, 10);
    EXPECT_FALSE(flow->allShown()) << "the count may be older than the selection";
    update(20, 40);
    EXPECT_TRUE(flow->allShown());
}

TEST_F(FlowControlTest, DecidesSoonOnACountThatWillNotComeRight)
{
    const auto showAllButOne = [this] {
        server.typed.clear();
        begin();
        flow->sent(20, 20);
        update(19, 59'000);
    };
    for (const auto &[maxUnconfirmed, settledAfter] :
         {std::pair(std::optional<std::size_t>(), 1000), std::pair(std::optional(8UL), 2500)}) {
        target.maxUnconfirmed = maxUnconfirmed;
        showAllButOne();
        clock.time += Milliseconds(settledAfter);
        for (int answer = 0; answer < 3; ++answer) {
            EXPECT_FALSE(flow->settledElsewhere()) << "a busy program has not answered again yet";
            update(19);
        }
        EXPECT_TRUE(flow->settledElsewhere());

        showAllButOne();
        for (int answer = 0; answer < 3; ++answer)
            update(19);
        clock.time += Milliseconds(settledAfter - 300);
        EXPECT_FALSE(flow->settledElsewhere()) << "it may still come";
        clock.time += Milliseconds(1);
        EXPECT_TRUE(flow->settledElsewhere());
        EXPECT_FALSE(flow->stalled()) << "it has shown something since";
        clock.time += Milliseconds(60000);
        EXPECT_TRUE(flow->stalled());
    }
}

TEST_F(FlowControlTest, ACountThatTakesLongIsAskedForSeldom)
{
    begin();
    flow->sent(20, 20);
    target.onCount = [this] { clock.time += Milliseconds(5); };
    update(1);
    const int counted = target.counts;
    update(2, 19);
    EXPECT_EQ(target.counts, counted);
    update(2, 1);
    EXPECT_EQ(target.counts, counted + 1) << "a fifth of the time";
}

TEST(InputWatch, TellsTheUsersKeysFromOurs)
{
    fake::KeyServer server;
    InputWatch watch(server);
    watch.start(fake::inputWindow);
    watch.expectPress(38);
    watch.expectPress(39);
    server.events = {KeyServer::KeyPressed{38, true}, KeyServer::ButtonPressed{4},
                     KeyServer::ButtonPressed{7}, KeyServer::KeyPressed{39, true}};
    watch.poll();
    EXPECT_FALSE(watch.userActed()) << "our own keys, and scrolling";
    for (const KeyServer::Event &event : {KeyServer::Event(KeyServer::KeyPressed{38, true}),
                                          KeyServer::Event(KeyServer::KeyPressed{40, false}),
                                          KeyServer::Event(KeyServer::ButtonPressed{1})}) {
        watch.start(fake::inputWindow);
        if (std::holds_alternative<KeyServer::KeyPressed>(event))
            watch.expectPress(40);
        server.events = {event};
        watch.poll();
        EXPECT_TRUE(watch.userActed());
    }
    watch.start(fake::inputWindow);
    EXPECT_FALSE(watch.userActed());
    server.events = {KeyServer::KeyPressed{40, true}};
    watch.poll();
    EXPECT_TRUE(watch.userActed()) << "it was expected of the last typing";
    watch.expectPong(5, 3);
    server.events = {KeyServer::Pong{5, 4}, KeyServer::Pong{6, 1}, KeyServer::Pong{5, 2}};
    watch.poll();
    EXPECT_EQ(watch.lastPong(5), 2U) << "a window manager's numbers are no answers of ours";
    EXPECT_EQ(watch.lastPong(6), 0U);
}

} // namespace
