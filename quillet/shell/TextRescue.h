// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Accessibility.h"
#include "quillet/shell/Notice.h"

#include <QString>

/// Keeps a text that could not be written where the user can paste it from. Main thread only.
class TextRescue
{
public:
    /// `notice` must outlive this object.
    explicit TextRescue(Notice &notice)
        : m_notice(notice)
    {
    }

    /// Puts `text`, which `outcome` says was not written, on the clipboard, hidden from clipboard
    /// histories, and says so. What was there before can be brought back from the notice. An empty
    /// text leaves the clipboard alone.
    void keep(const QString &text, const platform::WriteOutcome &outcome);

private:
    Notice &m_notice;
};
