// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/window/HomeView.h"

#include "quillet/widgets/ArtworkView.h"
#include "quillet/widgets/Localisation.h"
#include "quillet/widgets/StyledButton.h"
#include "quillet/widgets/VerticalStack.h"
#include "quillet/window/CardView.h"
#include "quillet/window/HomeStatus.h"
#include "quillet/window/WindowNotifications.h"

namespace
{

ButtonLabel configureLabel()
{
    return {localized("Configure Quillet"), SystemColor::black, withOpacity(SystemColor::gray, 0.2),
            12};
}

} // namespace

HomeView::HomeView(platform::Accessibility &accessibility, WindowNotifications &notifications,
                   int cardWidth, QWidget *parent, std::function<QString()> limitationOfSession)
    : AppearingView(parent)
    , m_notifications(notifications)
    , m_cardWidth(cardWidth)
    , m_status(std::make_shared<HomeStatus>(accessibility, std::move(limitationOfSession)))
    , m_statusCard(new CardView(localized("Quillet Status"), m_status->subtitle()))
    , m_premiumCard(new CardView(localized("Premium Status"),
                                 localized("You have full access to all AI features.")))
    , m_configure(new StyledButton(std::make_unique<GreyButtonStyle>(), configureLabel()))
{
    m_statusCard->addControl(m_configure);
    connect(m_configure, &QAbstractButton::clicked, this,
            [this] { Q_EMIT showOnboardingChanged(true); });
    connect(m_status.get(), &HomeStatus::changed, this, &HomeView::showStatus);

    auto *stack = new VerticalStack(VerticalStack::Alignment::Center, 20, this);
    stack->setContentsMargins(40, 40, 40, 40);
    stack->addWidget(
        new ArtworkView(QStringLiteral("LogoText"), QSize(0, 36), QStringLiteral("Quillet")));
    stack->addFixedSpacer(20);
    stack->addWidget(m_statusCard);
    stack->addWidget(m_premiumCard);
    stack->addSpacer();
    showStatus();
}

void HomeView::onAppear()
{
    observeWindowDidBecomeKey();
    m_status->checkKeyboardStatus();
    m_status->checkPremiumStatus();
    if (m_configure->isVisible())
        m_configure->setFocus();
}

void HomeView::observeWindowDidBecomeKey()
{
    connect(&m_notifications, &WindowNotifications::windowDidBecomeKey, &m_notifications,
            [status = m_status] {
                status->checkKeyboardStatus();
                status->checkPremiumStatus();
            });
}

void HomeView::showStatus()
{
    m_statusCard->badge().setStatus(m_status->keyboardStatus(), m_status->keyboardColor());
    m_statusCard->text().setText(m_status->subtitle());
    m_configure->setVisible(m_status->offersConfiguration());
    m_premiumCard->badge().setStatus(m_status->premiumStatus(), m_status->premiumColor());

    // At once: otherwise a frame is painted with the old heights.
    m_statusCard->layout()->activate();
    m_premiumCard->layout()->activate();
    layout()->activate();
}
