// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/IndentRemoval.h"

#include <gtest/gtest.h>

using platform::linux_::IndentRemoval;
using platform::linux_::Milliseconds;
using platform::linux_::TypingTarget;
using Step = IndentRemoval::Step;

namespace
{

class Editor : public TypingTarget
{
public:
    bool hasFocus() override { return true; }
    std::optional<qint64> characterCount() override { return std::nullopt; }
    bool needsSoftLineBreaks() override { return false; }
    std::optional<QString> textBeforeCaret() override { return text; }

    std::optional<QString> text;
};

class IndentRemovalTest : public testing::Test
{
protected:
    /// The next step after the line break that is the ninth key, some time later.
    Step next(const char *text, int later = 100, std::size_t line = 9)
    {
        editor.text = QString::fromUtf8(text);
        return removal.next(line, now += Milliseconds(later));
    }

    Editor editor;
    IndentRemoval removal{editor};
    Milliseconds now{0};
};

TEST_F(IndentRemovalTest, DeletesKeyByKeyWhatStandsAfterTheLineBreak)
{
    EXPECT_EQ(next("\tone\n\t  "), Step::Delete);
    EXPECT_EQ(next("\tone\n\t  "), Step::Wait) << "the BackSpace does not show yet";
    EXPECT_EQ(next("\tone\n\t"), Step::Delete) << "one that deletes two characters";
    EXPECT_EQ(next("\tone\n"), Step::Done);
    EXPECT_EQ(next("\tone\n\t"), Step::Done) << "what comes later is the text's own";
    EXPECT_EQ(next("\tone\n\ttwo\n\t", 100, 15), Step::Delete) << "another line";
}

TEST_F(IndentRemovalTest, NeverDeletesTheTextItself)
{
    EXPECT_EQ(next("\tone"), Step::Wait) << "the line break does not show yet";
    EXPECT_EQ(next("\tone\n  - "), Step::Wait);
    editor.text.reset();
    EXPECT_EQ(removal.next(9, now += Milliseconds(100)), Step::Wait)
        << "a busy editor does not answer in time";
    EXPECT_EQ(next("\tone\n\t"), Step::Delete);
}

TEST_F(IndentRemovalTest, GivesUpWhatCannotBeDeleted)
{
    EXPECT_EQ(next("\tone\n\t"), Step::Delete);
    EXPECT_EQ(next("\tone\n\t", 3000), Step::Wait) << "a machine that stands still";
    EXPECT_EQ(next("\tone\n\t", 60000), Step::Keep);
    EXPECT_EQ(next("\tone\n\t"), Step::Done);
    EXPECT_EQ(next("\tone\n\ttwo\n\t", 100, 15), Step::Delete);
    EXPECT_EQ(next("\tone\n\ttwo\n\t", 100, 15), Step::Wait);
    EXPECT_EQ(next("\tone\n\ttwo\n\t", 1000, 15), Step::Keep) << "sooner than before";
}

} // namespace
