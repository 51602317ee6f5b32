// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

class QWidget;

/// Gives a window of ours, before its controls are made, the look of the wizard: its typeface,
/// light ground and accent, whatever the desktop's theme. The default button is the filled one.
/// Focus is shown by a line of its own, and controls stand out from the ground by at least 3 to 1.
/// Main thread.
void giveLightLook(QWidget *window);
