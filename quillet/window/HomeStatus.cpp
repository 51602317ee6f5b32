// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/window/HomeStatus.h"

#include "quillet/window/VisualStyle.h"

namespace
{

const QString kNotConfigured = QStringLiteral("Not configured");

} // namespace

HomeStatus::HomeStatus(platform::Accessibility &accessibility)
    : m_accessibility(accessibility)
    , m_keyboardStatus(QStringLiteral("Checking..."))
    , m_keyboardColor(SystemColor::orange)
    , m_premiumStatus(QStringLiteral("Loading..."))
    , m_premiumColor(SystemColor::orange)
{
}

void HomeStatus::checkKeyboardStatus()
{
    const bool trusted = m_accessibility.AXIsProcessTrusted();
    m_keyboardStatus = trusted ? QStringLiteral("All looks great!") : kNotConfigured;
    m_keyboardColor = trusted ? SystemColor::green : SystemColor::red;
    Q_EMIT changed();
}

void HomeStatus::checkPremiumStatus()
{
    m_premiumStatus = QStringLiteral("Beta test");
    m_premiumColor = SystemColor::green;
    Q_EMIT changed();
}

bool HomeStatus::offersConfiguration() const
{
    return m_keyboardStatus == kNotConfigured;
}

QString HomeStatus::subtitle() const
{
    // No status reads like this: the text stays, whatever the badge says.
    if (m_keyboardStatus == QStringLiteral("Quillet is not configured"))
        return QString();
    return QStringLiteral("Quillet is ready to be used\nacross all your favourite apps");
}
