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
};

struct ChatResult {
    /// 200, 502 (the server failed) or 504 (it was too slow).
    int status = 200;
    /// The model's answer, or for a failure a sentence for the user.
    QString text;
    /// For the log: never with text of the user's or the model's.
    QString cause;
    /// Nobody listens at the address, or it cannot be found.
    bool unreachable = false;
};

/// One request to a chat completions interface: POST of JSON, an answer that
/// streams as server-sent events or comes whole as JSON. Redirects are not
/// followed, so that the key stays with the server it was given for.
/// Destroying it cancels. Thread: the event loop's.
class ChatCompletion : public QObject
{
public:
    using Done = std::function<void(ChatResult)>;

    /// Calls `done` once, later, never after destruction; this must not be
    /// destroyed inside `done`. `pool` outlives it.
    ChatCompletion(NetworkPool &pool, const ModelSettings &settings, const ChatPrompt &prompt,
                   Done done);
    ~ChatCompletion() override;

private:
    enum class Format { Unknown, Events, Json, Error };

    void chooseFormat();
    void read();
    void takeEvent(const QByteArray &event);
    bool takeChoice(const QJsonObject &message, const char16_t *field);
    void takeErrorBody(const QByteArray &body);
    void replyFinished();
    void fail(int status, const QString &sentence, const QString &cause);
    void failWithStatus(int httpStatus);
    void failWithNetworkError(QNetworkReply::NetworkError error);
    void settle(ChatResult result);

    NetworkPool &m_pool;
    NetworkPool::Manager m_manager;
    ModelSettings m_settings;
    Done m_done;
    QNetworkReply *m_reply = nullptr;
    QTimer m_idle;
    Format m_format = Format::Unknown;
    ServerSentEvents m_events;
    QByteArray m_body;
    QString m_text;
    QString m_finishReason;
    qint64 m_received = 0;
    qsizetype m_maximumText = 0;
    bool m_streamEnded = false;
    bool m_settled = false;
};
