// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QWidget>

/// The popup's window: rounded, slightly translucent, with a thin outline so that it stands out
/// from what is below where the desktop draws no shadows. Escape asks it to close; a letter
/// finds a button.
class PopupPanel : public QWidget
{
    Q_OBJECT

public:
    explicit PopupPanel(QWidget *parent = nullptr);

Q_SIGNALS:
    void closeWanted();
    void painted();
    /// Ctrl+Return.
    void applyWanted();

protected:
    void paintEvent(QPaintEvent *event) override;
    /// A letter goes to the next button that begins with it.
    void keyPressEvent(QKeyEvent *event) override;
};
