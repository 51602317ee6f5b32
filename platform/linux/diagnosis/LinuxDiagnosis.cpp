// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/diagnosis/LinuxDiagnosis.h"

#include "platform/linux/diagnosis/AccessibilityFacts.h"
#include "platform/linux/diagnosis/DisplayFacts.h"

#include <QCoreApplication>
#include <QSettings>

#include <algorithm>

namespace platform::linux_
{

SystemFacts LinuxDiagnosis::examine()
{
    SystemFacts facts;
    facts.sessionType = qEnvironmentVariable("XDG_SESSION_TYPE");
    facts.desktop = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
    facts.hasConsent = QSettings(QStringLiteral("quillet"), QStringLiteral("platform"))
                           .value(QStringLiteral("accessibility/allowed"))
                           .toBool();
    const QHash<std::int32_t, QString> windows = addDisplayFacts(facts);
    addAccessibilityFacts(facts);
    for (auto it = windows.begin(); it != windows.end(); ++it) {
        const bool known = std::any_of(facts.programs.begin(), facts.programs.end(),
                                       [&](const auto &each) { return each.pid == it.key(); });
        if (!known && it.key() != QCoreApplication::applicationPid())
            facts.programs.append({it.value(), it.key(), SystemFacts::Program::Shows::Nothing, {}});
    }
    return facts;
}

} // namespace platform::linux_
