// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/x11/X11ActiveWindow.h"
#include "FakeWindowServer.h"
#include "platform/linux/x11/FloatingPanels.h"
#include "platform/linux/x11/KeyboardLoan.h"

#include <QWidget>

#include <gtest/gtest.h>

using namespace platform::linux_;

namespace
{

constexpr xcb_window_t editor = 1000;
constexpr xcb_window_t other = 2000;

class Windows : public testing::Test
{
protected:
    Windows()
    {
        server.addWindow(editor, 10);
        server.addWindow(other, 20);
        server.setActive(editor);
    }

    std::uint32_t active()
    {
        const auto window = windows.activeWindow();
        return window ? window->id : 0;
    }

    fake::WindowServer server;
    FloatingPanels panels{nullptr};
    KeyboardLoan loan{server, panels};
    X11ActiveWindow windows{server, panels, loan};
};

TEST_F(Windows, AskingCostsNothingWhileNothingChanges)
{
    EXPECT_EQ(active(), editor);
    EXPECT_EQ(windows.activeWindow()->pids, QList<std::int32_t>{10});
    server.questions = 0;
    for (int tick = 0; tick < 5; ++tick)
        EXPECT_EQ(active(), editor);
    EXPECT_EQ(server.questions, 0);
    server.setActive(other);
    EXPECT_EQ(active(), other);
    EXPECT_EQ(windows.activeWindow()->pids, QList<std::int32_t>{20});
}

TEST_F(Windows, OnlyAWindowOnTheScreenIsInFront)
{
    EXPECT_EQ(active(), editor);
    server.unmap(editor);
    EXPECT_EQ(active(), 0U);

    server.setActive(other);
    EXPECT_EQ(active(), other);
    server.destroy(other); // and the window manager leaves the property as it is
    EXPECT_EQ(active(), 0U);
    EXPECT_TRUE(windows.isAvailable());

    server.setActive(4000); // an id that no window has
    EXPECT_EQ(active(), 0U);
}

TEST_F(Windows, APanelOfOursIsNeverInFront)
{
    QWidget panel;
    panels.prepare(&panel, true);
    panel.show();
    const auto window = xcb_window_t(panel.internalWinId());
    server.addWindow(window, 1);
    server.focus = editor;
    EXPECT_EQ(active(), editor);
    EXPECT_FALSE(windows.isKeyboardLent());

    loan.take(&panel);
    server.setActive(window);
    EXPECT_EQ(active(), editor) << "the window that lent the keyboard";
    EXPECT_TRUE(windows.isKeyboardLent());
    server.unmap(editor);
    EXPECT_EQ(active(), 0U);
    server.setActive(other);
    EXPECT_EQ(active(), other);
}

TEST_F(Windows, AWindowManagerThatDiesLeavesItsPropertiesBehind)
{
    EXPECT_TRUE(windows.isAvailable());
    server.endManager();
    EXPECT_FALSE(windows.isAvailable());
    EXPECT_EQ(active(), 0U);
}

} // namespace
