// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/x11/XTestKeyboard.h"

#include "platform/linux/keyboard/TypingEngine.h"
#include "platform/linux/x11/XKeyServer.h"

#include <QObject>
#include <QSocketNotifier>
#include <QThread>
#include <QTimer>

namespace platform::linux_
{

/// Drives the engine from the event loop.
class XTestKeyboard::Loop : public QObject
{
public:
    Loop(std::unique_ptr<XKeyServer> server, InputMethods *methods)
        : m_server(std::move(server))
        , m_engine(*m_server, methods, m_clock,
                   [this](std::function<void()> function) {
                       QTimer::singleShot(0, this, std::move(function));
                   })
        , m_notifier(m_server->fileDescriptor(), QSocketNotifier::Read)
    {
        m_timer.setSingleShot(true);
        m_timer.setTimerType(Qt::PreciseTimer);
        connect(&m_timer, &QTimer::timeout, this, &Loop::step);
        connect(&m_notifier, &QSocketNotifier::activated, this, [this] {
            m_server->takeEvents();
            if (m_server->isBroken())
                m_notifier.setEnabled(false);
            step();
        });
    }

    ~Loop() override
    {
        while (!m_engine.stop())
            QThread::msleep(2);
    }

    void type(std::unique_ptr<TypingTarget> target, const QList<KeyboardEvent> &events,
              std::function<void(TypingResult)> completion)
    {
        m_engine.type(std::move(target), events, std::move(completion));
        m_timer.start(0);
    }

private:
    void step()
    {
        if (const std::optional<Milliseconds> pause = m_engine.step())
            m_timer.start(*pause);
    }

    std::unique_ptr<XKeyServer> m_server;
    SteadyClock m_clock;
    TypingEngine m_engine;
    QSocketNotifier m_notifier;
    QTimer m_timer;
};

XTestKeyboard::XTestKeyboard(InputMethods *methods, const QByteArray &displayName)
{
    if (std::unique_ptr<XKeyServer> server = XKeyServer::open(displayName))
        m_loop = std::make_unique<Loop>(std::move(server), methods);
}

XTestKeyboard::~XTestKeyboard() = default;

void XTestKeyboard::type(std::unique_ptr<TypingTarget> target, const QList<KeyboardEvent> &events,
                         std::function<void(TypingResult)> completion)
{
    if (m_loop)
        m_loop->type(std::move(target), events, std::move(completion));
    else
        QTimer::singleShot(0, [completion] { completion(TypingResult::Failed); });
}

void XTestKeyboard::stop()
{
    m_loop.reset();
}

} // namespace platform::linux_
