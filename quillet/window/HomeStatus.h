// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Accessibility.h"

#include <QColor>
#include <QObject>
#include <QString>

/// What the home view's badges say. It may outlive the view. Main thread.
class HomeStatus : public QObject
{
    Q_OBJECT

public:
    /// `accessibility` must outlive this object.
    explicit HomeStatus(platform::Accessibility &accessibility);

    /// Asks whether Quillet is trusted and sets the first badge by the answer.
    void checkKeyboardStatus();
    /// Sets the second badge; consults nothing.
    void checkPremiumStatus();

    QString keyboardStatus() const { return m_keyboardStatus; }
    QColor keyboardColor() const { return m_keyboardColor; }
    QString premiumStatus() const { return m_premiumStatus; }
    QColor premiumColor() const { return m_premiumColor; }

    bool offersConfiguration() const;
    /// The text under the first badge.
    QString subtitle() const;

Q_SIGNALS:
    void changed();

private:
    platform::Accessibility &m_accessibility;
    QString m_keyboardStatus;
    QColor m_keyboardColor;
    QString m_premiumStatus;
    QColor m_premiumColor;
};
