// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/x11/X11WindowWatch.h"
#include "FakeWindowServer.h"
#include "platform/linux/x11/FloatingPanels.h"

#include <QWidget>

#include <gtest/gtest.h>

using namespace platform::linux_;
using Change = WindowWatch::Change;

namespace
{

constexpr xcb_window_t client = 1000;
constexpr xcb_window_t frame = 1001;
constexpr xcb_window_t other = 2000;

class Watched : public testing::Test
{
protected:
    Watched()
    {
        server.addWindow(frame, 1, {100, 100, 400, 300});
        server.addWindow(client, 10, {104, 124, 392, 272});
        server.parents.insert(client, frame);
        server.addWindow(other, 20, {700, 100, 200, 200});
        watch.watch(client, [this](Change change) { changes.append(change); });
    }

    QList<Change> take() { return std::exchange(changes, {}); }

    fake::WindowServer server;
    FloatingPanels panels{nullptr};
    X11WindowWatch watch{server, panels, nullptr};
    QList<Change> changes;
};

TEST_F(Watched, TheFrameAroundItTellsWhetherItMoves)
{
    server.move(frame, {100, 100, 400, 300});
    EXPECT_EQ(take(), QList<Change>{Change::Perhaps}) << "raised, not moved";
    server.move(frame, {130, 100, 400, 300});
    EXPECT_EQ(take(), QList<Change>{Change::Moved});
    server.move(other, {130, 100, 200, 200});
    EXPECT_EQ(take(), QList<Change>{Change::Perhaps});

    EXPECT_TRUE(watch.isViewable());
    server.unmap(client);
    EXPECT_EQ(take(), QList<Change>{Change::Moved});
    EXPECT_FALSE(watch.isViewable());

    watch.watch(0, {});
    server.move(frame, {0, 0, 400, 300});
    EXPECT_TRUE(take().isEmpty());
}

TEST_F(Watched, OnlyAnotherApplicationsWindowAboveItCovers)
{
    const QRect corner(470, 120, 30, 30);
    EXPECT_FALSE(watch.isCovered(corner));
    server.move(other, {480, 100, 200, 200});
    EXPECT_TRUE(watch.isCovered(corner));
    server.stack = {other, frame, client};
    EXPECT_FALSE(watch.isCovered(corner)) << "below it";

    QWidget panel;
    panels.prepare(&panel, false);
    panel.show();
    take();
    server.addWindow(xcb_window_t(panel.internalWinId()), 1, {470, 120, 25, 25});
    EXPECT_FALSE(watch.isCovered(corner)) << "a panel of ours";
    server.move(xcb_window_t(panel.internalWinId()), {471, 120, 25, 25});
    EXPECT_TRUE(take().isEmpty());
}

} // namespace
