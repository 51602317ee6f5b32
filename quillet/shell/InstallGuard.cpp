// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/shell/InstallGuard.h"

bool isRunningFromXcode(platform::Installation &installation)
{
    return installation.isDevelopmentRun();
}

bool ensureRunningFromApplications(platform::Installation &installation)
{
    const QString bundle = installation.bundlePath();
    const QString target = installation.targetPath();
    if (installation.isInstalledLocation(bundle) || isRunningFromXcode(installation))
        return true;

    if (installation.fileExists(target)) {
        // Without asking, and even when the installed copy is older.
        installation.start(target);
        installation.terminate();
        return false;
    }

    constexpr int install = 0;
    const int answer = installation.runModalAlert(
        QStringLiteral("Install Quillet"),
        QStringLiteral("Quillet needs to be installed in the Applications folder."),
        {QStringLiteral("Install"), QStringLiteral("Quit")});
    if (answer == install) {
        const QString error = installation.copyBundle(bundle, target);
        if (error.isEmpty()) {
            installation.removeDownloadMarks(target);
            installation.start(target);
        } else {
            installation.runModalAlert(QStringLiteral("Install Failed"),
                                       QStringLiteral("Could not copy Quillet to Applications: ") +
                                           error,
                                       {QStringLiteral("OK")});
        }
    }
    installation.terminate();
    return false;
}
