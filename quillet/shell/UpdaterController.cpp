// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/shell/UpdaterController.h"

#include "quillet/widgets/Localisation.h"

void UpdateAdvice::start()
{
    // The file hierarchy leaves /usr to the package manager, and /usr/local to everyone else.
    const QString path = m_bundlePath + QLatin1Char('/');
    const bool packaged =
        path.startsWith(QLatin1String("/usr/")) && !path.startsWith(QLatin1String("/usr/local/"));
    m_advice =
        packaged
            ? localized("Your system's package manager keeps Quillet up to date, together with "
                        "your other programs.")
            : localized("New versions of Quillet are published at %1.")
                  .arg(QStringLiteral(QUILLET_PROJECT_PAGE));
}

void UpdateAdvice::checkForUpdates()
{
    m_notice.tell(m_advice);
}
