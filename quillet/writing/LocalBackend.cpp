// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/writing/LocalBackend.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QStandardPaths>

using namespace std::chrono_literals;

namespace
{

constexpr auto startDeadline = 10s;
constexpr std::chrono::milliseconds endDeadline = 1s;

QByteArray makeSecret()
{
    quint32 words[8];
    QRandomGenerator::system()->fillRange(words);
    return QByteArray(reinterpret_cast<const char *>(words), sizeof words).toHex();
}

/// Where texts go. The path carries the secret, so that the backend knows us before the text, which
/// stands in the request's first line as well.
QString generateUrl(int port, const QByteArray &secret)
{
    return QStringLiteral("http://127.0.0.1:%1/with/%2/generate")
        .arg(port)
        .arg(QLatin1StringView(secret));
}

QString analyticsUrl(int port, const QByteArray &secret)
{
    return QStringLiteral("http://quillet:%2@127.0.0.1:%1")
        .arg(port)
        .arg(QLatin1StringView(secret));
}

} // namespace

LocalBackend::LocalBackend(QString program, QObject *parent)
    : QObject(parent)
    , m_program(std::move(program))
{
    m_deadline.setSingleShot(true);
    m_deadline.setInterval(startDeadline);
    connect(&m_deadline, &QTimer::timeout, this, [this] {
        stop();
        tellWaiting({}, QStringLiteral("The local writing backend did not start in time."));
    });
}

LocalBackend::~LocalBackend()
{
    stop();
}

QString LocalBackend::findProgram()
{
    const QString name = QStringLiteral("quillet-backend");
    const QDir here(QCoreApplication::applicationDirPath());
    for (const QString &candidate :
         {here.filePath(name), here.filePath(QStringLiteral("../backend/") + name)}) {
        const QFileInfo info(candidate);
        if (info.isFile() && info.isExecutable())
            return info.canonicalFilePath();
    }
    return QStandardPaths::findExecutable(name);
}

void LocalBackend::withEndpoint(Ready ready)
{
    m_waiting.push_back(std::move(ready));
    const bool starting = m_deadline.isActive();
    if (!m_url.isEmpty())
        tellWaiting(m_url, {});
    else if (!starting)
        start();
}

void LocalBackend::start()
{
    stop();
    m_secret = makeSecret();
    m_process = std::make_unique<QProcess>();
    m_process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QProcess *process = m_process.get();
    connect(process, &QProcess::readyReadStandardOutput, this, [this] { readPort(); });
    connect(process, &QProcess::started, this, [this, process] {
        // Standard input stays open: its end tells the child that we are gone.
        process->write(m_secret + '\n');
    });
    const auto ended = [this](const QString &why) {
        m_deadline.stop();
        m_url.clear();
        tellWaiting({}, why);
    };
    connect(process, &QProcess::errorOccurred, this, [ended](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            ended(QStringLiteral("The local writing backend could not be started."));
    });
    connect(process, &QProcess::finished, this,
            [ended] { ended(QStringLiteral("The local writing backend ended unexpectedly.")); });
    m_deadline.start();
    process->start(m_program, {QStringLiteral("--child")});
}

void LocalBackend::readPort()
{
    while (m_process->canReadLine()) {
        const QByteArray line = m_process->readLine().trimmed();
        bool valid = false;
        const int port = line.startsWith("port ") ? line.mid(5).toUShort(&valid) : 0;
        if (!valid || port == 0 || !m_url.isEmpty())
            continue;
        m_deadline.stop();
        m_url = generateUrl(port, m_secret);
        Q_EMIT analyticsMoved(analyticsUrl(port, m_secret));
        tellWaiting(m_url, {});
    }
}

void LocalBackend::stop()
{
    m_deadline.stop();
    m_url.clear();
    if (!m_process)
        return;
    m_process->disconnect(this);
    m_process->closeWriteChannel();
    if (m_process->state() != QProcess::NotRunning &&
        !m_process->waitForFinished(int(endDeadline.count()))) {
        m_process->kill();
        m_process->waitForFinished(int(endDeadline.count()));
    }
    m_process.reset();
}

void LocalBackend::tellWaiting(const QString &url, const QString &failure)
{
    // Queued: the caller may ask again, and a process must not be replaced
    // inside its own signal.
    QMetaObject::invokeMethod(
        this,
        [url, failure, waiting = std::exchange(m_waiting, {})] {
            for (const Ready &ready : waiting)
                ready(url, failure);
        },
        Qt::QueuedConnection);
}
