// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Workspace.h"

#include <QMessageBox>
#include <QPointer>
#include <QString>

/// Tells the user one sentence in a small window of its own, without holding anything up. Telling
/// another while the window is open replaces the sentence. Main thread only.
class Notice
{
public:
    explicit Notice(platform::Workspace &workspace)
        : m_workspace(workspace)
    {
    }
    ~Notice() { delete m_box; }
    Notice(const Notice &) = delete;
    Notice &operator=(const Notice &) = delete;

    void tell(const QString &sentence);

private:
    platform::Workspace &m_workspace;
    QPointer<QMessageBox> m_box;
};
