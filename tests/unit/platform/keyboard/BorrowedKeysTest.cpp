// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/BorrowedKeys.h"
#include "platform/linux/keyboard/CharacterBanks.h"

#include "FakeKeyServer.h"

#include <gtest/gtest.h>

using namespace platform::linux_;

namespace
{

class BorrowedKeysTest : public testing::Test
{
protected:
    static bool same(const KeyServer::RawMap &a, const KeyServer::RawMap &b)
    {
        return a.keys == b.keys && a.types == b.types;
    }

    fake::KeyServer server;
    const KeyServer::RawMap before = server.own;
    const std::vector<char32_t> characters{U'ж', U'字', U'😀'};
};

TEST_F(BorrowedKeysTest, LendsTheEmptyKeysAndLeavesTheKeyboardAsItWas)
{
    BorrowedKeys borrowed(server);
    server.moment.lockedModifiers = fake::capsLock | 16;
    ASSERT_TRUE(borrowed.begin(server.map, fake::capsLock | 16, fake::capsLock));
    EXPECT_FALSE(server.repeats);
    EXPECT_EQ(server.moment.lockedModifiers, 16) << "Caps Lock is off while text is typed";
    EXPECT_EQ(borrowed.wholeCapacity(), 16U);
    EXPECT_EQ(borrowed.bankCapacity(), 4U);
    const auto note = BorrowedNote::unpack(server.kept);
    ASSERT_TRUE(note) << "noted before anything is taken";
    EXPECT_EQ(note->keys.size(), 8U);
    EXPECT_EQ(note->releasedLocks, fake::capsLock);

    borrowed.map({{0, characters}});
    EXPECT_EQ(server.mapChanges, 1);
    EXPECT_EQ(borrowed.keyFor(0, U'ж'), (Keystroke{200, 0}));
    EXPECT_EQ(borrowed.keyFor(0, U'字'), (Keystroke{201, 0})) << "first those without a modifier";
    EXPECT_EQ(borrowed.keyFor(0, U'😀'), (Keystroke{200, fake::shift}));
    EXPECT_EQ(borrowed.keyFor(0, U'x'), std::nullopt);
    EXPECT_EQ(borrowed.keyFor(1, U'ж'), std::nullopt);
    EXPECT_EQ(server.own.keys[200].keysyms.at(0), keysymForCodePoint(U'ж'));
    // Caps Lock changes nothing: each level has an entry with it and one without.
    EXPECT_EQ(server.own.types[5].realModifiers, 3UL);
    EXPECT_EQ(server.own.types[5].entries.size(), 3U);

    borrowed.giveBack();
    EXPECT_TRUE(same(server.own, before));
    EXPECT_TRUE(server.repeats);
    EXPECT_EQ(server.moment.lockedModifiers, fake::capsLock | 16);
    EXPECT_TRUE(server.kept.empty());
    EXPECT_FALSE(server.ourTypist);
}

TEST_F(BorrowedKeysTest, TheNextOneGivesBackWhatAKilledProcessLeft)
{
    {
        BorrowedKeys killed(server);
        ASSERT_TRUE(killed.begin(server.map, fake::capsLock, fake::capsLock));
        killed.map({{0, characters}});
        // Its mark goes with its connection; what it would do at its end does not happen.
        const auto left = server;
        killed.giveBack();
        server = left;
    }
    server.ourTypist = false;
    ASSERT_FALSE(same(server.own, before));
    // A layout that was set since.
    server.addKey(201, {'y'});

    server.otherTypist = true;
    BorrowedKeys next(server);
    EXPECT_FALSE(next.begin(server.map)) << "another one is typing";
    EXPECT_FALSE(same(server.own, before));
    EXPECT_FALSE(server.repeats);

    server.otherTypist = false;
    next.recover();
    EXPECT_EQ(server.own.keys[200], before.keys[200]);
    EXPECT_EQ(server.own.keys[201].keysyms, std::vector<unsigned long>{'y'});
    EXPECT_EQ(server.own.types[5], before.types[5]);
    EXPECT_TRUE(server.repeats);
    EXPECT_EQ(server.moment.lockedModifiers, fake::capsLock);
    EXPECT_TRUE(server.kept.empty());
}

TEST_F(BorrowedKeysTest, TakesTheLayoutsKeysWhereThereAreTooFew)
{
    BorrowedKeys borrowed(server);
    ASSERT_TRUE(borrowed.begin(server.map));
    EXPECT_FALSE(borrowed.lends(fake::keyA));
    ASSERT_TRUE(borrowed.takeLayoutKeys(server.map));
    EXPECT_TRUE(borrowed.lends(fake::keyA));
    EXPECT_FALSE(borrowed.lends(fake::keyReturn));
    borrowed.map({{std::nullopt, std::vector<char32_t>(9, U'ж')}});
    borrowed.giveBack();
    EXPECT_TRUE(same(server.own, before));
}

TEST_F(BorrowedKeysTest, ReadsNoNoteThatItCannotHaveWritten)
{
    BorrowedNote note{
        true, 2, 5, {1, 2, true, {{1, 1, 1, 0, 1, 0}}}, {{200, 1, 2, {5}, {'a', 'b'}}}};
    std::vector<unsigned long> packed = note.pack();
    EXPECT_EQ(BorrowedNote::unpack(packed), note);
    note.type.reset();
    EXPECT_EQ(BorrowedNote::unpack(note.pack()), note);
    EXPECT_EQ(BorrowedNote::unpack({}), std::nullopt);
    const auto with = [&](std::size_t at, unsigned long value) {
        std::vector<unsigned long> changed = packed;
        changed.at(at) = value;
        return BorrowedNote::unpack(changed);
    };
    EXPECT_EQ(with(0, 2), std::nullopt) << "another version";
    EXPECT_EQ(with(7, 200), std::nullopt) << "more entries than there are numbers";
    EXPECT_EQ(with(packed.size() - 3, 60), std::nullopt) << "more keysyms than there are numbers";
    EXPECT_EQ(with(packed.size() - 3, 1), std::nullopt) << "not as many as groups and levels say";
}

class CharacterBanksTest : public testing::Test
{
protected:
    /// Banks for so many segments of `fake::bankSize` characters, each of ten keys.
    void make(std::size_t segments, std::vector<WindowId> companions = {})
    {
        ASSERT_TRUE(borrowed.begin(server.map));
        pings.begin(fake::inputWindow);
        std::vector<Segment> made;
        for (std::size_t i = 0; i < segments; ++i) {
            const auto first = static_cast<char32_t>(0x4e00 + i * fake::bankSize);
            made.push_back({i * 10, i * 10 + 10, {first, first + 1, first + 2, first + 3}});
        }
        banks.emplace(server, watch, borrowed, pings, std::move(made), std::move(companions),
                      clock);
    }
    /// Has the program answer, and lets the banks know.
    void settle(std::size_t handled)
    {
        banks->update(handled);
        watch.poll();
        banks->update(handled);
    }

    fake::KeyServer server;
    fake::Clock clock;
    InputWatch watch{server};
    BorrowedKeys borrowed{server};
    Pings pings{server, watch, clock};
    std::optional<CharacterBanks> banks;
};

TEST_F(CharacterBanksTest, AFullBankIsMappedAgainOnlyWhenItsKeysAreHandled)
{
    make(6);
    banks->reach(0);
    EXPECT_FALSE(banks->ready());
    settle(0);
    EXPECT_TRUE(banks->ready());
    EXPECT_EQ(banks->keyFor(0x4e00), (Keystroke{200, 0}));
    EXPECT_EQ(server.mapChanges, 1) << "all four banks in one change";
    for (std::size_t key : {10U, 20U, 30U}) {
        banks->reach(key);
        settle(9);
        EXPECT_TRUE(banks->ready()) << key;
    }
    banks->reach(40);
    settle(9);
    EXPECT_FALSE(banks->ready()) << "the tenth key of the first bank is on its way";
    EXPECT_TRUE(banks->waiting());
    EXPECT_EQ(server.own.keys[200].keysyms.at(0), keysymForCodePoint(0x4e00));
    settle(10);
    EXPECT_TRUE(banks->ready());
    EXPECT_EQ(banks->keyFor(0x4e10), (Keystroke{200, 0}));
    EXPECT_FALSE(watch.mapChanged()) << "the change was our own";
}

TEST_F(CharacterBanksTest, TheProgramHasToFollowOnEveryConnection)
{
    server.answersPings = false;
    make(1, {fake::companion});
    settle(0);
    EXPECT_FALSE(banks->ready());
    ASSERT_EQ(server.owed.size(), 2U);
    const auto late = server.owed.back();
    server.owed.pop_back();
    server.answerPings();
    settle(0);
    EXPECT_FALSE(banks->ready()) << "the other connection has not answered";
    server.events.push_back(late);
    settle(0);
    EXPECT_TRUE(banks->ready());
}

TEST_F(CharacterBanksTest, ACompanionThatNeverAnswersIsLeftOutAndADeafProgramGetsTime)
{
    server.answersPings = false;
    make(1, {fake::companion});
    settle(0);
    server.owed.pop_back();
    server.answerPings();
    clock.time += Pings::limit;
    settle(0);
    EXPECT_FALSE(banks->ready());
    clock.time += Milliseconds(1);
    settle(0);
    EXPECT_TRUE(banks->ready());

    borrowed.giveBack();
    make(1);
    pings.begin(0);
    settle(0);
    clock.time += Milliseconds(149);
    settle(0);
    EXPECT_FALSE(banks->ready());
    clock.time += Milliseconds(1);
    settle(0);
    EXPECT_TRUE(banks->ready());
}

} // namespace
