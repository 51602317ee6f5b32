// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QObject>

/// Tells when a window of this application gets the keyboard. Main thread.
class WindowNotifications : public QObject
{
    Q_OBJECT

public:
    /// Needs the QGuiApplication.
    explicit WindowNotifications(QObject *parent = nullptr);

Q_SIGNALS:
    void windowDidBecomeKey();
};
