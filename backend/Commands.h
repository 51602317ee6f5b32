// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QStringView>
#include <optional>

enum class CommandKind { Rewrite, Tone, Reply, Translate, More };

/// The kind of a command identifier; nothing when there is no such command.
std::optional<CommandKind> commandKind(QStringView command);
