// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/atspi/AtspiBus.h"

#include "support/FakeDesktop.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

using namespace platform::linux_;

namespace
{

constexpr char service[] = "org.a11y.Bus";
constexpr char registry[] = "org.a11y.atspi.Registry";
const QStringList registrations = {
    QStringLiteral("RegisterEvent object:state-changed:focused"),
    QStringLiteral("RegisterEvent window:activate"),
    QStringLiteral("RegisterEvent window:deactivate"),
    QStringLiteral("RegisterEvent document:load-complete"),
};

/// Like waitUntil(), and connections that were given up are closed, as in the program's event loop.
template <typename Condition> bool eventually(Condition &&condition)
{
    return waitUntil([&] {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return condition();
    });
}

class AtspiBusTest : public testing::Test
{
protected:
    AtspiBusTest()
    {
        desktop.take(service);
        desktop.take(registry);
        QObject::connect(&bus, &AtspiBus::focusChanged, &bus,
                         [this](const ObjectRef &element, bool has) {
                             focused.append({element, has});
                         });
        QObject::connect(&bus, &AtspiBus::applicationLeft, &bus,
                         [this](const QByteArray &name) { left.append(name); });
        QObject::connect(&bus, &AtspiBus::eventsResumed, &bus, [this] { ++resumptions; });
    }

    void listen()
    {
        bus.setListening(true);
        bus.waitUntilSettled(QDeadlineTimer(60'000));
        ASSERT_TRUE(bus.isConnected());
        ASSERT_TRUE(hasRegistered(1));
    }

    /// Whether the listeners have been registered that many times in all.
    bool hasRegistered(int times)
    {
        return eventually([&] {
            return desktop.log().filter(QStringLiteral("RegisterEvent")).size() >=
                   times * registrations.size();
        });
    }

    fake::Desktop desktop;
    QList<std::pair<ObjectRef, bool>> focused;
    QList<QByteArray> left;
    int resumptions = 0;
    AtspiBus bus{desktop.address()};
};

} // namespace

TEST_F(AtspiBusTest, KnowsTheServiceAndItsSwitch)
{
    bus.waitUntilSettled(QDeadlineTimer(60'000));
    EXPECT_EQ(bus.service(), AtspiBus::Service::Present);
    EXPECT_FALSE(bus.isEnabled());
    EXPECT_FALSE(bus.isConnected()) << "nothing is listened to unasked";
    bus.setEnabled(true);
    EXPECT_TRUE(eventually([this] { return bus.isEnabled(); }));
    desktop.turn(false);
    EXPECT_TRUE(eventually([this] { return !bus.isEnabled(); }));

    desktop.release(service);
    EXPECT_TRUE(eventually([this] { return bus.service() == AtspiBus::Service::Missing; }));
    bus.setListening(true);
    desktop.turn(true);
    desktop.take(service);
    EXPECT_TRUE(eventually([this] { return bus.isConnected(); })) << "it comes late";
    EXPECT_EQ(bus.service(), AtspiBus::Service::Present);
}

TEST_F(AtspiBusTest, HearsOfOtherProgramsWhileItListens)
{
    listen();
    EXPECT_EQ(desktop.log(), registrations);
    EXPECT_EQ(bus.applications(desktop.programPid()).size(), 1);
    EXPECT_TRUE(bus.application(desktop.programName()));
    EXPECT_TRUE(bus.applications(getpid()).isEmpty()) << "we are never asked over the bus";

    desktop.reportFocus();
    ASSERT_TRUE(eventually([this] { return !focused.isEmpty(); }));
    EXPECT_EQ(focused.first(), std::pair(ObjectRef{desktop.programName(), "/input"}, true));

    for (int times : {2, 3}) {
        desktop.release(registry);
        desktop.take(registry);
        EXPECT_TRUE(hasRegistered(times)) << "a new registry knows nothing of us";
    }

    bus.setListening(false);
    EXPECT_FALSE(bus.isConnected());
    EXPECT_TRUE(left.contains(desktop.programName()));
    EXPECT_TRUE(eventually([this] {
        return desktop.log().filter(QStringLiteral("left :")).size() == 3;
    })) << "all that is left is the connection to the session";
}

// The listener leaves, then the registry is asked, then the program: only then may keys come.
TEST_F(AtspiBusTest, APauseIsKnownToTheProgramBeforeKeysCome)
{
    listen();
    QThread::msleep(600); // listening is not ended right after its begin
    int known = 0;
    bus.pauseEvents(desktop.programName(), [&] { ++known; });
    bus.pauseEvents(desktop.programName(), [&] { ++known; });
    EXPECT_EQ(known, 0);
    ASSERT_TRUE(eventually([&] { return known == 2; }));
    const QStringList log = desktop.log().mid(registrations.size());
    ASSERT_EQ(log.size(), 4);
    EXPECT_TRUE(log[0].startsWith(QStringLiteral("left :")));
    EXPECT_EQ(log[1], QStringLiteral("GetRegisteredEvents"));
    EXPECT_EQ(log[2], QStringLiteral("GetState"));

    desktop.reportFocus();
    bus.resumeEvents();
    bus.resumeEvents();
    ASSERT_TRUE(eventually([this] { return resumptions > 0; }));
    EXPECT_TRUE(hasRegistered(2));
    EXPECT_TRUE(focused.isEmpty()) << "nothing was heard meanwhile";
    desktop.reportFocus();
    EXPECT_TRUE(eventually([this] { return !focused.isEmpty(); }));
}

TEST_F(AtspiBusTest, ComesBackWithTheBus)
{
    listen();
    desktop.stop();
    EXPECT_TRUE(eventually([this] { return !bus.isConnected(); }));
    EXPECT_EQ(bus.service(), AtspiBus::Service::Missing);
    EXPECT_EQ(left.size(), 1);
    desktop.start();
    desktop.take(service);
    desktop.take(registry);
    EXPECT_TRUE(eventually([this] { return bus.isConnected(); }));
    EXPECT_TRUE(hasRegistered(1));
}

TEST_F(AtspiBusTest, ComesBackWhenOnlyTheAccessibilityBusHasGone)
{
    fake::Desktop accessibility;
    desktop.setBusAddress(accessibility.address());
    bus.setListening(true);
    EXPECT_TRUE(eventually([this] { return bus.isConnected(); }));
    accessibility.stop();
    EXPECT_TRUE(eventually([this] { return !bus.isConnected(); }));
    accessibility.start();
    EXPECT_TRUE(eventually([this] { return bus.isConnected(); }));
}
