// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/window/OnboardingWizardView.h"
#include "quillet/widgets/StyledButton.h"
#include "quillet/window/TutorialEditor.h"
#include "support/FakePlatform.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <memory>

namespace
{

const QString kSeen = QStringLiteral("onboardingSeen");

class OnboardingWizardViewTest : public testing::Test
{
protected:
    QTemporaryDir folder;
    QSettings defaults{folder.filePath(QStringLiteral("defaults.ini")), QSettings::IniFormat};
    fake::Accessibility accessibility;
    int observerTouched = 0;
    int broughtToFront = 0;
    QString limitation;
    QStringList events;
    bool seenWhenTracked = false;
    std::unique_ptr<OnboardingWizardView> wizard = makeWizard();

    OnboardingWizardViewTest() { accessibility.trusted = false; }

    std::unique_ptr<OnboardingWizardView> makeWizard()
    {
        return std::make_unique<OnboardingWizardView>(OnboardingWizardView::Collaborators{
            accessibility, defaults, [this] { ++observerTouched; },
            [this](const QString &event) {
                events.append(event);
                seenWhenTracked = defaults.value(kSeen).toBool();
            },
            [this] { ++broughtToFront; }, [this] { return limitation; }});
    }

    StyledButton &button() { return *wizard->findChild<StyledButton *>(); }
    TutorialEditor &editor() { return *wizard->findChild<TutorialEditor *>(); }
    QTimer &timer() { return *wizard->findChild<QTimer *>(QString(), Qt::FindDirectChildrenOnly); }
    void tick() { QMetaObject::invokeMethod(&timer(), "timeout"); }

    void goTo(int step)
    {
        wizard->show();
        if (step >= 2)
            button().click();
        if (step >= 3) {
            accessibility.trusted = true;
            tick();
        }
        ASSERT_EQ(wizard->step(), step);
        QCoreApplication::processEvents();
    }

    QRect placeOf(QWidget &widget)
    {
        return QRect(widget.mapTo(wizard.get(), QPoint(0, 0)), widget.size());
    }
};

TEST_F(OnboardingWizardViewTest, IsSeenAndReportedWhenItAppears)
{
    EXPECT_FALSE(defaults.contains(kSeen));
    wizard->show();
    EXPECT_EQ(wizard->step(), 1);
    EXPECT_TRUE(defaults.value(kSeen).toBool());
    EXPECT_EQ(events, QStringList{QStringLiteral("WelcomeScreen")});
    EXPECT_TRUE(seenWhenTracked);
    EXPECT_EQ(observerTouched, 0);
    EXPECT_FALSE(timer().isActive());

    wizard = makeWizard();
    wizard->show();
    EXPECT_EQ(wizard->step(), 1);
    EXPECT_EQ(events.size(), 2);
}

TEST_F(OnboardingWizardViewTest, WaitsForThePermissionAndThenGoesOnByItself)
{
    goTo(2);
    EXPECT_TRUE(timer().isActive());
    EXPECT_EQ(timer().interval(), 500);
    EXPECT_FALSE(timer().isSingleShot());
    EXPECT_EQ(button().text(), QStringLiteral("Open Accessibility Settings"));

    QTest::mouseClick(&button(), Qt::LeftButton);
    QTest::keyClick(&button(), Qt::Key_Space);
    EXPECT_EQ(accessibility.settingsOpened, 2);
    tick();
    EXPECT_EQ(wizard->step(), 2);
    EXPECT_FALSE(wizard->hasAccessibilityPermission());
    EXPECT_TRUE(timer().isActive());

    accessibility.trusted = true;
    EXPECT_EQ(wizard->step(), 2);
    while (wizard->step() == 2)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(wizard->step(), 3);
    EXPECT_TRUE(wizard->hasAccessibilityPermission());
    EXPECT_FALSE(timer().isActive());
    EXPECT_EQ(broughtToFront, 1) << "the permission was given in another window";
    EXPECT_GT(observerTouched, 0);
    EXPECT_EQ(events.size(), 1);
}

TEST_F(OnboardingWizardViewTest, PollsAgainWhenItReappearsOnThePermissionPage)
{
    goTo(2);
    timer().stop();
    wizard->hide();
    wizard->show();
    EXPECT_TRUE(timer().isActive());
    EXPECT_EQ(events.size(), 1);
    wizard->hide();
    EXPECT_TRUE(timer().isActive()) << "only leaving the page ends it";
}

TEST_F(OnboardingWizardViewTest, KeyboardAloneGoesFromStartToDone)
{
    QSignalSpy showOnboarding(wizard.get(), &OnboardingWizardView::showOnboardingChanged);
    wizard->show();
    EXPECT_EQ(wizard->focusWidget(), &button());
    QTest::keyClick(&button(), Qt::Key_Return);
    EXPECT_EQ(wizard->step(), 2);
    accessibility.trusted = true;
    tick();
    EXPECT_EQ(wizard->focusWidget(), &editor());
    QTest::keyClicks(&editor(), QStringLiteral("a try"));
    QTest::keyClick(&editor(), Qt::Key_Return);
    EXPECT_EQ(editor().toPlainText(), QStringLiteral("a try\n"));
    EXPECT_EQ(wizard->step(), 3);
    QTest::keyClick(&editor(), Qt::Key_Tab);
    EXPECT_EQ(wizard->focusWidget(), &button());
    QTest::keyClick(&button(), Qt::Key_Enter);
    EXPECT_EQ(wizard->step(), 4);
    EXPECT_EQ(button().text(), QStringLiteral("Done"));
    EXPECT_EQ(showOnboarding.count(), 0);
    QTest::keyClick(&button(), Qt::Key_Return);
    ASSERT_EQ(showOnboarding.count(), 1);
    EXPECT_FALSE(showOnboarding.at(0).at(0).toBool());
}

TEST_F(OnboardingWizardViewTest, SaysInTheTutorialWhatTheSessionLacks)
{
    limitation = QStringLiteral("Native windows are out of reach.");
    const auto isSaid = [this] {
        for (const QLabel *label : wizard->findChildren<QLabel *>())
            if (label->text() == limitation && label->isVisible())
                return true;
        return false;
    };
    goTo(2);
    EXPECT_FALSE(isSaid());
    accessibility.trusted = true;
    tick();
    EXPECT_TRUE(isSaid());
    button().click();
    EXPECT_FALSE(isSaid());
}

TEST_F(OnboardingWizardViewTest, LooksTheSameUnderADarkDesktop)
{
    goTo(3);
    editor().setPlainText(QStringLiteral("some text"));
    editor().clearFocus();
    const QImage light = wizard->grab().toImage();
    const QPalette before = QApplication::palette();
    QPalette dark(QColor(40, 40, 40));
    QApplication::setPalette(dark);
    wizard = makeWizard();
    accessibility.trusted = false;
    goTo(3);
    editor().setPlainText(QStringLiteral("some text"));
    editor().clearFocus();
    const QImage underDark = wizard->grab().toImage();
    QApplication::setPalette(before);
    EXPECT_EQ(underDark, light);
    EXPECT_EQ(underDark.pixelColor(5, 5), QColor(Qt::white));
    EXPECT_EQ(underDark.pixelColor(placeOf(editor()).center()), QColor(Qt::white));
}

} // namespace
