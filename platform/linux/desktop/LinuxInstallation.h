// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Installation.h"

namespace platform::linux_
{

/// Installation on Linux: the bundle is the installation prefix, the folder that holds
/// bin/quillet and share/.
///
/// The user's own application folder is ~/.local/opt, and the user's copy ~/.local/opt/quillet; no
/// rights are needed to write there, and nothing else has to search it, because the desktop entry
/// names the program with its path. Main thread only.
class LinuxInstallation : public Installation
{
public:
    /// Where things are; tests put others in their place.
    struct Places {
        QString executable;
        QString home;
        /// $XDG_DATA_HOME, where the desktop looks for the user's desktop entries.
        QString dataHome;
        /// proc(5), /proc/pid/status of this process.
        QString processStatus;
        /// $XDG_CONFIG_HOME, which holds the folder of what starts at login.
        QString configHome = {};
        /// The file that this program was packed into and is run from; empty where it is none.
        QString packedInto = {};
    };
    static Places systemPlaces();

    LinuxInstallation()
        : LinuxInstallation(systemPlaces())
    {
    }
    explicit LinuxInstallation(Places places)
        : m_places(std::move(places))
    {
    }

    QString bundlePath() override;
    QString targetPath() override;

    /// True below /usr, /opt and ~/.local/opt, and for ~/.local as an installation prefix.
    bool isInstalledLocation(const QString &path) override;

    /// True when a debugger traces this process, when it was started from the tree in which it was
    /// built, and when it lies in no bundle: a program on its own in some folder, say ~/bin, must
    /// not take that folder along.
    bool isDevelopmentRun() override;

    bool fileExists(const QString &path) override;
    int runModalAlert(const QString &messageText, const QString &informativeText,
                      const QStringList &buttons, const QString &footnote) override;

    /// Also gives the desktop an entry for the copy. A failure of that alone is logged; the copy
    /// counts.
    QString copyBundle(const QString &from, const QString &to) override;
    void removeDownloadMarks(const QString &path) override;
    void start(const QString &path, const QStringList &arguments) override;
    bool startsAtLogin() override;
    bool setStartsAtLogin(bool starts) override;
    void terminate() override;

private:
    bool isTraced() const;
    QString loginEntryPath() const;
    void writeDesktopEntry(const QString &bundle) const;

    Places m_places;
};

} // namespace platform::linux_
