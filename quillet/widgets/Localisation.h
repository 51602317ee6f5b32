// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

/// What people see for `key`: its entry in the table of the user's language, the English one where
/// there is none for it, or the key itself when the table has no such entry. A key is a command
/// identifier such as "quick-improve", or an English text as it is shown. Never fails.
///
/// Every text that the application shows goes through here, as a literal, so that a tool can
/// collect them; each has its entry in Resources/localisation/Localizable.ts. Main thread.
QString localized(const QString &key);

/// The same for a literal in UTF-8.
QString localized(const char *key);

/// Lets tr() of the platform and of the toolkit find their texts in the user's language too. Once,
/// after the application object has been made.
void installTranslations();
