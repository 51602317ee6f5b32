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

constexpr xcb_window_t editor = 1000;
constexpr xcb_window_t other = 2000;

/// The panel has the keyboard of the editor's window.
class Borrowed : public testing::Test
{
protected:
    Borrowed()
    {
        server.addWindow(editor, 10);
        server.addWindow(other, 20);
        server.setActive(editor);
        server.focus = editor;
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
    EXPECT_EQ(server.focus, editor);
    EXPECT_EQ(answers, QList<bool>{true});
    EXPECT_FALSE(loan.isOut());
    giveBack();
    EXPECT_EQ(answers, (QList<bool>{true, true})) << "nothing is left to give back";
    EXPECT_EQ(server.focused, QList<xcb_window_t>{editor});
}

TEST_F(Borrowed, AClickThatEndsTheLoanDecidesWhoHasTheKeyboard)
{
    xcb_timestamp_t click = 5000;
    for (const bool managerIsFirst : {true, false}) {
        click += 1000;
        server.focus = editor;
        loan.take(&panel);
        server.setActive(editor);
        if (managerIsFirst) {
            // Seen by the X server, but not yet by us, at the time of the request.
            const QSignalBlocker late(server);
            server.moveFocus(other, click);
            server.focus = window();
        }
        loan.yieldTo(click);
        giveBack();
        if (managerIsFirst) {
            EXPECT_EQ(server.focus, window())
                << "the request is older than the answer to the click";
            server.focus = other;
        } else {
            EXPECT_EQ(server.focus, editor) << "until the answer comes";
            server.moveFocus(other, click);
        }
        EXPECT_TRUE(waitUntil([this] { return !loan.isOut(); }));
        EXPECT_EQ(server.focus, other);
        EXPECT_TRUE(server.activated.isEmpty()) << "nothing asks for the lender afterwards";
    }
}

TEST_F(Borrowed, APanelThatLeavesGivesItBackByItself)
{
    panel.hide();
    EXPECT_EQ(server.focus, editor);
    EXPECT_FALSE(loan.isOut());
}

TEST_F(Borrowed, TheUsersNextWindowKeepsIt)
{
    server.moveFocus(other);
    EXPECT_FALSE(loan.isOut());
    panel.hide();
    giveBack();
    EXPECT_EQ(answers, QList<bool>{false});
    EXPECT_EQ(server.focus, other);
    EXPECT_TRUE(server.focused.isEmpty() && server.activated.isEmpty());

    server.moveFocus(editor);
    giveBack();
    EXPECT_EQ(answers, (QList<bool>{false, true})) << "the user has gone back";
}

TEST_F(Borrowed, TheUserTakesItWhileItIsBeingGivenBack)
{
    server.setActive(XCB_NONE);
    giveBack();
    EXPECT_TRUE(answers.isEmpty()) << "the window manager has not taken notice";
    EXPECT_TRUE(loan.isOut());
    server.moveFocus(other);
    ASSERT_TRUE(waitUntil([this] { return !answers.isEmpty(); }));
    EXPECT_EQ(answers, QList<bool>{false});
    EXPECT_EQ(server.focus, other);
    EXPECT_TRUE(server.activated.isEmpty());
}

TEST_F(Borrowed, TheWindowManagerIsAskedAgainUntilItAgrees)
{
    server.setActive(XCB_NONE);
    giveBack();
    ASSERT_TRUE(waitUntil([this] { return !server.activated.isEmpty(); }));
    EXPECT_EQ(server.activated.first(), editor);
    server.setActive(editor);
    EXPECT_EQ(answers, QList<bool>{true});
}

TEST_F(Borrowed, AWindowOutsideTheScreenHoldsTheKeyboardForNobody)
{
    constexpr xcb_window_t noWindow = 3000;
    server.addWindow(noWindow, 30, QRect(-100, -100, 10, 10));
    server.moveFocus(noWindow);
    giveBack();
    EXPECT_EQ(server.focus, editor);
    EXPECT_EQ(answers, QList<bool>{true});
}

TEST_F(Borrowed, AWindowInsideTheLenderIsTheLender)
{
    constexpr xcb_window_t inner = 1001;
    server.parents.insert(inner, editor);
    server.moveFocus(inner);
    giveBack();
    EXPECT_EQ(answers, QList<bool>{true});
    EXPECT_EQ(server.focus, inner);
}

TEST_F(Borrowed, ALenderThatIsGoneGetsNothing)
{
    server.destroy(editor);
    giveBack();
    EXPECT_EQ(answers, QList<bool>{false});
}

} // namespace
