// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Accessibility.h"
#include "quillet/window/AppearingView.h"

#include <functional>
#include <memory>

class CardView;
class HomeStatus;
class StyledButton;
class WindowNotifications;

/// What the main window shows when onboarding is over: whether Quillet is configured, and a way
/// back into the wizard when it is not. Checks afresh whenever a window of ours gets the keyboard.
///
/// Main thread only.
class HomeView : public AppearingView
{
    Q_OBJECT

public:
    /// `accessibility` must outlive `notifications`. What an appearance registers with
    /// `notifications` is never removed: it still asks `accessibility` after this view is gone,
    /// and each further appearance adds one more. `cardWidth` is kept and has no effect on the
    /// layout. `limitationOfSession` gives the sentence that is shown in a session where Quillet
    /// does not reach all programs, and lives as long as `accessibility`.
    HomeView(platform::Accessibility &accessibility, WindowNotifications &notifications,
             int cardWidth = 350, QWidget *parent = nullptr,
             std::function<QString()> limitationOfSession = {});

    int cardWidth() const { return m_cardWidth; }

Q_SIGNALS:
    /// True when the user wants the wizard in place of this view.
    void showOnboardingChanged(bool showOnboarding);

protected:
    void onAppear() override;

private:
    void observeWindowDidBecomeKey();
    void showStatus();

    WindowNotifications &m_notifications;
    int m_cardWidth;
    /// Shared with the registrations, which outlive the view.
    std::shared_ptr<HomeStatus> m_status;
    CardView *m_statusCard;
    CardView *m_premiumCard;
    StyledButton *m_configure;
};
