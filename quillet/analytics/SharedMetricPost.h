// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "quillet/analytics/EventTracker.h"

/// The application's single door to the analytics client: chooses the project, starts the client
/// once, and records events. Each event is stored first and its upload is asked for at once.
///
/// Main thread; nothing here waits for disk or network.
class SharedMetricPost : public EventTracker
{
public:
    struct Settings {
        /// Whether this is a development run, whose events go to a project of their own.
        bool developmentRun = false;
        /// The service's base URL; empty when it is not known yet, and events wait on disk.
        QString serverURL;
    };

    explicit SharedMetricPost(const Settings &settings);

    /// Sets what shared() will be made of. Call once, before the first shared().
    static void prepareShared(const Settings &settings);
    /// The application's one instance, created by the first call.
    static SharedMetricPost &shared();

    void track(const QString &event, const QMap<QString, QString> &properties = {}) override;

    /// Tells where the service is, and sends what has waited for it.
    void setServerURL(const QString &url);

private:
    const QString m_metricPostToken;
};
