// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QWidget>

/// The button's window: borderless and transparent, above other applications' windows, never the
/// one that has the keyboard.
class NonActivatingPanel : public QWidget
{
    Q_OBJECT

public:
    NonActivatingPanel();

    bool canBecomeKey() const { return false; }
    bool canBecomeMain() const { return false; }
};
