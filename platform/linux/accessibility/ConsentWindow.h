// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QWidget>

class QAbstractButton;
class QLabel;

namespace platform::linux_
{

class AtspiBus;

/// The place where the user allows Quillet to read and write other applications' inputs, and takes
/// that back: one switch, what it permits, and what is wrong when it cannot work. Main thread only.
class ConsentWindow : public QWidget
{
    Q_OBJECT
public:
    ConsentWindow(AtspiBus &bus, bool allowed);

Q_SIGNALS:
    void consentChanged(bool allowed);

protected:
    bool event(QEvent *event) override;

private:
    void onToggled(bool allowed);
    void showState();
    void fitHeight();

    AtspiBus &m_bus;
    QAbstractButton *m_switch;
    QLabel *m_state;
};

} // namespace platform::linux_
