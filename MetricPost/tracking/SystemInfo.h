// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <optional>

namespace metricpost
{

/// What the operating system says about itself and the computer. "Unknown" stands for what
/// cannot be read.
struct SystemInfo {
    QString os;
    QString osVersion;
    QString manufacturer;
    QString model;
    /// The same in all programs on this computer, but not traceable to the computer where
    /// the system asks for that; nothing when it cannot be read.
    std::optional<QString> deviceIdentifier;

    /// Reads the files below `root`, which a test may replace. Any thread.
    static SystemInfo read(const QString &root = {});
};

} // namespace metricpost
