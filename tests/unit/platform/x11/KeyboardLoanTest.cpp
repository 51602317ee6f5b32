// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/x11/KeyboardLoan.h"
#include "FakeWindowServer.h"
#include "platform/linux/x11/FloatingPanels.h"
#include "support/WaitUntil.h"

#include <QWidget>

#include <gtest/gtest.h>

using namespace platform::linux_;

namespace
{

constexpr xcb_window_t Editor = 1000;
constexpr xcb_window_t Other = 2000;

/// The panel has the keyboard of the editor's window.
class Borrowed : public testing::Test
{
protected:
    Borrowed()
    {
        server.addWindow(Editor, 10);
        server.addWindow(Other, 20);
        server.setActive(Editor);
        server.focus = Editor;
        panels.prepare(&panel, true);
        panel.show();
        server.addWindow(window(), 1);
        loan.take(&panel);
        server.focused.clear();
    }

    xcb_window_t window() const { return xcb_window_t(panel.internalWinId()); }
    void giveBack()
    {
        loan.giveBack([this](bool isBack) { answers.append(isBack); });
    }

    fake::WindowServer server;
    FloatingPanels panels{nullptr};
    KeyboardLoan loan{server, panels};
    QWidget panel;
    QList<bool> answers;
};

TEST_F(Borrowed, TheLenderGetsTheKeyboardBack)
{
    EXPECT_EQ(server.focus, window());
    EXPECT_TRUE(loan.isOut());
    giveBack();
    EXPECT_EQ(server.focus, Editor);
    EXPECT_EQ(answers, QList<bool>{true});
    EXPECT_FALSE(loan.isOut());
    giveBack();
    EXPECT_EQ(answers, (QList<bool>{true, true})) << "nothing is left to give back";
    EXPECT_EQ(server.focused, QList<xcb_window_t>{Editor});
}

TEST_F(Borrowed, APanelThatLeavesGivesItBackByItself)
{
    panel.hide();
    EXPECT_EQ(server.focus, Editor);
    EXPECT_FALSE(loan.isOut());
}

TEST_F(Borrowed, TheUsersNextWindowKeepsIt)
{
    server.moveFocus(Other);
    EXPECT_FALSE(loan.isOut());
    panel.hide();
    giveBack();
    EXPECT_EQ(answers, QList<bool>{false});
    EXPECT_EQ(server.focus, Other);
    EXPECT_TRUE(server.focused.isEmpty() && server.activated.isEmpty());

    server.moveFocus(Editor);
    giveBack();
    EXPECT_EQ(answers, (QList<bool>{false, true})) << "the user has gone back";
}

TEST_F(Borrowed, TheUserTakesItWhileItIsBeingGivenBack)
{
    server.setActive(XCB_NONE);
    giveBack();
    EXPECT_TRUE(answers.isEmpty()) << "the window manager has not taken notice";
    EXPECT_TRUE(loan.isOut());
    server.moveFocus(Other);
    ASSERT_TRUE(waitUntil([this] { return !answers.isEmpty(); }));
    EXPECT_EQ(answers, QList<bool>{false});
    EXPECT_EQ(server.focus, Other);
    EXPECT_TRUE(server.activated.isEmpty());
}

TEST_F(Borrowed, TheWindowManagerIsAskedAgainUntilItAgrees)
{
    server.setActive(XCB_NONE);
    giveBack();
    ASSERT_TRUE(waitUntil([this] { return !server.activated.isEmpty(); }));
    EXPECT_EQ(server.activated.first(), Editor);
    server.setActive(Editor);
    EXPECT_EQ(answers, QList<bool>{true});
}

TEST_F(Borrowed, AWindowOutsideTheScreenHoldsTheKeyboardForNobody)
{
    constexpr xcb_window_t NoWindow = 3000;
    server.addWindow(NoWindow, 30, QRect(-100, -100, 10, 10));
    server.moveFocus(NoWindow);
    giveBack();
    EXPECT_EQ(server.focus, Editor);
    EXPECT_EQ(answers, QList<bool>{true});
}

TEST_F(Borrowed, AWindowInsideTheLenderIsTheLender)
{
    constexpr xcb_window_t Inner = 1001;
    server.parents.insert(Inner, Editor);
    server.moveFocus(Inner);
    giveBack();
    EXPECT_EQ(answers, QList<bool>{true});
    EXPECT_EQ(server.focus, Inner);
}

TEST_F(Borrowed, ALenderThatIsGoneGetsNothing)
{
    server.destroy(Editor);
    giveBack();
    EXPECT_EQ(answers, QList<bool>{false});
}

} // namespace
