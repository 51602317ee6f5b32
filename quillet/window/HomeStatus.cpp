// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/window/HomeStatus.h"

#include "quillet/widgets/Localisation.h"
#include "quillet/widgets/VisualStyle.h"

namespace
{

QString notConfigured()
{
    return localized("Not configured");
}

} // namespace

HomeStatus::HomeStatus(platform::Accessibility &accessibility, Limitation limitation)
    : m_accessibility(accessibility)
    , m_limitationOfSession(std::move(limitation))
    , m_keyboardStatus(localized("Checking..."))
    , m_keyboardColor(SystemColor::orange)
    , m_premiumStatus(localized("Loading..."))
    , m_premiumColor(SystemColor::orange)
{
}

void HomeStatus::checkKeyboardStatus()
{
    const bool trusted = m_accessibility.AXIsProcessTrusted();
    m_keyboardStatus = trusted ? localized("All looks great!") : notConfigured();
    m_keyboardColor = trusted ? SystemColor::green : SystemColor::red;
    m_limitation = m_limitationOfSession ? m_limitationOfSession() : QString();
    if (trusted && !m_limitation.isEmpty()) {
        m_keyboardStatus = localized("Works in some programs");
        m_keyboardColor = SystemColor::orange;
    }
    Q_EMIT changed();
}

void HomeStatus::checkPremiumStatus()
{
    m_premiumStatus = localized("Beta test");
    m_premiumColor = SystemColor::green;
    Q_EMIT changed();
}

bool HomeStatus::offersConfiguration() const
{
    return m_keyboardStatus == notConfigured();
}

QString HomeStatus::subtitle() const
{
    if (!m_limitation.isEmpty())
        return m_limitation;
    // No status reads like this: the text stays, whatever the badge says.
    if (m_keyboardStatus == QStringLiteral("Quillet is not configured"))
        return QString();
    return localized("Quillet is ready to be used\nacross all your favourite apps");
}
