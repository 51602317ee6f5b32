// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>

#include <optional>

/// The child's end of its life with Quillet. Standard input brings the secret of
/// this launch as its first line, and its end says that Quillet is gone, however
/// it ended.
namespace ParentLink
{

/// Waits for the secret. Nothing when standard input ends first, or when the line
/// is empty or longer than a secret is. Thread: any, before end…() is called.
std::optional<QByteArray> readSecret();

/// From now on the process ends as soon as standard input does, whatever its other
/// threads are doing. Nothing is stored, so nothing needs to be ended in order.
void endProcessWithParent();

} // namespace ParentLink
