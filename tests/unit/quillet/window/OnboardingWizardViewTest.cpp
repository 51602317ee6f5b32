#include "quillet/window/OnboardingWizardView.h"
#include "quillet/window/ArtworkView.h"
#include "quillet/window/StyledButton.h"
#include "quillet/window/TextView.h"
#include "quillet/window/TutorialEditor.h"
#include "support/FakePlatform.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
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
            }});
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
        if (step >= 4)
            button().click();
        ASSERT_EQ(wizard->step(), step);
        QCoreApplication::processEvents();
    }

    QRect placeOf(QWidget &widget)
    {
        return QRect(widget.mapTo(wizard.get(), QPoint(0, 0)), widget.size());
    }

    template <typename T> QList<T *> inSight()
    {
        QList<T *> found;
        for (T *widget : wizard->findChildren<T *>())
            if (widget->isVisible())
                found.append(widget);
        return found;
    }

    QStringList texts()
    {
        QStringList found;
        for (const TextView *text : inSight<TextView>())
            found.append(text->text());
        return found;
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

TEST_F(OnboardingWizardViewTest, PagesSayWhatTheyShould)
{
    goTo(1);
    EXPECT_EQ(texts(),
              (QStringList{QStringLiteral("Welcome to Quillet"),
                           QStringLiteral("Set up you Quillet in a few easy steps to start "
                                          "communicating with confidence")}));
    goTo(2);
    EXPECT_EQ(texts(),
              (QStringList{QStringLiteral("Install Quillet"),
                           QStringLiteral("\u2022 Open Accessibility Settings\n"
                                          "\u2022 Toggle Quillet\n\u2022 Come back here")}));
    accessibility.trusted = true;
    tick();
    EXPECT_EQ(texts(),
              (QStringList{QStringLiteral("Quillet is installed! Now you can try it!"),
                           QStringLiteral("Type something below, then try Quillet's features.")}));
    button().click();
    EXPECT_EQ(texts(),
              (QStringList{QStringLiteral("Great job!"),
                           QStringLiteral("Quillet is ready to go. Start communicating with "
                                          "confidence in all your favourite apps!")}));
}

TEST_F(OnboardingWizardViewTest, ContentStandsWhereTheLayoutSays)
{
    for (int step = 1; step <= 4; ++step) {
        wizard = makeWizard();
        accessibility.trusted = false;
        goTo(step);
        EXPECT_EQ(placeOf(button()), QRect(125, 510, 350, 50)) << step;
        int top = 600;
        int bottom = 0;
        QList<QWidget *> contents;
        for (TextView *text : inSight<TextView>())
            contents.append(text);
        for (ArtworkView *picture : inSight<ArtworkView>())
            contents.append(picture);
        for (QWidget *content : contents) {
            EXPECT_TRUE(QRect(40, 48, 520, 450).contains(placeOf(*content))) << step;
            top = qMin(top, placeOf(*content).top());
            bottom = qMax(bottom, placeOf(*content).bottom() + 1);
        }
        if (step == 1 || step == 4) {
            // Equal spacers above and below, and a gap at each end of both but the first.
            EXPECT_NEAR((top - 40) - 15, (510 - bottom) - 30, 1) << step;
        } else {
            EXPECT_EQ(top, 40 + 8 + 15) << step;
        }
        if (step == 2) {
            EXPECT_EQ(placeOf(*inSight<ArtworkView>().first()).size(), QSize(520, 180 + 8));
        }
        if (step == 3) {
            EXPECT_EQ(placeOf(editor()).left(), 40 + 16);
            EXPECT_EQ(editor().size(), QSize(520 - 32, 100));
        }
        if (step == 4) {
            EXPECT_EQ(placeOf(*inSight<ArtworkView>().first()).size(), QSize(144, 142 + 8));
        }
    }
}

TEST_F(OnboardingWizardViewTest, EditorIsAnInputThatAnAssistantFinds)
{
    goTo(3);
    QAccessibleInterface *input = QAccessible::queryAccessibleInterface(&editor());
    ASSERT_TRUE(input);
    EXPECT_EQ(input->role(), QAccessible::EditableText);
    EXPECT_TRUE(input->state().multiLine);
    EXPECT_TRUE(input->state().editable);
    EXPECT_FALSE(input->text(QAccessible::Name).isEmpty());
    ASSERT_TRUE(input->editableTextInterface());
    input->editableTextInterface()->insertText(0, QStringLiteral("日本 👍"));
    EXPECT_EQ(editor().toPlainText(), QStringLiteral("日本 👍"));

    QAccessibleInterface *next = QAccessible::queryAccessibleInterface(&button());
    ASSERT_TRUE(next);
    EXPECT_EQ(next->role(), QAccessible::Button);
    EXPECT_EQ(next->text(QAccessible::Name), QStringLiteral("Next"));
    for (ArtworkView *picture : wizard->findChildren<ArtworkView *>())
        EXPECT_FALSE(picture->accessibleName().isEmpty());
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
