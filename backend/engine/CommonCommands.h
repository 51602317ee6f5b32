// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

/// The answer to one of the commands "send-feedback", "share" and "rate", which
/// is the same whatever engine is at work. Empty for any other command.
QString commonCommandAnswer(const QString &command);
