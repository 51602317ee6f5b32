// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>
#include <QStringList>

namespace platform
{

/// What the install guard needs of the system: where this copy lies, where it belongs, and the
/// means to copy, start and end programs. Main thread only, before any window exists.
class Installation
{
public:
    virtual ~Installation() = default;

    /// The folder of this copy: the bundle, or the installation prefix.
    virtual QString bundlePath() = 0;

    /// Where the user's copy belongs.
    virtual QString targetPath() = 0;

    /// True when a copy at `path` counts as installed, whatever its name.
    virtual bool isInstalledLocation(const QString &path) = 0;

    /// True when this process is a development run: traced by a debugger, or started from where it
    /// was built.
    virtual bool isDevelopmentRun() = 0;

    virtual bool fileExists(const QString &path) = 0;

    /// Shows a modal alert and returns the index of the button that the user chose, in the order
    /// given; the last one when the alert was closed. `footnote` stands below the rest.
    virtual int runModalAlert(const QString &messageText, const QString &informativeText,
                              const QStringList &buttons, const QString &footnote = {}) = 0;

    /// Copies the whole folder. Empty on success, otherwise the system's description of the error;
    /// then nothing is left at `to`.
    virtual QString copyBundle(const QString &from, const QString &to) = 0;

    /// Removes the marks that downloads carry from everything below `path`, and waits for it.
    /// Failure is not reported.
    virtual void removeDownloadMarks(const QString &path) = 0;

    /// Starts the copy at `path` with `arguments`, without waiting for it. Failure is not reported.
    virtual void start(const QString &path, const QStringList &arguments) = 0;

    /// Whether the user's session starts this program when the user logs in.
    virtual bool startsAtLogin() { return false; }
    /// Has the session start `quillet --background` at login, or not. False when that failed.
    virtual bool setStartsAtLogin(bool starts) { return !starts; }

    /// Ends this process as soon as the guard returns.
    virtual void terminate() = 0;
};

} // namespace platform
