// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/http/HttpConnection.h"

#include "backend/http/RequestParser.h"
#include "commands/Note.h"

#include <QDateTime>
#include <QLocale>

#include <boost/beast/http/status.hpp>

using namespace std::chrono_literals;

namespace
{

constexpr auto drainDeadline = 5s;
constexpr auto probeInterval = 100ms;
constexpr qint64 maxDrained = 64 * 1024 * 1024;
/// What is read of further requests while one is being answered.
constexpr qsizetype maxPipelined = 256 * 1024;
constexpr qsizetype maxRead = 256 * 1024;

QByteArray statusLine(int status)
{
    const auto text =
        boost::beast::http::obsolete_reason(boost::beast::http::int_to_status(unsigned(status)));
    return "HTTP/1.1 " + QByteArray::number(status) + ' ' +
           QByteArray(text.data(), qsizetype(text.size()));
}

/// The status line and the fields that every answer has, without the empty line.
QByteArray commonHead(const HttpResponse &response, bool keepAlive)
{
    // The date format of RFC 9110 §5.6.7.
    QByteArray head = statusLine(response.status) + "\r\nDate: " +
                      QLocale::c()
                          .toString(QDateTime::currentDateTimeUtc(), u"ddd, dd MMM yyyy HH:mm:ss")
                          .toLatin1() +
                      " GMT"
                      "\r\nContent-Type: " +
                      response.type +
                      "\r\nCache-Control: no-store"
                      "\r\nX-Content-Type-Options: nosniff"
                      "\r\nCross-Origin-Resource-Policy: same-origin";
    for (const auto &[name, value] : response.headers)
        head += "\r\n" + name + ": " + value;
    if (!keepAlive)
        head += "\r\nConnection: close";
    return head;
}

} // namespace

HttpConnection::HttpConnection(int descriptor, HttpHandler handler, const HttpAdmission &admission,
                               const HttpLimits &limits)
    : m_admission(admission)
    , m_limits(limits)
    , m_handler(std::move(handler))
    , m_parser(std::make_unique<RequestParser>())
    , m_socket(descriptor, [this] { socketChanged(); })
{
    m_deadline.setSingleShot(true);
    m_probing.setInterval(probeInterval);
    m_silence.setInterval(limits.silence);
    connect(&m_deadline, &QTimer::timeout, this, &HttpConnection::close);
    connect(&m_silence, &QTimer::timeout, this, &HttpConnection::pad);
    connect(&m_probing, &QTimer::timeout, this, [this] {
        if (m_socket.hasReset())
            close();
    });
    m_admitted = admission.admitsBeginning({});
    m_deadline.start(m_admitted ? limits.request : limits.admission);
}

HttpConnection::~HttpConnection()
{
    // The work may still hold callbacks of this object.
    ++m_serial;
    m_work.reset();
}

void HttpConnection::socketChanged()
{
    if (m_socket.isBroken())
        close();
    else
        readSome();
}

void HttpConnection::readSome()
{
    switch (m_state) {
    case State::Reading:
        m_buffer += m_socket.take(maxRead);
        parse();
        // The other half stays open for the answer; without a request there is none to wait for.
        if (m_state == State::Reading && m_socket.hasEnded())
            close();
        break;
    case State::Answering: {
        const bool ended = m_socket.hasEnded();
        m_buffer += m_socket.take(maxPipelined - m_buffer.size());
        m_socket.setReading(m_buffer.size() < maxPipelined);
        if (m_socket.hasEnded() && !ended)
            probe();
        break;
    }
    case State::Draining:
        m_drained += m_socket.take(maxRead).size();
        if (m_drained > maxDrained || (m_socket.hasEnded() && m_socket.bytesToWrite() == 0))
            close();
        break;
    case State::Closed:
        break;
    }
    if (m_socket.isBroken())
        close();
}

void HttpConnection::parse()
{
    while (m_state == State::Reading && !m_buffer.isEmpty()) {
        if (isStrangerTooLong()) {
            refuse(401, "This server asks for the secret of Quillet's present launch.");
            break;
        }
        const auto outcome = m_parser->feed(m_buffer);
        if (outcome == RequestParser::Outcome::Failed) {
            refuse(m_parser->failureStatus(), m_parser->failureSentence());
        } else if (outcome == RequestParser::Outcome::Complete) {
            dispatch();
        } else {
            if (m_parser->takeExpectContinue())
                m_socket.write("HTTP/1.1 100 Continue\r\n\r\n");
            break;
        }
    }
}

bool HttpConnection::isStrangerTooLong()
{
    if (m_admitted)
        return false;
    if (m_admission.admitsBeginning(m_buffer)) {
        m_admitted = true;
        m_deadline.start(m_limits.request);
        return false;
    }
    const auto max = m_limits.maxStrangersHead;
    return !m_parser->hasHead() && m_buffer.size() > max &&
           !m_buffer.first(max).contains("\r\n\r\n");
}

void HttpConnection::refuse(int status, const QByteArray &sentence)
{
    m_keepAlive = false;
    m_isHead = false;
    send({status, sentence});
    drainThenClose();
}

void HttpConnection::dispatch()
{
    const HttpRequest request = m_parser->request();
    m_keepAlive = m_parser->keepAlive();
    m_parser = std::make_unique<RequestParser>();
    m_state = State::Answering;
    m_isHead = request.method == "HEAD";
    m_takesChunks = request.takesChunks && !m_isHead;
    m_prefersLive = request.prefersLive && m_takesChunks;
    m_admitted = m_admitted || m_admission.admits(request);
    m_deadline.stop();
    if (m_takesChunks)
        m_silence.start();
    const quint64 serial = ++m_serial;
    const QPointer<HttpConnection> self(this);
    auto work = m_handler(request, {[self, serial](const HttpPiece &piece) {
                                        if (self && self->m_serial == serial)
                                            self->take(piece);
                                    },
                                    [self, serial](const HttpResponse &response) {
                                        if (self && self->m_serial == serial)
                                            self->complete(response);
                                    }});
    if (m_serial == serial) {
        m_work = std::move(work);
        if (m_socket.hasEnded())
            probe();
    }
}

void HttpConnection::take(const HttpPiece &piece)
{
    if (!m_takesChunks || piece.text.isEmpty())
        return;
    sendLiveHead();
    m_socket.write(m_live->piece(piece.text, piece.startsOver));
    m_silence.start();
}

void HttpConnection::complete(const HttpResponse &response)
{
    ++m_serial;
    m_silence.stop();
    m_probing.stop();
    if (!m_live) {
        send(response);
    } else if (const auto rest = m_live->complete(response.body, response.headers)) {
        m_socket.write(*rest);
        m_live.reset();
    }
    // Queued: the work that called this must not be destroyed inside its own call.
    QMetaObject::invokeMethod(this, &HttpConnection::finish, Qt::QueuedConnection);
}

void HttpConnection::finish()
{
    m_work.reset();
    if (m_state != State::Answering)
        return;
    if (m_live) {
        // What was sent is not the answer: the body stays without its end.
        close();
    } else if (m_keepAlive && !m_socket.hasEnded()) {
        m_state = State::Reading;
        m_deadline.start(m_admitted ? m_limits.request : m_limits.admission);
        m_socket.setReading(true);
        Q_EMIT idle();
        readSome();
    } else {
        drainThenClose();
    }
}

// Shows a client that waits that work goes on.
void HttpConnection::pad()
{
    if (m_prefersLive) {
        sendLiveHead();
        m_socket.write(m_live->pad());
    } else {
        writeNothing();
    }
}

// Bytes that every client of HTTP/1.1 passes over (RFC 9112 §7.1, RFC 9110 §15.2).
void HttpConnection::writeNothing()
{
    if (m_live)
        m_socket.write("0"); // of the next chunk's size
    else if (m_takesChunks)
        m_socket.write("HTTP/1.1 100 Continue\r\n\r\n");
}

void HttpConnection::probe()
{
    // The client has closed its half, or the whole: bytes bring a reset when nothing reads them any
    // more.
    writeNothing();
    if (m_socket.hasReset())
        close();
    else
        m_probing.start();
}

void HttpConnection::send(const HttpResponse &response)
{
    QByteArray head = commonHead(response, m_keepAlive);
    // What is not a rewriting is a note, so that no client writes it into a document.
    const QByteArray note = notePrefix.toUtf8();
    const bool needsMark = response.status >= 400 && !response.body.startsWith(note);
    const QByteArray body = needsMark ? note + response.body : response.body;
    if (!m_isHead)
        head += "\r\nContent-Length: " + QByteArray::number(body.size());
    m_socket.write(head + "\r\n\r\n" + (m_isHead ? QByteArray() : body));
}

void HttpConnection::sendLiveHead()
{
    if (m_live)
        return;
    m_live.emplace(m_prefersLive);
    m_socket.write(commonHead(HttpResponse{}, m_keepAlive) +
                   (m_prefersLive ? "\r\nPreference-Applied: live" : "") +
                   "\r\nTransfer-Encoding: chunked\r\n\r\n");
}

void HttpConnection::drainThenClose()
{
    // Closing with unread bytes would reset the connection, and the client
    // would lose the answer (RFC 9112 §9.6).
    m_state = State::Draining;
    m_buffer.clear();
    m_socket.endWriting();
    m_socket.setReading(true);
    m_deadline.start(drainDeadline);
    readSome();
}

void HttpConnection::close()
{
    if (std::exchange(m_state, State::Closed) == State::Closed)
        return;
    ++m_serial;
    m_deadline.stop();
    m_silence.stop();
    m_probing.stop();
    m_socket.setReading(false);
    // Queued: this can run inside a call of the work or of the handler.
    QMetaObject::invokeMethod(
        this, [this] { m_work.reset(); }, Qt::QueuedConnection);
    Q_EMIT closed();
}
