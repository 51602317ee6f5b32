// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

class QMessageBox;
class QWidget;

/// Gives a window of ours, before its controls are made, the look of the wizard: its typeface,
/// light ground and accent, whatever the desktop's theme. A widget in it that is to have the ground
/// is named "page". The default button is the filled one.
/// Focus is shown by a line of its own, and controls stand out from the ground by at least 3 to 1.
/// Main thread.
void giveLightLook(QWidget *window);

/// The same for a message, with the application's icon. Main thread.
void giveLightLook(QMessageBox *message);
