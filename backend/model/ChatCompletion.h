// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/model/Configuration.h"
#include "backend/model/NetworkPool.h"
#include "backend/model/ServerSentEvents.h"

#include <QNetworkReply>
#include <QTimer>
#include <functional>

struct ChatPrompt {
    QString system;
    QString user;
    double temperature = 0.3;
    /// The longest answer that is of use.
    int maxTokens = 1024;
    /// Whether to send only what every server knows: some refuse a request for a field that is new
    /// to them.
    bool plain = false;
};

struct ChatResult {
    /// 200, 502 (the server failed) or 504 (it was too slow).
    int status = 200;
    /// The model's answer, or for a failure a sentence for the user.
    QString text;
    /// For the log: never with text of the user's or the model's.
    QString cause;
    /// Nothing listens at the address, or it cannot be found.
    bool unreachable = false;
    /// The server's own status; 0 without one.
    int httpStatus = 0;
    /// How long the server asks to wait (RFC 9110 §10.2.3); negative when it does not say.
    std::chrono::seconds retryAfter{-1};
    /// The model will not do this, whatever the settings: `text` says so.
    bool refused = false;
};

/// One request to a chat completions interface: POST of JSON, an answer that
/// streams as server-sent events or comes whole as JSON. Redirects are not
/// followed, so that the key stays with the server it was given for.
/// Destroying it cancels. Thread: the event loop's.
class ChatCompletion : public QObject
{
public:
    using Done = std::function<void(ChatResult)>;
    using Piece = std::function<void(const QString &)>;

    /// Calls `done` once, later, never after destruction, and `piece` for each part
    /// of a streamed answer before that; this must not be destroyed inside either.
    /// `source` is what the model works on. `pool` outlives it.
    ChatCompletion(NetworkPool &pool, const ModelSettings &settings, const ChatPrompt &prompt,
                   QString source, Piece piece, Done done);
    ~ChatCompletion() override;

private:
    enum class Format { Unknown, Events, Json, Error };

    void chooseFormat();
    void read();
    void takeEvent(const QByteArray &event);
    bool takeChoice(const QJsonObject &message, const char16_t *field);
    bool isWithinBounds();
    void replyFinished();
    void fail(int status, const QString &sentence, const QString &cause);
    void failWithStatus(int httpStatus);
    void failWithNetworkError(QNetworkReply::NetworkError error);
    void settle(ChatResult result);

    NetworkPool &m_pool;
    NetworkPool::Manager m_manager;
    ModelSettings m_settings;
    QString m_source;
    Piece m_piece;
    Done m_done;
    QNetworkReply *m_reply = nullptr;
    QTimer m_idle;
    Format m_format = Format::Unknown;
    ServerSentEvents m_events;
    QByteArray m_body;
    QString m_text;
    /// How much of m_text was looked at for a loop.
    qsizetype m_checked = 0;
    QString m_refusal;
    QString m_finishReason;
    qint64 m_received = 0;
    qsizetype m_maxText = 0;
    bool m_streamEnded = false;
    bool m_settled = false;
};
