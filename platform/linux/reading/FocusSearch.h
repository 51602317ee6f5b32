// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/atspi/AtspiApplication.h"
#include "platform/linux/reading/ElementFacts.h"

#include <functional>
#include <optional>

namespace platform::linux_
{

/// What Collection.GetMatches looks for below an element.
struct MatchRule {
    atspi::States states = 0;
    /// Any of these; empty for every role.
    QList<atspi::Role> roles = {};
    /// How many at most; 0 for all. Those who answer take a time that grows with the square of it.
    int count = 0;
    /// Goes on behind this element, below the same one; empty to begin. May go on beyond the end.
    QByteArray after = {};
};

/// Asks for the elements below `path` that match, in the order of the tree. The reply holds a list
/// of objects. False when it could not be asked.
bool getMatches(AtspiApplication &application, const QByteArray &path, const MatchRule &rule,
                CallChannel::Handler handler);

/// Whether an element of this role may say that it has the focus while it has not: Qt says so of
/// the current item of every list, whichever input has the keyboard. The list itself says it truly.
bool mayClaimWithoutFocus(std::uint32_t role, const AtspiApplication &application);

/// Finds the element that has the focus by asking the application: its active window, and below it
/// whatever says that it is focused. `completion` is called once, from within the application's
/// answer; with nothing when no element says so. Asks for a bounded number of elements only.
void findFocused(AtspiApplication &application,
                 std::function<void(const std::optional<ObjectRef> &)> completion);

} // namespace platform::linux_
