// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QSize>

/// The fixed size of the main window's content, in points. Any thread.
inline QSize mainWindowSize()
{
    return QSize(600, 600);
}

/// What a view keeps free around its content where nothing else is said, in points.
inline constexpr int kDefaultPadding = 16;
