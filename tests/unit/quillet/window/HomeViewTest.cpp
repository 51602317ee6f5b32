// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/window/HomeView.h"
#include "quillet/widgets/StyledButton.h"
#include "quillet/widgets/VisualStyle.h"
#include "quillet/window/CardView.h"
#include "quillet/window/WindowNotifications.h"
#include "support/FakePlatform.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace
{

class CountingAccessibility : public fake::Accessibility
{
public:
    int asked = 0;
    bool AXIsProcessTrusted() override
    {
        ++asked;
        return fake::Accessibility::AXIsProcessTrusted();
    }
};

class HomeViewTest : public testing::Test
{
protected:
    CountingAccessibility accessibility;
    WindowNotifications notifications;
    std::unique_ptr<HomeView> home = std::make_unique<HomeView>(accessibility, notifications);

    CardView &card(int index) { return *home->findChildren<CardView *>().at(index); }
    StyledButton &configure() { return *home->findChild<StyledButton *>(); }
    void becomeKey() { Q_EMIT notifications.windowDidBecomeKey(); }
    int askedWhenKey()
    {
        accessibility.asked = 0;
        becomeKey();
        return accessibility.asked;
    }

    void expectBadge(int index, const char *status, const QColor &color)
    {
        EXPECT_EQ(card(index).badge().text(), QString::fromUtf8(status));
        EXPECT_EQ(card(index).badge().color(), color);
    }
};

TEST_F(HomeViewTest, ShowsTheCheckedStatusFromItsFirstAppearanceOn)
{
    expectBadge(0, "Checking...", SystemColor::orange);
    expectBadge(1, "Loading...", SystemColor::orange);
    EXPECT_EQ(accessibility.asked, 0);

    home->show();
    expectBadge(0, "All looks great!", SystemColor::green);
    expectBadge(1, "Beta test", SystemColor::green);
    EXPECT_FALSE(configure().isVisible());
}

TEST_F(HomeViewTest, SaysWhatTheSessionLacksInPlaceOfAllLooksGreat)
{
    QString limitation = QStringLiteral("Native windows are out of reach.");
    home = std::make_unique<HomeView>(accessibility, notifications, 350, nullptr,
                                      [&] { return limitation; });
    home->show();
    EXPECT_NE(card(0).badge().text(), QStringLiteral("All looks great!"));
    EXPECT_EQ(card(0).badge().color(), SystemColor::orange);
    EXPECT_EQ(card(0).text().text(), limitation);
    limitation.clear();
    becomeKey();
    expectBadge(0, "All looks great!", SystemColor::green);
    EXPECT_TRUE(card(0).text().text().startsWith(QStringLiteral("Quillet is ready")));
    home.reset();
}

TEST_F(HomeViewTest, OffersTheWizardWhileNotTrustedAndTurnsGreenAfterwards)
{
    accessibility.trusted = false;
    home->show();
    expectBadge(0, "Not configured", SystemColor::red);
    ASSERT_TRUE(configure().isVisible());

    QSignalSpy showOnboarding(home.get(), &HomeView::showOnboardingChanged);
    QTest::mouseClick(&configure(), Qt::LeftButton);
    QTest::keyClick(&configure(), Qt::Key_Return);
    QTest::keyClick(&configure(), Qt::Key_Space);
    ASSERT_EQ(showOnboarding.count(), 3);
    EXPECT_TRUE(showOnboarding.at(0).at(0).toBool());
    EXPECT_EQ(accessibility.settingsOpened, 0);

    const int withButton = card(0).height();
    accessibility.trusted = true;
    becomeKey();
    expectBadge(0, "All looks great!", SystemColor::green);
    EXPECT_FALSE(configure().isVisible());
    EXPECT_EQ(card(0).height(), withButton - 50 - 12);
}

TEST_F(HomeViewTest, RegistrationsAddUpAndOutliveTheView)
{
    home->show();
    EXPECT_EQ(askedWhenKey(), 1);

    home->hide();
    home->show();
    EXPECT_EQ(askedWhenKey(), 2);

    home.reset();
    EXPECT_EQ(askedWhenKey(), 2);

    home = std::make_unique<HomeView>(accessibility, notifications);
    home->show();
    EXPECT_EQ(askedWhenKey(), 3);
}

TEST_F(HomeViewTest, AWindowThatComesBackIsNoAppearance)
{
    QWidget window;
    home->setParent(&window);
    window.show();
    window.hide();
    window.show();
    EXPECT_EQ(askedWhenKey(), 1);
    home.reset();
}

TEST_F(HomeViewTest, AnyWindowOfOursThatGetsTheKeyboardIsNoticed)
{
    QSignalSpy becameKey(&notifications, &WindowNotifications::windowDidBecomeKey);
    QWidget other;
    other.show();
    other.activateWindow();
    EXPECT_TRUE(becameKey.count() > 0 || becameKey.wait(60000));
}

} // namespace
