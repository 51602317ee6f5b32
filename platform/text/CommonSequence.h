// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <utility>
#include <vector>

namespace platform
{

/// The places of an item that two sequences have in common: in the first one and in the second.
using CommonItem = std::pair<int, int>;

/// Pairs of equal items that are in the same order in both sequences: the longest such list where
/// the sequences are short or have much in common, else a list that is a little shorter. Takes time
/// in proportion to the length. Any thread.
std::vector<CommonItem> commonSequence(const std::vector<int> &before,
                                       const std::vector<int> &after);

} // namespace platform
