// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/shell/InstallGuard.h"

#include "quillet/widgets/Localisation.h"

bool isRunningFromXcode(platform::Installation &installation)
{
    return installation.isDevelopmentRun();
}

bool ensureRunningFromApplications(platform::Installation &installation,
                                   const QStringList &arguments)
{
    const QString bundle = installation.bundlePath();
    const QString target = installation.targetPath();
    if (installation.isInstalledLocation(bundle) || isRunningFromXcode(installation))
        return true;

    if (installation.fileExists(target)) {
        // Without asking, and even when the installed copy is older.
        installation.start(target, arguments);
        installation.terminate();
        return false;
    }

    constexpr int install = 0;
    const int answer = installation.runModalAlert(
        localized("Install Quillet"),
        localized("Quillet needs to be installed in the Applications folder."),
        {localized("Install"), localized("Quit")},
        localized("It will be copied to %1.").arg(target));
    if (answer == install) {
        const QString error = installation.copyBundle(bundle, target);
        if (error.isEmpty()) {
            installation.removeDownloadMarks(target);
            installation.start(target, arguments);
        } else {
            installation.runModalAlert(
                localized("Install Failed"),
                localized("Could not copy Quillet to Applications: ") + error, {localized("OK")});
        }
    }
    installation.terminate();
    return false;
}
