// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/atspi/DBusConnection.h"
#include "platform/linux/ports/InputMethods.h"

#include <QObject>
#include <QPointer>
#include <QString>

namespace platform::linux_
{

/// IBus and Fcitx 5. Neither is started by being asked. Main thread only.
class DesktopInputMethods : public QObject, public InputMethods
{
public:
    /// `sessionBus`: address of the session bus; empty for the one that the environment names.
    explicit DesktopInputMethods(QByteArray sessionBus = {});

    void suspend(std::function<void(bool)> done) override;
    void resume() override;

private:
    DBusConnection *ibus();
    DBusConnection *session();
    void askIbus();
    void setIbusEngine(const QString &engine, CallChannel::Handler handler);
    void askFcitx();
    void callFcitx(const char *method, CallChannel::Handler handler);
    /// One of the two has been dealt with.
    void settled(bool isDirect);

    const QByteArray m_sessionBus;
    QPointer<DBusConnection> m_ibus;
    QPointer<DBusConnection> m_session;
    std::function<void(bool)> m_done;
    int m_open = 0;
    bool m_areDirect = true;
    /// What resume() switches back to.
    QString m_ibusEngine;
    bool m_fcitxWasActive = false;
};

} // namespace platform::linux_
