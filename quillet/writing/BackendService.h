// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "quillet/writing/LiveAnswer.h"

#include <QMap>
#include <QNetworkAccessManager>
#include <QObject>
#include <QPointer>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <variant>

/// Why the client itself gave up on a request.
enum class BackendError {
    /// The endpoint with the query attached is no valid URL.
    invalidURL,
    /// The transfer ended without an error and without a body.
    noData,
};

/// What a request failed with: a BackendError, or a sentence that says what went wrong on the way.
/// The sentence repeats neither the URL nor the text.
using BackendFailure = std::variant<BackendError, QString>;

/// The failure as a log line shows it.
QString describe(const BackendFailure &failure);

/// An answer with what the backend said about it.
struct BackendAnswer {
    QString text;
    /// Who wrote it, such as a language model and where it runs; empty when nothing was said.
    QString writer;
    /// A sentence for the user beside a text that is good to use; usually empty.
    QString remark;
};

/// What a BackendRequest ends: the way to an answer, which destroys itself when it has one.
class BackendWork : public QObject
{
public:
    using QObject::QObject;
    /// Ends the work at once; nothing is called back any more. May be called inside a call back.
    virtual void end() = 0;
};

/// A request under way. Destroying it ends the request, and nothing is called back any more.
class BackendRequest
{
public:
    explicit BackendRequest(BackendWork *work)
        : m_work(work)
    {
    }
    BackendRequest(const BackendRequest &) = delete;
    BackendRequest &operator=(const BackendRequest &) = delete;
    ~BackendRequest()
    {
        if (m_work)
            m_work->end();
    }

private:
    QPointer<BackendWork> m_work;
};

/// The client of the writing backend: one HTTP GET for each command; the body is the result.
/// No state between requests, no retries, no cache. Main thread.
class BackendService : public QObject
{
    Q_OBJECT

public:
    using Result = std::variant<QString, BackendFailure>;
    using Completion = std::function<void(const Result &)>;
    using AnswerResult = std::variant<BackendAnswer, BackendFailure>;
    using AnswerCompletion = std::function<void(const AnswerResult &)>;
    using Beginning = std::function<void(const AnswerPiece &)>;

    /// `timeWithoutData`: how long a request waits for the next byte.
    explicit BackendService(QObject *parent = nullptr,
                            std::chrono::milliseconds timeWithoutData = std::chrono::seconds(60));

    /// The application's one client, created by the first call.
    static BackendService &shared();

    /// Requests `from` with `parameters` as its query and calls `completion` exactly once: before
    /// the call returns when `from` is no URL, from the event loop otherwise. Any HTTP status with
    /// a body that is UTF-8 is a success. Gives up after 60 seconds without data, and on an answer
    /// larger than maxAnswerSize bytes.
    void get(const QString &from, const QMap<QString, QString> &parameters, Completion completion);

    /// As get(), and meanwhile hands each piece of the answer to `beginning` as it comes, which the
    /// request asks for in a header field. The completed text counts: it can differ from the
    /// pieces. Calls back from the event loop only.
    [[nodiscard]] std::unique_ptr<BackendRequest>
    getAsItComes(const QString &from, const QMap<QString, QString> &parameters, Beginning beginning,
                 AnswerCompletion completion);

    static constexpr qint64 maxAnswerSize = 32 * 1024 * 1024;

private:
    class Transfer;

    QNetworkAccessManager m_session;
    std::chrono::milliseconds m_timeWithoutData;
};
