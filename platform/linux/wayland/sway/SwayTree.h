// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/ports/ActiveWindow.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <optional>

namespace platform::linux_
{

/// The windows of a sway session, as its tree of containers has them.
struct SwayTree {
    struct Window {
        std::int32_t pid = 0;
        QString applicationId;
        QString title;
        WindowPlace place;
    };

    QHash<std::uint32_t, Window> windows;
    /// The window that has the keyboard; absent when none has it, or a surface of the desktop does.
    std::optional<std::uint32_t> focused;

    /// Reads the answer to the question for the tree. What it cannot be is left out.
    static SwayTree read(const QByteArray &json);
};

} // namespace platform::linux_
