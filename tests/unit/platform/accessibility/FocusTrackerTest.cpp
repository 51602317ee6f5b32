// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/focus/FocusTracker.h"
#include "support/FakeProgram.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>
#include <map>
#include <unistd.h>

using namespace platform::linux_;
using atspi::Role;
using atspi::State;
using Kind = FocusTracker::Kind;

namespace
{

struct FakeWindows : ActiveWindow {
    std::optional<Window> active;
    bool available = true;

    bool isAvailable() override { return available; }
    std::optional<Window> activeWindow() override { return active; }
    std::optional<platform::linux_::WindowPlace> geometry(std::uint32_t) override { return {}; }
};

/// A program with a window "/w", in which "/a" and "/b" are inputs.
struct Running {
    fake::Program program;
    AtspiApplication application;

    Running(const QByteArray &busName, qint32 pid)
        : application(busName, pid, &program)
    {
        program.busName = busName;
        program.elements[atspi::rootPath] = {};
        program.add("/w", atspi::rootPath,
                    {.role = Role::Frame, .states = {State::Active, State::Showing}});
        for (const char *path : {"/a", "/b"})
            program.add(path, "/w", {.role = Role::Text, .states = {State::Editable}});
    }

    void focus(const QByteArray &path)
    {
        for (const char *each : {"/a", "/b"})
            program.elements[each].states = {State::Editable, State::Showing, State::Visible};
        if (!path.isEmpty())
            program.elements[path].states.append(State::Focused);
    }
    ObjectRef ref(const QByteArray &path) const { return {program.busName, path}; }
};

struct FakeApplications : Applications {
    QList<Running *> running;

    bool isConnected() const override { return true; }
    void waitUntilSettled(QDeadlineTimer) override {}
    void catchUp() override {}
    AtspiApplication *application(const QByteArray &busName) override
    {
        for (Running *each : running) {
            if (each->program.busName == busName)
                return &each->application;
        }
        return nullptr;
    }
    QList<AtspiApplication *> applications(qint32 pid) override
    {
        QList<AtspiApplication *> found;
        for (Running *each : running) {
            if (each->application.pid() == pid)
                found.append(&each->application);
        }
        return found;
    }
};

class Tracking : public testing::Test
{
protected:
    Tracking()
    {
        applications.running = {&editor, &liar};
        windows.active = ActiveWindow::Window{1, {100}};
    }

    Running editor{":1.1", 100};
    Running liar{":1.2", 200};
    FakeApplications applications;
    FakeWindows windows;
    FocusTracker tracker{applications, windows};
};

TEST_F(Tracking, TheCurrentItemOfAListCountsOnlyWhereTheListHasTheFocus)
{
    editor.program.toolkit = "Qt";
    editor.focus("/a");
    editor.program.add("/list", "/w", {.role = Role::List});
    editor.program.add("/item", "/list",
                       {.role = Role::ListItem, .states = {State::Focused, State::Showing}});
    Q_EMIT applications.focusChanged(editor.ref("/a"), true);
    tracker.current();
    editor.program.serve(); // the toolkit
    Q_EMIT applications.focusChanged(editor.ref("/item"), true);
    EXPECT_EQ(tracker.current().element, editor.ref("/a"));

    editor.focus({});
    editor.program.elements["/list"].states.append(State::Focused);
    Q_EMIT applications.focusChanged(editor.ref("/item"), true);
    EXPECT_EQ(tracker.current().element, editor.ref("/item"));

    // No text was reported before, and what the text lies in passes the focus on to it: the search
    // does not fall for the claim either.
    editor.focus("/b");
    editor.program.elements["/list"].states.removeLast();
    editor.program.elements["/w"].children.prepend("/around");
    editor.program.elements["/around"] = {.role = Role::Filler, .states = {State::Focused}};
    Q_EMIT applications.focusChanged(editor.ref("/item"), false);
    Q_EMIT applications.focusChanged(editor.ref("/a"), false);
    EXPECT_EQ(tracker.current().element, editor.ref("/b"));
}

TEST_F(Tracking, TheWatchedElementIsAskedForItsPlaceWithItsStates)
{
    editor.focus("/a");
    editor.program.elements["/a"].extents = QRect(10, 10, 100, 100);
    Q_EMIT applications.focusChanged(editor.ref("/a"), true);
    ASSERT_EQ(tracker.current().element, editor.ref("/a"));
    int changes = 0;
    QObject::connect(&tracker, &FocusTracker::extentsChanged, &tracker, [&] { ++changes; });
    const auto tick = [this] {
        QThread::msleep(210); // the states are believed for that long
        tracker.current();
        editor.program.serve();
    };
    tracker.watchExtents(editor.ref("/a"));
    tick();
    tick();
    EXPECT_EQ(changes, 0);
    editor.program.elements["/a"].extents.moveTop(40);
    tick();
    EXPECT_EQ(changes, 1);
    tracker.watchExtents({});
    editor.program.calls.clear();
    tick();
    EXPECT_FALSE(editor.program.calls.contains(QStringLiteral("/a GetExtents")));
}

TEST_F(Tracking, AFocusThatTwoProgramsClaimIsWhereTheActiveWindowIs)
{
    editor.focus("/a");
    liar.focus("/b");
    Q_EMIT applications.focusChanged(editor.ref("/a"), true);
    Q_EMIT applications.focusChanged(liar.ref("/b"), true);
    EXPECT_EQ(tracker.current().element, editor.ref("/a"));
    EXPECT_TRUE(tracker.hasFocus(editor.ref("/a")));
    EXPECT_FALSE(tracker.hasFocus(liar.ref("/b")));
    EXPECT_FALSE(tracker.hasFocus(editor.ref("/b")));
    EXPECT_FALSE(tracker.windowOf(liar.program.busName));
    EXPECT_EQ(tracker.windowOf(editor.program.busName), 1U);

    windows.active = ActiveWindow::Window{5, {100}};
    EXPECT_FALSE(tracker.hasFocus(editor.ref("/a"))) << "not in another window of the program";
    windows.active = ActiveWindow::Window{2, {200}};
    EXPECT_FALSE(tracker.hasFocus(editor.ref("/a"))) << "at once, before the next look";
    EXPECT_EQ(tracker.current().element, liar.ref("/b"));

    windows.active = ActiveWindow::Window{3, {}};
    EXPECT_EQ(tracker.current().kind, Kind::Application) << "a window without a process";
    windows.active.reset();
    EXPECT_EQ(tracker.current().kind, Kind::Nothing);
    windows.active = ActiveWindow::Window{4, {getpid()}};
    EXPECT_EQ(tracker.current().kind, Kind::Own);
}

TEST_F(Tracking, OfSeveralConnectionsOfAProcessTheOneThatReportsIsAsked)
{
    Running first{":1.3", 100};
    Running last{":1.4", 100};
    applications.running = {&first, &editor, &last};
    editor.focus("/a");
    Q_EMIT applications.focusChanged(editor.ref("/a"), true);
    EXPECT_EQ(tracker.current().element, editor.ref("/a"));
}

TEST_F(Tracking, AProgramWithoutAFocusedElementIsNotSearchedAllTheTime)
{
    EXPECT_EQ(tracker.current().kind, Kind::Application);
    const auto asked = editor.program.calls.size();
    for (int tick = 0; tick < 20; ++tick)
        tracker.current();
    EXPECT_LT(editor.program.calls.size(), 3 * asked);
    editor.focus("/b");
    EXPECT_TRUE(waitUntil([this] { return tracker.current().element == editor.ref("/b"); }));
}

TEST_F(Tracking, AClaimThatTheElementDoesNotConfirmIsNotBelieved)
{
    editor.focus("/b");
    Q_EMIT applications.focusChanged(editor.ref("/a"), true);
    EXPECT_EQ(tracker.current().element, editor.ref("/b"));
    EXPECT_TRUE(tracker.reportsFocus(editor.ref("/b")));

    Q_EMIT applications.focusChanged(editor.ref("/gone"), true);
    EXPECT_EQ(tracker.current().element, editor.ref("/b"));
}

TEST_F(Tracking, WhatIsKnownIsNotAskedAgain)
{
    editor.focus("/a");
    Q_EMIT applications.focusChanged(editor.ref("/a"), true);
    EXPECT_EQ(tracker.current().element, editor.ref("/a"));
    const auto asked = editor.program.calls.size();
    for (int tick = 0; tick < 5; ++tick)
        EXPECT_EQ(tracker.current().element, editor.ref("/a"));
    EXPECT_EQ(editor.program.calls.size(), asked);

    Q_EMIT applications.focusChanged(editor.ref("/a"), false);
    EXPECT_FALSE(tracker.hasFocus(editor.ref("/a")));
    editor.focus("/b");
    EXPECT_EQ(tracker.current().element, editor.ref("/b")) << "by asking";
}

TEST_F(Tracking, AProgramThatAnswersLateIsNotWaitedForTwice)
{
    editor.focus("/a");
    liar.focus("/b");
    windows.active = ActiveWindow::Window{2, {200}};
    EXPECT_EQ(tracker.current().element, liar.ref("/b"));

    // The button must not stay over a window whose program does not answer.
    windows.active = ActiveWindow::Window{1, {100}};
    editor.program.isSilent = true;
    Q_EMIT applications.focusChanged(editor.ref("/a"), true);
    EXPECT_EQ(tracker.current().kind, Kind::Application);
    const auto asked = editor.program.calls.size();
    EXPECT_EQ(tracker.current().kind, Kind::Waiting);
    EXPECT_EQ(editor.program.calls.size(), asked);

    editor.program.isSilent = false;
    editor.program.serve();
    EXPECT_EQ(tracker.current().element, editor.ref("/a"));
}

TEST_F(Tracking, AProgramThatHasLeftHasNoFocus)
{
    editor.focus("/a");
    Q_EMIT applications.focusChanged(editor.ref("/a"), true);
    EXPECT_EQ(tracker.current().kind, Kind::Element);
    applications.running.removeFirst();
    Q_EMIT applications.applicationLeft(editor.program.busName);
    EXPECT_FALSE(tracker.hasFocus(editor.ref("/a")));
    EXPECT_EQ(tracker.current().kind, Kind::Application);
}

TEST_F(Tracking, WithoutAWindowManagerTheLastReporterCounts)
{
    windows.available = false;
    editor.focus("/a");
    liar.focus("/b");
    EXPECT_EQ(tracker.current().kind, Kind::Nothing);
    Q_EMIT applications.focusChanged(editor.ref("/a"), true);
    EXPECT_EQ(tracker.current().element, editor.ref("/a"));
    Q_EMIT applications.focusChanged(liar.ref("/b"), true);
    EXPECT_EQ(tracker.current().element, liar.ref("/b"));
    EXPECT_FALSE(tracker.hasFocus(editor.ref("/a")));
}

TEST_F(Tracking, TheInputIsAllOfAnEditableRegion)
{
    editor.program.elements["/a"].attributes = {{"tag", "div"}};
    editor.program.elements["/a"].states = {State::Editable, State::Focusable};
    editor.program.add("/line", "/a",
                       {.role = Role::Paragraph,
                        .states = {State::Editable, State::Focused},
                        .attributes = {{"tag", "p"}}});
    Q_EMIT applications.focusChanged(editor.ref("/line"), true);
    EXPECT_EQ(tracker.current().element, editor.ref("/a"));
    EXPECT_TRUE(tracker.hasFocus(editor.ref("/a")));
    EXPECT_TRUE(tracker.hasFocus(editor.ref("/line")));
}

TEST_F(Tracking, AttributesThatComeLaterDecideWhatTheInputIs)
{
    fake::Program::Element &input = editor.program.elements["/a"];
    input.role = Role::Entry;
    input.states = {State::Editable, State::SingleLine, State::Focusable, State::Focused};
    Q_EMIT applications.focusChanged(editor.ref("/a"), true);
    EXPECT_EQ(axRole(tracker.current().facts), QStringLiteral("AXTextField"));
    input.attributes = {{"tag", "div"}};
    EXPECT_TRUE(waitUntil([&] {
        editor.program.serve();
        return axRole(tracker.current().facts) == QStringLiteral("AXTextArea");
    }));
}

} // namespace
