#include "quillet/window/HomeView.h"
#include "quillet/window/CardView.h"
#include "quillet/window/StyledButton.h"
#include "quillet/window/VisualStyle.h"
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

    void expectBadge(int index, const char *status, const QColor &color)
    {
        EXPECT_EQ(card(index).badge().text(), QString::fromUtf8(status));
        EXPECT_EQ(card(index).badge().color(), color);
    }
};

const char kSubtitle[] = "Quillet is ready to be used\nacross all your favourite apps";

TEST_F(HomeViewTest, ShowsTheCheckedStatusFromItsFirstAppearanceOn)
{
    expectBadge(0, "Checking...", SystemColor::orange);
    expectBadge(1, "Loading...", SystemColor::orange);
    EXPECT_EQ(accessibility.asked, 0);

    home->show();
    expectBadge(0, "All looks great!", SystemColor::green);
    expectBadge(1, "Beta test", SystemColor::green);
    EXPECT_FALSE(configure().isVisible());
    EXPECT_EQ(card(0).text().text(), QString::fromUtf8(kSubtitle));
    EXPECT_EQ(card(1).text().text(), QStringLiteral("You have full access to all AI features."));
    EXPECT_EQ(home->cardWidth(), 350);
}

TEST_F(HomeViewTest, OffersTheWizardWhileNotTrustedAndTurnsGreenAfterwards)
{
    accessibility.trusted = false;
    home->show();
    expectBadge(0, "Not configured", SystemColor::red);
    EXPECT_EQ(card(0).text().text(), QString::fromUtf8(kSubtitle));
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
    accessibility.asked = 0;
    becomeKey();
    EXPECT_EQ(accessibility.asked, 1);

    home->hide();
    home->show();
    accessibility.asked = 0;
    becomeKey();
    EXPECT_EQ(accessibility.asked, 2);

    home.reset();
    accessibility.asked = 0;
    becomeKey();
    EXPECT_EQ(accessibility.asked, 2);

    home = std::make_unique<HomeView>(accessibility, notifications);
    home->show();
    accessibility.asked = 0;
    becomeKey();
    EXPECT_EQ(accessibility.asked, 3);
}

TEST_F(HomeViewTest, AWindowThatComesBackIsNoAppearance)
{
    QWidget window;
    home->setParent(&window);
    window.show();
    window.hide();
    window.show();
    accessibility.asked = 0;
    becomeKey();
    EXPECT_EQ(accessibility.asked, 1);
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

TEST_F(HomeViewTest, StandsWhereTheLayoutSays)
{
    accessibility.trusted = false;
    home->show();
    QCoreApplication::processEvents();
    EXPECT_EQ(home->size(), QSize(600, 600));
    // The logo with its padding ends at 84; two gaps and a spacer of 20 each follow.
    EXPECT_EQ(card(0).pos(), QPoint(125, 144));
    EXPECT_EQ(card(0).width(), 350);
    EXPECT_EQ(card(1).pos(), QPoint(125, card(0).geometry().bottom() + 1 + 20));
    EXPECT_EQ(configure().size(), QSize(250, 50));

    // The panel is as wide as its content: 250 and twice the padding.
    const QImage image = home->grab().toImage();
    const int y = card(0).geometry().center().y();
    EXPECT_EQ(image.pixelColor(157, y), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(159, y), colorFromHex(QStringLiteral("#EEF0E6")));
    EXPECT_EQ(image.pixelColor(162, y), colorFromHex(QStringLiteral("#F9F9F9")));
    EXPECT_EQ(image.pixelColor(440, y), colorFromHex(QStringLiteral("#EEF0E6")));
}

} // namespace
