// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/model/ChatCompletion.h"

#include "backend/model/AnswerCleaner.h"

#include <QHostAddress>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaEnum>

namespace
{

/// What an answer may take on the wire; a streamed one carries a lot besides the text.
constexpr qint64 maxReceived = 64 * 1024 * 1024;
constexpr qint64 maxErrorBody = 64 * 1024;

bool isOnThisMachine(const QUrl &url)
{
    return url.host() == u"localhost" || QHostAddress(url.host()).isLoopback();
}

/// The text of a message: a string, or a list of parts that each have one.
QString contentOf(const QJsonValue &content)
{
    if (!content.isArray())
        return content.toString();
    QString text;
    const auto parts = content.toArray();
    for (const auto &part : parts)
        text += part.toObject().value(u"text").toString();
    return text;
}

QByteArray requestBody(const ModelSettings &settings, const ChatPrompt &prompt)
{
    const auto message = [](const char *role, const QString &content) {
        return QJsonObject{{QStringLiteral("role"), QString::fromLatin1(role)},
                           {QStringLiteral("content"), content}};
    };
    QJsonObject body{{QStringLiteral("model"),
                      settings.name.isEmpty() ? QStringLiteral("default") : settings.name},
                     {QStringLiteral("messages"),
                      QJsonArray{message("system", prompt.system), message("user", prompt.user)}},
                     {QStringLiteral("stream"), true}};
    if (!prompt.plain) {
        body.insert(u"temperature", settings.temperature.value_or(prompt.temperature));
        body.insert(u"max_tokens", prompt.maxTokens);
        if (isOnThisMachine(settings.url)) {
            // How the servers that people run themselves switch off thinking, each in its own way.
            body.insert(u"chat_template_kwargs",
                        QJsonObject{{QStringLiteral("enable_thinking"), false}});
            body.insert(u"think", false);
        }
    }
    return QJsonDocument(body).toJson(QJsonDocument::Compact);
}

/// An error's name, if that is what it is and not a text: the log has no others.
QString errorName(const QJsonObject &error)
{
    for (const auto *field : {u"code", u"type"}) {
        QString name = error.value(QString::fromUtf16(field)).toString();
        const bool plain = std::all_of(name.cbegin(), name.cend(), [](QChar c) {
            return (c >= u'a' && c <= u'z') || c == u'_' || c.isDigit();
        });
        if (!name.isEmpty() && name.size() <= 40 && plain)
            return name;
    }
    return QStringLiteral("unnamed");
}

QString tooLongSentence()
{
    return QStringLiteral("The text is too long for the language model. Use the command on a part "
                          "of it, or set a smaller window in Quillet's settings.");
}

} // namespace

ChatCompletion::ChatCompletion(NetworkPool &pool, const ModelSettings &settings,
                               const ChatPrompt &prompt, QString source, Piece piece, Done done)
    : m_pool(pool)
    , m_settings(settings)
    , m_source(std::move(source))
    , m_piece(std::move(piece))
    , m_done(std::move(done))
{
    m_manager = pool.take(isOnThisMachine(settings.url));
    // Room for a model that thinks aloud before it answers, and for an answer of many pages.
    m_maxText = 8 * 1024 * 1024 + 16 * prompt.user.size();

    QNetworkRequest request(settings.url);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArray("application/json"));
    request.setHeader(QNetworkRequest::UserAgentHeader, QByteArray("Quillet"));
    request.setRawHeader("Accept", "text/event-stream, application/json");
    // Compression would hold pieces back.
    request.setRawHeader("Accept-Encoding", "identity");
    if (!settings.key.isEmpty())
        request.setRawHeader("Authorization", "Bearer " + settings.key);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    m_reply = m_manager->post(request, requestBody(settings, prompt));
    m_reply->setReadBufferSize(1024 * 1024);

    m_idle.setSingleShot(true);
    m_idle.setInterval(settings.timeout);
    m_idle.start();
    connect(&m_idle, &QTimer::timeout, this, [this] {
        fail(
            504,
            QStringLiteral("The language model took too long to answer. Try again, or with a "
                           "shorter text."),
            QStringLiteral("no data for %1 s")
                .arg(std::chrono::duration_cast<std::chrono::seconds>(m_settings.timeout).count()));
    });
    connect(m_reply, &QNetworkReply::metaDataChanged, this, [this] { chooseFormat(); });
    connect(m_reply, &QNetworkReply::readyRead, this, [this] { read(); });
    connect(m_reply, &QNetworkReply::finished, this, [this] { replyFinished(); });
}

ChatCompletion::~ChatCompletion()
{
    m_reply->disconnect(this);
    const bool reusable = m_reply->isFinished();
    m_reply->abort();
    delete m_reply;
    if (reusable)
        m_pool.giveBack(std::move(m_manager));
}

void ChatCompletion::chooseFormat()
{
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (m_format != Format::Unknown || status == 0)
        return;
    const QByteArray type = m_reply->header(QNetworkRequest::ContentTypeHeader)
                                .toByteArray()
                                .split(';')
                                .first()
                                .trimmed()
                                .toLower();
    if (status != 200) {
        m_format = Format::Error;
    } else if (type == "text/event-stream") {
        m_format = Format::Events;
    } else if (type == "application/json") {
        m_format = Format::Json;
    } else {
        fail(502,
             QStringLiteral("The address of the language model belongs to something else. Check "
                            "the address in Quillet's settings."),
             QStringLiteral("unexpected content type"));
    }
}

void ChatCompletion::read()
{
    chooseFormat();
    if (m_settled)
        return;
    m_idle.start();
    const QByteArray bytes = m_reply->readAll();
    m_received += bytes.size();
    if (m_format == Format::Error) {
        if (m_body.size() < maxErrorBody)
            m_body += bytes;
        if (m_received > maxErrorBody)
            failWithStatus(m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt());
        return;
    }
    if (m_format == Format::Json)
        m_body += bytes;
    if (m_format == Format::Events) {
        const auto events = m_events.feed(bytes);
        for (const QByteArray &event : events)
            takeEvent(event);
    }
    isWithinBounds();
}

bool ChatCompletion::isWithinBounds()
{
    if (m_settled)
        return false;
    constexpr qsizetype step = 2048;
    bool isEndless = m_received > maxReceived || m_events.overflowed() ||
                     m_body.size() > 2 * m_maxText || m_text.size() > m_maxText;
    if (!isEndless && m_text.size() >= m_checked + step) {
        m_checked = m_text.size();
        isEndless = isLooping(m_text, m_source);
    }
    if (isEndless) {
        fail(502, QStringLiteral("The language model did not come to an end. Try again."),
             QStringLiteral("answer longer than its bound, or in a loop"));
    }
    return !isEndless;
}

void ChatCompletion::takeEvent(const QByteArray &event)
{
    if (m_settled || m_streamEnded)
        return;
    if (event == "[DONE]") {
        m_streamEnded = true;
        replyFinished();
        return;
    }
    const QJsonObject object = QJsonDocument::fromJson(event).object();
    if (object.contains(u"error")) {
        fail(502, QStringLiteral("The language model had a fault of its own. Try again."),
             QStringLiteral("error in the stream: ") +
                 errorName(object.value(u"error").toObject()));
    } else if (object.isEmpty()) {
        fail(502, QStringLiteral("The language model's answer could not be read. Try again."),
             QStringLiteral("an event is not a JSON object"));
    } else {
        takeChoice(object, u"delta");
    }
}

bool ChatCompletion::takeChoice(const QJsonObject &message, const char16_t *field)
{
    // An event without choices reports usage.
    const QJsonObject choice = message.value(u"choices").toArray().at(0).toObject();
    const QJsonObject content = choice.value(QStringView(field)).toObject();
    const QString text = contentOf(content.value(u"content"));
    m_text += text;
    m_refusal += content.value(u"refusal").toString();
    if (!isWithinBounds())
        return true;
    if (!text.isEmpty() && m_piece)
        m_piece(text);
    if (const QString reason = choice.value(u"finish_reason").toString(); !reason.isEmpty())
        m_finishReason = reason;
    return !content.isEmpty();
}

void ChatCompletion::replyFinished()
{
    if (m_settled)
        return;
    if (!m_streamEnded) {
        read();
        if (m_settled)
            return;
    }
    const auto error = m_streamEnded ? QNetworkReply::NoError : m_reply->error();
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status != 0 && status != 200) {
        failWithStatus(status);
        return;
    }
    if (error != QNetworkReply::NoError) {
        failWithNetworkError(error);
        return;
    }
    if (m_format == Format::Json) {
        const QJsonObject object = QJsonDocument::fromJson(m_body).object();
        const bool isChat = takeChoice(object, u"message");
        if (m_settled)
            return;
        if (!isChat) {
            fail(502, QStringLiteral("The language model's answer could not be read. Try again."),
                 QStringLiteral("the body is not a chat completion"));
            return;
        }
    } else if (!m_streamEnded) {
        const auto events = m_events.finish();
        for (const QByteArray &event : events)
            takeEvent(event);
        if (m_settled)
            return;
        if (!m_streamEnded && m_finishReason.isEmpty()) {
            failWithNetworkError(QNetworkReply::RemoteHostClosedError);
            return;
        }
    }
    if (m_finishReason == u"length") {
        fail(502, tooLongSentence(),
             QStringLiteral("the answer was cut off (finish_reason length)"));
    } else if (m_finishReason == u"content_filter" || (m_text.isEmpty() && !m_refusal.isEmpty())) {
        ChatResult result{502, QStringLiteral("The language model's provider refused this text."),
                          QStringLiteral("refused by the provider"), false};
        result.refused = true;
        settle(std::move(result));
    } else {
        settle({200, m_text, {}, false});
    }
}

void ChatCompletion::failWithStatus(int httpStatus)
{
    const QJsonObject error = QJsonDocument::fromJson(m_body).object().value(u"error").toObject();
    const QString name = errorName(error);
    // How hosted models and llama.cpp's server name it; both answer 400.
    const bool tooLong = name == u"context_length_exceeded" || name == u"exceed_context_size_error";
    QString sentence;
    int status = 502;
    if (httpStatus == 401 || httpStatus == 403) {
        sentence = QStringLiteral("The language model refused the key. Check the key in Quillet's "
                                  "settings.");
    } else if (httpStatus == 404) {
        sentence = QStringLiteral("The language model's server does not know the model or the "
                                  "address. Check both in Quillet's settings.");
    } else if (httpStatus == 413 || tooLong) {
        sentence = tooLongSentence();
    } else if (httpStatus == 429) {
        sentence = QStringLiteral("The language model is busy, or its quota is used up. Try again "
                                  "in a while.");
    } else if (httpStatus == 408 || httpStatus == 504) {
        status = 504;
        sentence = QStringLiteral("The language model took too long to answer. Try again, or with "
                                  "a shorter text.");
    } else if (httpStatus >= 300 && httpStatus < 400) {
        sentence = QStringLiteral("The language model has moved to another address. Check the "
                                  "address in Quillet's settings.");
    } else if (httpStatus >= 500) {
        sentence = QStringLiteral("The language model had a fault of its own. Try again.");
    } else {
        sentence = QStringLiteral("The language model did not accept the request. Check the model "
                                  "in Quillet's settings.");
    }
    ChatResult result{status, sentence, QStringLiteral("HTTP %1 (%2)").arg(httpStatus).arg(name),
                      false};
    result.httpStatus = httpStatus;
    bool valid = false;
    const int seconds = m_reply->rawHeader("Retry-After").toInt(&valid);
    if (valid && seconds >= 0)
        result.retryAfter = std::chrono::seconds(seconds);
    settle(std::move(result));
}

void ChatCompletion::failWithNetworkError(QNetworkReply::NetworkError error)
{
    const QString cause =
        QString::fromLatin1(QMetaEnum::fromType<QNetworkReply::NetworkError>().valueToKey(error));
    ChatResult result{502, {}, cause, false};
    switch (error) {
    case QNetworkReply::ConnectionRefusedError:
    case QNetworkReply::HostNotFoundError:
    case QNetworkReply::NetworkSessionFailedError:
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::UnknownNetworkError:
        result.unreachable = true;
        result.text = QStringLiteral("The language model at %1 cannot be reached. Check that it "
                                     "is running.")
                          .arg(m_settings.server());
        break;
    case QNetworkReply::TimeoutError:
        result.status = 504;
        result.text = QStringLiteral("The language model took too long to answer. Try again, or "
                                     "with a shorter text.");
        break;
    case QNetworkReply::SslHandshakeFailedError:
        result.text = QStringLiteral("A secure connection to the language model could not be "
                                     "made. Check the address in Quillet's settings.");
        break;
    default:
        result.text = QStringLiteral("The connection to the language model broke off. Try again.");
        break;
    }
    settle(std::move(result));
}

void ChatCompletion::fail(int status, const QString &sentence, const QString &cause)
{
    settle({status, sentence, cause, false});
}

void ChatCompletion::settle(ChatResult result)
{
    if (m_settled)
        return;
    m_settled = true;
    m_idle.stop();
    // Later, so that the listener may destroy the reply's manager.
    QMetaObject::invokeMethod(
        this, [this, result = std::move(result)] { m_done(result); }, Qt::QueuedConnection);
}
