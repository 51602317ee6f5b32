// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Accessibility.h"
#include "quillet/window/AppearingView.h"

#include <QTimer>

#include <array>
#include <functional>

class QSettings;
class StyledButton;
class TextView;
class TutorialEditor;

/// The first-run wizard: welcome, permission, a try in an editor, done. There is no way back; the
/// permission page moves on by itself as soon as Quillet is trusted.
///
/// Main thread only. Always begins at the first page: make a new one to show it again.
class OnboardingWizardView : public AppearingView
{
    Q_OBJECT

public:
    struct Collaborators {
        /// Asked twice a second while the permission page waits.
        platform::Accessibility &accessibility;
        /// Gets "onboardingSeen" = true as soon as the wizard appears.
        QSettings &defaults;
        /// Sees to it that the focus observer exists; called when the tutorial page comes.
        std::function<void()> createObserver;
        /// Reports a usage event by its name.
        std::function<void(const QString &event)> track;
        /// Brings the wizard's window to the front with the keyboard, because the permission has
        /// been given in another window.
        std::function<void()> bringToFront = [] {};
        /// The sentence for a session where Quillet does not reach all programs; empty elsewhere.
        std::function<QString()> limitationOfSession = [] { return QString(); };
    };

    /// What the collaborators refer to must outlive the view.
    explicit OnboardingWizardView(const Collaborators &collaborators, QWidget *parent = nullptr);

    /// 1 welcome, 2 install, 3 tutorial, 4 done.
    int step() const { return m_step; }
    bool hasAccessibilityPermission() const { return m_hasAccessibilityPermission; }

Q_SIGNALS:
    /// False when the wizard is done and the home view is to take its place.
    void showOnboardingChanged(bool showOnboarding);

protected:
    void onAppear() override;

private:
    void setStep(int step);
    void showStep();
    void buttonClicked();

    void openAccessibilitySettings();
    void checkAccessibilityPermission();
    void startPollingForPermission();
    void pollPermission();

    QWidget *makeWelcomePage();
    QWidget *makeInstallPage();
    QWidget *makeTutorialPage();
    QWidget *makeDonePage();

    Collaborators m_collaborators;
    int m_step = 1;
    bool m_hasAccessibilityPermission = false;
    QTimer m_permissionCheckTimer;
    TutorialEditor *m_editor = nullptr;
    TextView *m_limitation = nullptr;
    std::array<QWidget *, 4> m_pages{};
    StyledButton *m_button;
};
