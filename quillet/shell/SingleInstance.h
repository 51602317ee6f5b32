// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "quillet/shell/StartRequest.h"

#include <QByteArray>
#include <QObject>
#include <QString>

class QLocalServer;

/// Lets one Quillet run for each user and display. A later start hands its activation over to the
/// one that runs, and ends.
///
/// Who is first is decided by a lock that the system drops when its holder dies, so that neither a
/// crash nor two starts at the same moment leave the user with none or two. Main thread only.
class SingleInstance : public QObject
{
    Q_OBJECT
public:
    /// `name` is the path of the local socket; the lock lies beside it.
    explicit SingleInstance(const QString &name = nameForSession(), QObject *parent = nullptr);
    ~SingleInstance() override;

    /// In the user's runtime folder, named by the display.
    static QString nameForSession();

    /// The id that the desktop has given to this start (DESKTOP_STARTUP_ID, or
    /// XDG_ACTIVATION_TOKEN). The toolkit clears it: ask before the QApplication is made.
    static QByteArray startupIdOfThisProcess();

    enum class Role {
        First,
        /// Another one runs and has been asked to come to the front; this process is to end.
        Later,
    };
    /// Waits some seconds at most for the one that runs. `startupId` is handed over to it, and what
    /// this start asks for.
    Role claim(const QByteArray &startupId, StartRequest request = StartRequest::Window);

Q_SIGNALS:
    /// A later start has handed its request over.
    void activationRequested(const QByteArray &startupId, StartRequest request);

private:
    bool lock();
    bool handOver(const QByteArray &request);
    void listen();
    void accept();

    QString m_name;
    int m_lock = -1;
    QLocalServer *m_server = nullptr;
};
