// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Accessibility.h"

#include <QColor>
#include <QObject>
#include <QString>

#include <functional>

/// What the home view's badges say. It may outlive the view. Main thread.
class HomeStatus : public QObject
{
    Q_OBJECT

public:
    /// What the desktop session does not offer, in one sentence; empty where it offers all.
    using Limitation = std::function<QString()>;

    /// `accessibility`, and what `limitation` refers to, must outlive this object.
    explicit HomeStatus(platform::Accessibility &accessibility, Limitation limitation = {});

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
    const Limitation m_limitationOfSession;
    /// As it was at the last check.
    QString m_limitation;
    QString m_keyboardStatus;
    QColor m_keyboardColor;
    QString m_premiumStatus;
    QColor m_premiumColor;
};
