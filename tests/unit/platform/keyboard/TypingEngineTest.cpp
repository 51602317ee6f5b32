// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/TypingEngine.h"

#include "FakeKeyServer.h"

#include <gtest/gtest.h>

using namespace platform;
using namespace platform::linux_;

namespace
{

struct Methods : InputMethods {
    std::optional<bool> answer = true;
    std::function<void(bool)> waiting;
    int resumed = 0;
    void suspend(std::function<void(bool)> done) override
    {
        if (answer)
            done(*answer);
        else
            waiting = std::move(done);
    }
    void resume() override { ++resumed; }
};

class TypingEngineTest : public testing::Test
{
protected:
    fake::Target &begin(const char *text)
    {
        auto made = std::make_unique<fake::Target>(server);
        fake::Target &target = *made;
        result.reset();
        engine.type(std::move(made), keyboardEvents(QString::fromUtf8(text)),
                    [this](TypingResult ended) { result = ended; });
        return target;
    }
    /// Lets so much time pass.
    void pass(int milliseconds)
    {
        for (int i = 0; i < milliseconds; i += 2) {
            engine.step();
            clock.time += Milliseconds(2);
            for (const auto &function : std::exchange(later, {}))
                function();
        }
    }

    fake::KeyServer server;
    fake::Clock clock;
    Methods methods;
    std::vector<std::function<void()>> later;
    TypingEngine engine{server, &methods, clock, [this](std::function<void()> function) {
                            later.push_back(std::move(function));
                        }};
    const KeyServer::RawMap before = server.own;
    std::optional<TypingResult> result;
};

TEST_F(TypingEngineTest, TypesEveryKindOfCharacterAndGivesEverythingBack)
{
    server.moment.lockedModifiers = fake::capsLock;
    begin("aA жЖ\n字😀");
    pass(200);
    EXPECT_EQ(result, TypingResult::Typed);
    EXPECT_EQ(server.typed, U"aA жЖ\n字😀");
    EXPECT_EQ(server.locksWhileTyping & fake::capsLock, 0);
    EXPECT_EQ(server.moment.lockedModifiers, fake::capsLock);
    EXPECT_EQ(server.own.keys, before.keys);
    EXPECT_EQ(methods.resumed, 1);
    EXPECT_FALSE(engine.step());
}

TEST_F(TypingEngineTest, MoreCharactersThanThereAreKeysArriveInOrder)
{
    QString text;
    for (char16_t c = 0x4e00; c < 0x4e00 + 60; ++c)
        text += QChar(c);
    begin(text.toUtf8());
    pass(3000);
    EXPECT_EQ(result, TypingResult::Typed);
    EXPECT_EQ(server.typed, text.toStdU32String());
    EXPECT_EQ(server.own.keys, before.keys);
}

TEST_F(TypingEngineTest, OnlyAnInputWithTheFocusIsTypedInto)
{
    engine.type(nullptr, keyboardEvents(QStringLiteral("a")),
                [this](TypingResult ended) { result = ended; });
    pass(10);
    EXPECT_EQ(result, TypingResult::NoTarget);

    begin("a").focused = false;
    pass(1900);
    EXPECT_EQ(result, std::nullopt) << "the window may get the keyboard back yet";
    pass(200);
    EXPECT_EQ(result, TypingResult::NoTarget);
    EXPECT_TRUE(server.keys.empty());

    fake::Target &late = begin("a");
    late.focused = false;
    pass(1000);
    late.focused = true;
    pass(100);
    EXPECT_EQ(result, TypingResult::Typed);
}

TEST_F(TypingEngineTest, WaitsForTheUsersKeysAndTheProgram)
{
    server.moment.heldModifiers = 4;
    fake::Target &target = begin("a");
    target.ready = false;
    pass(500);
    server.moment.heldModifiers = 0;
    pass(500);
    EXPECT_TRUE(server.keys.empty());
    target.ready = true;
    pass(100);
    EXPECT_EQ(result, TypingResult::Typed);

    server.moment.keyHeld = true;
    begin("a");
    pass(900);
    EXPECT_EQ(result, std::nullopt);
    pass(200);
    EXPECT_EQ(result, TypingResult::Typed) << "a key that is stuck";

    server.moment.heldModifiers = 4;
    begin("a");
    pass(15100);
    EXPECT_EQ(result, TypingResult::Interrupted);
}

TEST_F(TypingEngineTest, NothingIsTypedWhileAnInputMethodComposes)
{
    methods.answer.reset();
    begin("a");
    pass(200);
    EXPECT_TRUE(server.keys.empty()) << "it has not answered yet";
    methods.waiting(true);
    pass(100);
    EXPECT_EQ(result, TypingResult::Typed);
    EXPECT_EQ(methods.resumed, 1);

    server.keys.clear();
    methods.answer = false;
    begin("a");
    pass(100);
    EXPECT_EQ(result, TypingResult::Failed);
    EXPECT_TRUE(server.keys.empty());
    EXPECT_EQ(methods.resumed, 2);
}

TEST_F(TypingEngineTest, StopsWhenTheUserOrAnotherInputComesBetween)
{
    const QByteArray text(2000, 'a');
    const auto interrupt = [&](const std::function<void(fake::Target &)> &happens) {
        server.typed.clear();
        server.keys.clear();
        fake::Target &target = begin(text.constData());
        target.shows = 100;
        pass(20);
        EXPECT_FALSE(server.keys.empty());
        const std::size_t sent = server.keys.size();
        happens(target);
        pass(60);
        EXPECT_LE(server.keys.size(), sent + 96) << "no more than what was being sent";
        pass(6000);
        EXPECT_EQ(server.own.keys, before.keys);
        return result;
    };
    const auto user = [this](fake::Target &target) {
        target.shows = 1'000'000;
        server.events.push_back(KeyServer::KeyPressed{50, false});
    };
    EXPECT_EQ(interrupt(user), TypingResult::Interrupted);
    const auto layout = [this](fake::Target &target) {
        target.shows = 1'000'000;
        server.events.push_back(KeyServer::MapChanged{});
    };
    EXPECT_EQ(interrupt(layout), TypingResult::Interrupted);
    EXPECT_EQ(interrupt([](fake::Target &target) { target.focused = false; }),
              TypingResult::Misplaced)
        << "not all keys show in the input";
    const auto shown = [this](fake::Target &target) {
        target.shows = 1'000'000;
        server.events.push_back(KeyServer::FocusLeft{});
    };
    EXPECT_EQ(interrupt(shown), TypingResult::Interrupted) << "all keys show";
    const auto window = [this](fake::Target &target) {
        target.shows = 1'000'000;
        server.moment.focus = 99;
    };
    EXPECT_EQ(interrupt(window), TypingResult::Interrupted) << "checked before each burst";
    server.moment.focus = fake::inputWindow;
}

TEST_F(TypingEngineTest, TypedIsOnlyWhatTheInputShows)
{
    fake::Target &late = begin("aaaa");
    late.shows = 3;
    pass(500);
    EXPECT_EQ(server.typed, U"aaaa");
    EXPECT_EQ(result, std::nullopt) << "a program that is late";
    late.shows = 4;
    pass(100);
    EXPECT_EQ(result, TypingResult::Typed);

    server.typed.clear();
    begin("aaaa").shows = 3;
    pass(2000);
    EXPECT_EQ(result, TypingResult::Failed) << "one that swallows a key";
}

TEST_F(TypingEngineTest, AServerThatIsGoneFailsAndStoppingWaitsForWhatIsOnItsWay)
{
    begin("a");
    server.broken = true;
    pass(10);
    EXPECT_EQ(result, TypingResult::Failed);

    server.broken = false;
    server.answersPings = false;
    begin("ж字");
    pass(10);
    server.answerPings();
    pass(10);
    ASSERT_FALSE(server.keys.empty());
    EXPECT_FALSE(engine.stop()) << "the keys have not been taken";
    EXPECT_NE(server.own.keys, before.keys);
    server.answerPings();
    EXPECT_TRUE(engine.stop() || engine.stop());
    EXPECT_EQ(server.own.keys, before.keys);
}

} // namespace
