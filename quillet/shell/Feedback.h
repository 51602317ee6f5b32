// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Workspace.h"

#include <QString>
#include <QUrl>

/// The URL that lets the user's mail program compose a message to `address`; invalid when the
/// address makes none. Any thread.
QUrl feedbackUrl(const QString &address);

/// The mailbox that this build's feedback goes to.
QString feedbackAddress();
