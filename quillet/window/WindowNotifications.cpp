// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/window/WindowNotifications.h"

#include <QGuiApplication>
#include <QWindow>

WindowNotifications::WindowNotifications(QObject *parent)
    : QObject(parent)
{
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, [this](QWindow *window) {
        if (window)
            Q_EMIT windowDidBecomeKey();
    });
}
