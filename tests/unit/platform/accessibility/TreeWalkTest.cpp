// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/reading/TreeWalk.h"
#include "platform/linux/reading/Attributes.h"
#include "platform/linux/reading/EditableAnswers.h"
#include "platform/linux/reading/FocusSearch.h"
#include "platform/linux/reading/TreeText.h"
#include "support/FakeProgram.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

using namespace platform::linux_;
using atspi::Role;
using atspi::State;

namespace
{

constexpr State onScreen[] = {State::Visible, State::Showing};

QList<State> with(std::initializer_list<State> states)
{
    QList<State> all(std::begin(onScreen), std::end(onScreen));
    return all + QList<State>(states);
}

/// A window "/w" with a page "/p" in it, once for programs that search their own tree and once for
/// those that do not.
class Reading : public testing::TestWithParam<bool>
{
protected:
    Reading()
    {
        program.hasCollection = GetParam();
        program.elements[atspi::rootPath] = {};
        program.add("/w", atspi::rootPath, {.role = Role::Frame, .states = with({State::Active})});
        program.add("/p", "/w", {.role = Role::DocumentWeb});
    }

    std::optional<bool> editable()
    {
        std::optional<std::optional<bool>> answer;
        findEditable(application, "/p", [&](std::optional<bool> found) { answer = found; });
        program.serve();
        EXPECT_TRUE(answer) << "the search must end";
        return answer.value_or(std::nullopt);
    }

    QString treeText(const QByteArray &focused)
    {
        std::optional<QString> text;
        readTreeText(application, "/p", focused, [&](const QString &read) { text = read; });
        program.serve();
        waitUntil([&] { return text.has_value(); });
        return text.value_or(QStringLiteral("never"));
    }

    std::optional<ObjectRef> focused()
    {
        std::optional<ObjectRef> found;
        findFocused(application, [&](const std::optional<ObjectRef> &element) { found = element; });
        program.serve();
        return found;
    }

    fake::Program program;
    AtspiApplication application{program.busName, 4711, &program};
};

TEST_P(Reading, ATreeWithoutEndIsLeft)
{
    program.add("/a", "/p", {});
    program.elements["/a"].children = {"/p", "/a", "/w", "/gone"};
    EXPECT_EQ(editable(), false);
    if (!GetParam()) {
        program.add("/foreign", "/a", {.role = Role::Entry, .states = with({State::Editable})});
        EXPECT_EQ(editable(), false) << "what lies in another program";
        EXPECT_EQ(treeText({}).trimmed(), QString());
        EXPECT_FALSE(focused());
    }
    EXPECT_LT(program.calls.size(), 80);
}

TEST_P(Reading, APasswordIsNoTextToEdit)
{
    program.add("/secret", "/p",
                {.role = Role::PasswordText, .states = with({State::Editable, State::Focused})});
    EXPECT_EQ(editable(), false);
    program.add("/input", "/p", {.role = Role::Entry, .states = with({State::Editable})});
    EXPECT_EQ(editable(), true);
}

TEST_P(Reading, OfAllInputsOnlyTheFocusedOneIsRead)
{
    const auto add = [this](const char *path, Role role, const char *text,
                            QList<State> states = with({})) {
        program.add(path, "/p",
                    {.role = role, .states = std::move(states), .text = QString::fromUtf8(text)});
    };
    add("/1", Role::Static, "Pay here");
    add("/2", Role::Entry, "4111 1111", with({State::Editable}));
    add("/3", Role::Entry, "what I write", with({State::Editable, State::Focused}));
    add("/4", Role::PasswordText, "hunter2", with({State::Editable}));
    add("/5", Role::Entry, "read only");
    program.add("/6", "/p", {});
    program.add("/7", "/6", {.role = Role::Static, .text = QStringLiteral("below")});
    program.add("/8", "/4", {.role = Role::Static, .text = QStringLiteral("shown")});

    EXPECT_EQ(treeText("/3"), QStringLiteral("Pay here\n\nwhat I write\n\n\nbelow"));
    EXPECT_EQ(treeText({}), QStringLiteral("Pay here\n\n\n\n\nbelow"));

    program.elements["/p"].states = with({State::Editable});
    EXPECT_TRUE(treeText({}).contains(QStringLiteral("4111"))) << "all of an editable document";
    EXPECT_FALSE(treeText("/4").contains(QStringLiteral("hunter2")));
    EXPECT_FALSE(treeText("/4").contains(QStringLiteral("shown")));
}

TEST_P(Reading, TheInnermostElementThatSaysSoHasTheFocus)
{
    EXPECT_FALSE(focused());
    program.add("/tab", "/p", {.role = Role::PageTab, .states = with({State::Focused})});
    program.add("/box", "/p", {});
    program.add("/input", "/box", {.role = Role::Entry, .states = with({State::Focused})});
    program.add("/other", atspi::rootPath, {.role = Role::Frame});
    program.add("/there", "/other", {.role = Role::Entry, .states = with({State::Focused})});
    ASSERT_TRUE(focused());
    EXPECT_EQ(focused()->path, "/input") << "in the window that is active";
}

TEST_P(Reading, AnApplicationThatDoesNotAnswerIsAskedNoMore)
{
    program.isSilent = true;
    ElementFacts facts;
    EXPECT_FALSE(fetchFacts(application, "/p", facts));
    EXPECT_FALSE(application.isAnswering());
    const auto asked = program.calls.size();
    EXPECT_FALSE(fetchFacts(application, "/p", facts));
    platform::AXValue value;
    EditableAnswers answers;
    EXPECT_FALSE(answers.find(application, {program.busName, "/p"}));
    EXPECT_EQ(program.calls.size(), asked);

    program.isSilent = false;
    program.serve(); // what it has been asked before
    EXPECT_TRUE(application.isAnswering());
    EXPECT_TRUE(fetchFacts(application, "/p", facts));
    EXPECT_TRUE(facts.is(Role::DocumentWeb));
    EXPECT_FALSE(fetchFacts(application, "/gone", facts));
    EXPECT_TRUE(application.isAnswering()) << "an error is an answer";
}

TEST_P(Reading, AnAnswerAboutADocumentIsKeptUntilSomethingHappens)
{
    EditableAnswers answers;
    const ObjectRef page{program.busName, "/p"};
    EXPECT_EQ(answers.find(application, page), false);
    program.add("/input", "/p", {.role = Role::Entry, .states = with({State::Editable})});
    const auto asked = program.calls.size();
    EXPECT_EQ(answers.find(application, page), false);
    EXPECT_EQ(program.calls.size(), asked);
    answers.expire(":1.99");
    EXPECT_EQ(answers.find(application, page), false);
    answers.expire(program.busName);
    EXPECT_EQ(answers.find(application, page), true);

    answers.remove(program.busName);
    program.isSilent = true;
    EXPECT_FALSE(answers.find(application, page)) << "nothing is known again";
}

TEST_P(Reading, MoreChildrenThanAWindowShowsAreNotAskedFor)
{
    program.elements["/p"].children.fill("/x", 60'000);
    QList<ObjectRef> children;
    EXPECT_EQ(readChildren(application, "/p", children), platform::AXError::CannotComplete);
    EXPECT_FALSE(program.calls.contains(QStringLiteral("/p GetChildren")));
    program.elements["/p"].children = {"/x", "/null"};
    EXPECT_EQ(readChildren(application, "/p", children), platform::AXError::Success);
    EXPECT_EQ(children, (QList<ObjectRef>{{program.busName, "/x"}}));
}

INSTANTIATE_TEST_SUITE_P(Trees, Reading, testing::Bool(), [](const auto &trees) {
    return trees.param ? "SearchedByTheProgram" : "Walked";
});

} // namespace
