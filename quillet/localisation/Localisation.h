// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

/// The title that people see for a command identifier such as "quick-improve": its entry in the
/// localisation table of the user's language, the English one where there is none for it, or the
/// identifier itself when the table has no such entry. Never fails. Main thread.
QString localized(const QString &identifier);
