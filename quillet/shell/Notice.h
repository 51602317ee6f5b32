// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Workspace.h"

#include <QMessageBox>
#include <QPointer>
#include <QString>

#include <functional>

/// Tells the user one sentence in a small window of its own, without holding anything up. There is
/// one window at a time: telling another sentence replaces the one that is shown. Main thread only.
class Notice
{
public:
    /// A second button beside "OK".
    struct Action {
        QString title;
        std::function<void()> run;
    };

    /// `workspace` must outlive this object.
    explicit Notice(platform::Workspace &workspace)
        : m_workspace(workspace)
    {
    }
    ~Notice() { delete m_box; }
    Notice(const Notice &) = delete;
    Notice &operator=(const Notice &) = delete;

    /// Answers what the user has just asked for: the window comes to the front with the keyboard.
    void tell(const QString &sentence);

    /// Says what the user has not asked for: the window is above the others, and the keyboard stays
    /// where it is.
    void mention(const QString &sentence, const Action &action = {});

private:
    void prepareBox(const QString &sentence, const Action &action);

    platform::Workspace &m_workspace;
    QPointer<QMessageBox> m_box;
};
