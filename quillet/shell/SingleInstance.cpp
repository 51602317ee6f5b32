// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/shell/SingleInstance.h"

#include <QDeadlineTimer>
#include <QDebug>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QThread>
#include <QTimer>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <chrono>

namespace
{

using namespace std::chrono_literals;

// One line each way: the request's word and the startup id, and the answer that it has arrived.
constexpr char received[] = "received\n";
constexpr qint64 maxLineLength = 4096;
constexpr std::chrono::milliseconds patience = 5s;
constexpr std::chrono::milliseconds betweenTries = 50ms;

int left(const QDeadlineTimer &deadline)
{
    return int(deadline.remainingTime());
}

} // namespace

SingleInstance::SingleInstance(const QString &name, QObject *parent)
    : QObject(parent)
    , m_name(name)
{
}

SingleInstance::~SingleInstance()
{
    // The socket goes before the lock, which a next one may get at once.
    delete m_server;
    if (m_lock >= 0)
        ::close(m_lock);
}

QString SingleInstance::nameForSession()
{
    QString display = qEnvironmentVariable("WAYLAND_DISPLAY");
    if (display.isEmpty())
        display = qEnvironmentVariable("DISPLAY");
    // ":0" and ":0.0" are the same display.
    if (display.contains(QLatin1Char(':')) && display.endsWith(QLatin1String(".0")))
        display.chop(2);
    display.replace(QLatin1Char('/'), QLatin1Char('_'));
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) +
           QStringLiteral("/quillet-") + display;
}

QByteArray SingleInstance::startupIdOfThisProcess()
{
    const QByteArray id = qgetenv("DESKTOP_STARTUP_ID");
    return id.isEmpty() ? qgetenv("XDG_ACTIVATION_TOKEN") : id;
}

SingleInstance::Role SingleInstance::claim(const QByteArray &startupId, StartRequest request)
{
    const QByteArray line = wordFor(request) + ' ' + startupId;
    const QDeadlineTimer deadline(patience);
    do {
        if (lock()) {
            listen();
            return Role::First;
        }
        if (handOver(line))
            return Role::Later;
        // It is starting or ending at this moment.
        QThread::msleep(betweenTries.count());
    } while (!deadline.hasExpired());
    qWarning("Quillet is running already and does not answer.");
    return Role::Later;
}

bool SingleInstance::lock()
{
    const QByteArray path = QFile::encodeName(m_name + QStringLiteral(".lock"));
    const int fd = ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0) {
        // Better a second Quillet than none.
        qWarning("Cannot open %s", path.constData());
        return true;
    }
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        ::close(fd);
        return false;
    }
    m_lock = fd;
    return true;
}

void SingleInstance::listen()
{
    QLocalServer::removeServer(m_name); // of one that crashed: the lock is ours
    m_server = new QLocalServer;
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server, &QLocalServer::newConnection, this, &SingleInstance::accept);
    if (!m_server->listen(m_name))
        qWarning().noquote() << "Cannot listen on" << m_name << m_server->errorString();
}

void SingleInstance::accept()
{
    while (QLocalSocket *socket = m_server->nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        const auto read = [this, socket] {
            if (!socket->canReadLine()) {
                if (socket->bytesAvailable() > maxLineLength)
                    socket->abort();
                return;
            }
            const QByteArray line = socket->readLine(maxLineLength).trimmed() + ' ';
            socket->write(received);
            socket->disconnectFromServer();
            const auto end = line.indexOf(' ');
            Q_EMIT activationRequested(line.mid(end).trimmed(), requestFor(line.first(end)));
        };
        connect(socket, &QLocalSocket::readyRead, this, read);
        read();
    }
}

bool SingleInstance::handOver(const QByteArray &request)
{
    const QDeadlineTimer deadline(patience);
    QLocalSocket socket;
    socket.connectToServer(m_name);
    if (!socket.waitForConnected(left(deadline)))
        return false;
    // An id is one line. A line feed in it must not make two.
    socket.write(QByteArray(request).replace('\n', ' ') + '\n');
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(left(deadline)))
            return false;
    }
    return socket.readLine() == received;
}
