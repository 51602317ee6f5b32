// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/http/HttpConnection.h"

#include "backend/http/RequestParser.h"

#include <QDateTime>
#include <QLocale>

#include <boost/beast/http/status.hpp>

namespace
{

constexpr int requestDeadlineMs = 60'000;
constexpr int drainDeadlineMs = 5'000;
constexpr qint64 maximumDrained = 64 * 1024 * 1024;
constexpr qint64 readBufferSize = 256 * 1024;

QByteArray reason(int status)
{
    const auto text =
        boost::beast::http::obsolete_reason(boost::beast::http::int_to_status(unsigned(status)));
    return QByteArray(text.data(), qsizetype(text.size()));
}

/// The date format of RFC 9110 §5.6.7.
QByteArray httpDate()
{
    return QLocale::c()
               .toString(QDateTime::currentDateTimeUtc(), u"ddd, dd MMM yyyy HH:mm:ss")
               .toLatin1() +
           " GMT";
}

} // namespace

HttpConnection::HttpConnection(QTcpSocket *socket, HttpHandler handler, QObject *parent)
    : QObject(parent)
    , m_socket(socket)
    , m_handler(std::move(handler))
    , m_parser(std::make_unique<RequestParser>())
{
    m_socket->setParent(this);
    m_socket->setReadBufferSize(readBufferSize);
    m_deadline.setSingleShot(true);
    connect(m_socket, &QTcpSocket::readyRead, this, [this] { readSome(); });
    connect(m_socket, &QTcpSocket::disconnected, this, [this] {
        // The client is gone: whatever was computed for it is of no use.
        ++m_serial;
        m_work.reset();
        deleteLater();
    });
    connect(&m_deadline, &QTimer::timeout, this, [this] { close(); });
    m_deadline.start(requestDeadlineMs);
    readSome();
}

HttpConnection::~HttpConnection()
{
    // The socket outlives this part of the object; it must not call back into it.
    m_socket->disconnect(this);
}

void HttpConnection::readSome()
{
    switch (m_state) {
    case State::Reading:
        m_buffer += m_socket->readAll();
        parse();
        break;
    case State::Answering:
        // Left in the socket, which stops reading when its buffer is full.
        break;
    case State::Draining:
        m_drained += m_socket->readAll().size();
        if (m_drained > maximumDrained)
            close();
        break;
    }
}

void HttpConnection::parse()
{
    while (m_state == State::Reading && !m_buffer.isEmpty()) {
        const auto outcome = m_parser->feed(m_buffer);
        if (outcome == RequestParser::Outcome::Failed) {
            refuse(m_parser->failureStatus(), m_parser->failureSentence());
        } else if (outcome == RequestParser::Outcome::Complete) {
            dispatch();
        } else {
            if (m_parser->takeExpectContinue())
                m_socket->write("HTTP/1.1 100 Continue\r\n\r\n");
            break;
        }
    }
}

void HttpConnection::refuse(int status, const QByteArray &sentence)
{
    send({status, sentence}, false);
    drainThenClose();
}

void HttpConnection::dispatch()
{
    m_state = State::Answering;
    m_deadline.stop();
    const bool keepAlive = m_parser->keepAlive();
    const HttpRequest request = m_parser->request();
    m_parser = std::make_unique<RequestParser>();
    const quint64 serial = ++m_serial;
    QPointer<HttpConnection> self(this);
    auto work = m_handler(request, [self, serial, keepAlive](const HttpResponse &response) {
        if (!self || self->m_serial != serial)
            return;
        ++self->m_serial;
        self->send(response, keepAlive);
        // Queued: the work that called this must not be destroyed under its own feet.
        QMetaObject::invokeMethod(
            self, [self, keepAlive] { self->finish(keepAlive); }, Qt::QueuedConnection);
    });
    if (m_serial == serial)
        m_work = std::move(work);
}

void HttpConnection::finish(bool keepAlive)
{
    m_work.reset();
    if (keepAlive) {
        m_state = State::Reading;
        m_deadline.start(requestDeadlineMs);
        readSome();
    } else if (m_buffer.isEmpty() && m_socket->bytesAvailable() == 0) {
        close();
    } else {
        drainThenClose();
    }
}

void HttpConnection::send(const HttpResponse &response, bool keepAlive)
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(response.status) + ' ' +
                      reason(response.status) + "\r\nDate: " + httpDate() +
                      "\r\nContent-Type: text/plain; charset=utf-8"
                      "\r\nCache-Control: no-store"
                      "\r\nX-Content-Type-Options: nosniff"
                      "\r\nCross-Origin-Resource-Policy: same-origin"
                      "\r\nContent-Length: " +
                      QByteArray::number(response.body.size());
    for (const auto &[name, value] : response.headers)
        head += "\r\n" + name + ": " + value;
    if (!keepAlive)
        head += "\r\nConnection: close";
    m_socket->write(head + "\r\n\r\n" + response.body);
}

void HttpConnection::drainThenClose()
{
    // Closing with unread bytes would reset the connection, and the client
    // would lose the answer (RFC 9112 §9.6).
    m_state = State::Draining;
    m_buffer.clear();
    m_deadline.start(drainDeadlineMs);
    readSome();
}

void HttpConnection::close()
{
    m_socket->disconnectFromHost();
    if (m_socket->state() != QAbstractSocket::UnconnectedState)
        m_deadline.start(drainDeadlineMs);
}
