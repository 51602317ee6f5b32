// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>

/// What a start of the program asks for; also a start that finds another Quillet running.
enum class StartRequest {
    /// The main window.
    Window,
    /// The main window with the wizard, also for a user who has seen it.
    Wizard,
    /// The place where the permission is given and taken back.
    Permission,
    /// The settings window.
    Settings,
    /// The settings, where they say whether Quillet can do its job here.
    Doctor,
    /// No window: watch, as after the wizard.
    Background,
};

/// The word that stands for `request` between two processes.
QByteArray wordFor(StartRequest request);
/// The request that `word` stands for; the main window where it stands for none.
StartRequest requestFor(const QByteArray &word);
