// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/window/OnboardingWizardView.h"

#include "quillet/widgets/ArtworkView.h"
#include "quillet/widgets/Fonts.h"
#include "quillet/widgets/Localisation.h"
#include "quillet/widgets/StyledButton.h"
#include "quillet/widgets/TextView.h"
#include "quillet/widgets/VerticalStack.h"
#include "quillet/widgets/WindowMetrics.h"
#include "quillet/window/TutorialEditor.h"

#include <QSettings>

#include <chrono>

using namespace std::chrono_literals;

namespace
{

constexpr auto kPermissionCheckInterval = 500ms;

TextView *makeText(const QString &text, const QString &font, int pointSize,
                   Qt::Alignment alignment = Qt::AlignHCenter)
{
    return new TextView(text, customFont(font, pointSize), withOpacity(SystemColor::black, 0.85),
                        alignment);
}

TextView *makeTitle(const QString &text, int pointSize)
{
    return makeText(text, QStringLiteral("Manrope-Bold"), pointSize);
}

/// A text field's default padding is around it, not in it.
QWidget *padded(QWidget *widget)
{
    auto *frame = new QWidget;
    auto *stack = new VerticalStack(VerticalStack::Alignment::Center, 0, frame);
    stack->setContentsMargins(kDefaultPadding, 0, kDefaultPadding, 0);
    stack->addWidget(widget);
    frame->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    return frame;
}

/// A page that takes all the room there is, with its content at the top left.
QWidget *makeWidePage(VerticalStack *&stack)
{
    auto *page = new QWidget;
    page->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    stack = new VerticalStack(VerticalStack::Alignment::Leading, 16, page);
    return page;
}

} // namespace

OnboardingWizardView::OnboardingWizardView(const Collaborators &collaborators, QWidget *parent)
    : AppearingView(parent)
    , m_collaborators(collaborators)
    , m_permissionCheckTimer(this)
    , m_button(new StyledButton(std::make_unique<PurpleButtonStyle>(), ButtonLabel{}))
{
    m_permissionCheckTimer.setInterval(kPermissionCheckInterval);
    connect(&m_permissionCheckTimer, &QTimer::timeout, this, &OnboardingWizardView::pollPermission);
    connect(m_button, &QAbstractButton::clicked, this, &OnboardingWizardView::buttonClicked);

    auto *stack = new VerticalStack(VerticalStack::Alignment::Center, 15, this);
    stack->setContentsMargins(40, 40, 40, 40);
    stack->addSpacer();
    m_pages = {makeWelcomePage(), makeInstallPage(), makeTutorialPage(), makeDonePage()};
    for (QWidget *page : m_pages)
        stack->addWidget(page);
    stack->addSpacer();
    stack->addWidget(m_button);
    showStep();
}

void OnboardingWizardView::onAppear()
{
    // Set on appearance, not by "Done": a user who leaves in the middle has seen the wizard.
    m_collaborators.defaults.setValue(QStringLiteral("onboardingSeen"), true);
    m_collaborators.accessibility.AXIsProcessTrusted();
    if (m_step == 2)
        checkAccessibilityPermission();
    if (m_step == 1)
        m_collaborators.track(QStringLiteral("WelcomeScreen"));
    showStep();
}

void OnboardingWizardView::setStep(int step)
{
    m_step = step;
    showStep();
    switch (step) {
    case 2:
        checkAccessibilityPermission();
        break;
    case 3:
        // The button has to be live while the user tries the editor.
        m_collaborators.createObserver();
        break;
    default:
        m_permissionCheckTimer.stop();
    }
}

void OnboardingWizardView::showStep()
{
    for (size_t i = 0; i < m_pages.size(); ++i)
        m_pages[i]->setVisible(int(i) + 1 == m_step);
    m_limitation->setText(m_step == 3 ? m_collaborators.limitationOfSession() : QString());
    m_limitation->setVisible(!m_limitation->text().isEmpty());
    layout()->activate();

    if (m_step == 2)
        m_button->setText(localized("Open Accessibility Settings"));
    else if (m_step >= 4)
        m_button->setText(localized("Done"));
    else
        m_button->setText(localized("Next"));

    // The editor has the keyboard at once, so that the button comes to it without a click.
    if (m_step == 3)
        m_editor->setFocus();
    else
        m_button->setFocus();
}

void OnboardingWizardView::buttonClicked()
{
    if (m_step == 2)
        openAccessibilitySettings();
    else if (m_step >= 4)
        Q_EMIT showOnboardingChanged(false);
    else
        setStep(m_step + 1);
}

void OnboardingWizardView::openAccessibilitySettings()
{
    m_collaborators.accessibility.openAccessibilitySettings();
}

void OnboardingWizardView::checkAccessibilityPermission()
{
    startPollingForPermission();
}

void OnboardingWizardView::startPollingForPermission()
{
    m_permissionCheckTimer.start();
}

void OnboardingWizardView::pollPermission()
{
    if (!m_collaborators.accessibility.AXIsProcessTrusted())
        return;
    m_hasAccessibilityPermission = true;
    m_permissionCheckTimer.stop();
    if (m_step != 2)
        return;
    setStep(m_step + 1);
    m_collaborators.bringToFront();
}

QWidget *OnboardingWizardView::makeWelcomePage()
{
    auto *page = new QWidget;
    auto *stack = new VerticalStack(VerticalStack::Alignment::Center, 15, page);
    stack->addWidget(
        new ArtworkView(QStringLiteral("LogoText"), QSize(0, 36), QStringLiteral("Quillet")));
    stack->addWidget(new ArtworkView(QStringLiteral("WelcomeImage"), QSize(0, 180),
                                     localized("A quill turning a draft into clear text")));
    stack->addWidget(makeTitle(localized("Welcome to Quillet"), 30));
    auto *subtitle = makeText(localized("Set up you Quillet in a few easy steps to start "
                                        "communicating with confidence"),
                              QStringLiteral("Manrope-Regular"), 18);
    subtitle->setContentsMargins(20, 0, 20, 0);
    subtitle->setFixedWidth(400);
    stack->addWidget(subtitle);
    return page;
}

QWidget *OnboardingWizardView::makeInstallPage()
{
    VerticalStack *stack = nullptr;
    QWidget *page = makeWidePage(stack);
    stack->addWidget(makeTitle(localized("Install Quillet"), 25));
    stack->addWidget(makeText(localized("• Open Accessibility Settings\n"
                                        "• Toggle Quillet\n"
                                        "• Come back here"),
                              QStringLiteral("Manrope-Regular"), 16, Qt::AlignLeading));
    stack->addWidget(new ArtworkView(
        QStringLiteral("Tutorial"), QSize(0, 180),
        localized("First turn on the switch beside Quillet in the accessibility settings. "
                  "Then use the Quillet button at the top right of any text field.")));
    return page;
}

QWidget *OnboardingWizardView::makeTutorialPage()
{
    VerticalStack *stack = nullptr;
    QWidget *page = makeWidePage(stack);
    stack->addWidget(makeTitle(localized("Quillet is installed! Now you can try it!"), 25));
    stack->addWidget(makeText(localized("Type something below, then try Quillet's features."),
                              QStringLiteral("Manrope-Regular"), 16));
    m_editor = new TutorialEditor;
    stack->addWidget(padded(m_editor));
    m_limitation = makeText({}, QStringLiteral("Manrope-Regular"), 16, Qt::AlignLeading);
    stack->addWidget(m_limitation);
    return page;
}

QWidget *OnboardingWizardView::makeDonePage()
{
    auto *page = new QWidget;
    auto *stack = new VerticalStack(VerticalStack::Alignment::Center, 16, page);
    stack->addWidget(new ArtworkView(QStringLiteral("ConfirmLogo"), QSize(144, 142),
                                     localized("Quillet is ready")));
    stack->addWidget(makeTitle(localized("Great job!"), 30));
    stack->addWidget(makeText(localized("Quillet is ready to go. Start communicating with "
                                        "confidence in all your favourite apps!"),
                              QStringLiteral("Manrope-Regular"), 18));
    return page;
}
