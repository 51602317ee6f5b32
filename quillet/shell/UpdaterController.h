// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "quillet/shell/Notice.h"

#include <QString>

/// Looks for newer versions of Quillet. Main thread only.
class UpdaterController
{
public:
    virtual ~UpdaterController() = default;

    /// Called once, when the launch has finished; from then on the updater may look by itself.
    virtual void start() = 0;

    /// The user asks; there is always an answer.
    virtual void checkForUpdates() = 0;
};

/// Tells the user how this copy is updated: system packages by the package manager, any other copy
/// from the project's page.
class UpdateAdvice : public UpdaterController
{
public:
    /// `notice` must outlive this object.
    UpdateAdvice(Notice &notice, const QString &bundlePath)
        : m_notice(notice)
        , m_bundlePath(bundlePath)
    {
    }

    void start() override;
    void checkForUpdates() override;

    const QString &advice() const { return m_advice; }

private:
    Notice &m_notice;
    QString m_bundlePath;
    QString m_advice;
};
