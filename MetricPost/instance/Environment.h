// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "ApplicationState.h"
#include "HTTPTransport.h"
#include "SystemInfo.h"
#include "UserDefaults.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace metricpost
{

/// Everything outside the library that an instance depends on, so that a test can replace it.
/// The functions may be called from any thread.
struct Environment {
    /// Seconds since 1970.
    std::function<double()> now;
    /// 32 random bits.
    std::function<quint32()> random;
    std::shared_ptr<UserDefaults> userDefaults;
    /// The user's caches folder, where the databases live.
    std::optional<QString> cachesFolder;
    std::optional<QString> legacyArchiveFolder;
    std::shared_ptr<HTTPTransport> transport;
    std::shared_ptr<ApplicationState> applicationState;
    SystemInfo systemInfo;
    /// Where events go when the options name no server. Empty: they wait in the store.
    QString defaultServerURL;
    /// The user's wish, for all programs, that nothing is recorded.
    bool doNotTrack = false;

    /// The real ones. Do-not-track is on when DO_NOT_TRACK is set in the process's environment
    /// to anything but "", "0" and "false".
    static Environment standard();
};

} // namespace metricpost
