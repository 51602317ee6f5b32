// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// Runs the observer, the button and the popup for a long time on whatever has the focus, against a
// backend that answers at once, and prints the resident memory after every tenth, in kibibytes, as
// JSON on standard error: bench_endurance TICKS OPENINGS

#include "platform/Platform.h"
#include "quillet/analytics/EventTracker.h"
#include "quillet/button/FloatingButtonManager.h"

#include "quillet/writing/WritingEndpoint.h"
#include "quillet/writing/WritingService.h"

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>

#include <cstdio>
#include <unistd.h>

namespace
{

class NoTracker : public EventTracker
{
public:
    void track(const QString &, const QMap<QString, QString> &) override {}
};

/// A backend whose answer is always the same.
class FixedBackend : public WritingEndpoint
{
public:
    FixedBackend()
    {
        m_server.listen(QHostAddress::LocalHost);
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] {
            QTcpSocket *socket = m_server.nextPendingConnection();
            QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                if (!socket->readAll().contains("\r\n\r\n"))
                    return;
                ++m_answers;
                socket->write("HTTP/1.1 200 OK\r\nContent-Length: 6\r\n\r\nanswer");
            });
        });
    }

    void withEndpoint(Ready ready) override
    {
        ready(QStringLiteral("http://127.0.0.1:%1/generate").arg(m_server.serverPort()), {});
    }

    int answers() const { return m_answers; }

private:
    QTcpServer m_server;
    int m_answers = 0;
};

long residentKibibytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').at(1).toLong() * sysconf(_SC_PAGESIZE) / 1024;
}

void handleEvents(int milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    do {
        QCoreApplication::processEvents(QEventLoop::AllEvents, milliseconds);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    } while (timer.elapsed() < milliseconds);
}

QAbstractButton *optionButton()
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        for (auto *button : window->findChildren<QAbstractButton *>()) {
            if (button->accessibleName() == QLatin1StringView("elevate"))
                return button;
        }
    }
    return nullptr;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const int ticks = QByteArray(argc > 1 ? argv[1] : "10000").toInt();
    const int openings = QByteArray(argc > 2 ? argv[2] : "1000").toInt();
    const auto system = platform::createPlatform();
    FixedBackend backend;
    BackendService service;
    WritingService writing(backend, service);
    NoTracker tracker;
    std::fprintf(stderr, "{\"rss\":[");
    int opened = 0;
    int chosen = 0;
    {
        FloatingButtonManager manager(
            {system->accessibility(), system->keyboard(), system->workspace(), writing, tracker});
        AccessibilityObserver observer(
            {system->accessibility(), system->workspace(), manager,
             static_cast<std::int32_t>(QCoreApplication::applicationPid())});
        for (int waited = 0; !manager.buttonWindow() && waited < 300; ++waited) {
            handleEvents(100);
            observer.checkFocusedElement();
        }
        for (int tick = 1; tick <= ticks; ++tick) {
            observer.checkFocusedElement();
            if (tick % (ticks / openings) == 0 && manager.buttonWindow()) {
                manager.buttonClicked();
                handleEvents(5);
                ++opened;
                if (QAbstractButton *button = optionButton()) {
                    button->click();
                    ++chosen;
                }
                handleEvents(15);
                manager.buttonClicked();
            }
            handleEvents(0);
            if (tick % (ticks / 10) == 0)
                std::fprintf(stderr, "%s%ld", tick == ticks / 10 ? "" : ",", residentKibibytes());
        }
        manager.hide();
        handleEvents(50);
    }
    std::fprintf(stderr, "],\"opened\":%d,\"chosen\":%d,\"answers\":%d}\n", opened, chosen,
                 backend.answers());
    return 0;
}
