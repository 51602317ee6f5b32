// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QWidget>

/// A page of the main window: white, of the window's size, the same under every desktop theme. It
/// learns when it comes into sight, which is when it is shown itself; that the window around it was
/// hidden and shown again is no appearance. Main thread.
class AppearingView : public QWidget
{
    Q_OBJECT

public:
    explicit AppearingView(QWidget *parent = nullptr);

protected:
    virtual void onAppear() = 0;

    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    bool m_inSight = false;
};
