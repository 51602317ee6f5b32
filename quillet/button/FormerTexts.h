// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Accessibility.h"

#include <QString>
#include <QTimer>

#include <chrono>
#include <deque>
#include <optional>

/// The texts that "apply" has replaced, so that they can be put back. They are in this process's
/// memory only, and no longer than they are of use: the last ten, for ten minutes. Main thread.
class FormerTexts
{
public:
    static constexpr std::size_t maxCount = 10;
    static constexpr std::chrono::milliseconds maxAge = std::chrono::minutes(10);

    /// `age` is for tests.
    explicit FormerTexts(std::chrono::milliseconds age = maxAge);

    void remember(const platform::AXUIElement &input, const QString &text);

    /// What stood in `input` before the last apply; nothing when that is not known any more.
    std::optional<QString> of(const platform::AXUIElement &input) const;

    /// Forgets the last text of `input`, because it is back.
    void forgetLast(const platform::AXUIElement &input);

private:
    struct Former {
        platform::AXUIElement input;
        QString text;
        std::chrono::steady_clock::time_point until;
    };
    void dropOld();

    const std::chrono::milliseconds m_maxAge;
    std::deque<Former> m_texts;
    QTimer m_drop;
};
