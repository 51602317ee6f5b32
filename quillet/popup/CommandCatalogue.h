// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

/// The fixed vocabulary of the popup. An identifier is at once the key of a button's title, the
/// button's accessible name, and the command that the writing backend gets; a tool is never sent,
/// only the option that was chosen.
namespace CommandCatalogue
{

/// The tools in the order of the popup's top row.
const QStringList &tools();

/// Each tool's options in display order.
const QMap<QString, QStringList> &toolOptions();

} // namespace CommandCatalogue
