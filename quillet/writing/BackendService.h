// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QMap>
#include <QNetworkAccessManager>
#include <QObject>
#include <QString>

#include <functional>
#include <variant>

/// Why the client itself gave up on a request.
enum class BackendError {
    /// The endpoint with the query attached is no valid URL.
    invalidURL,
    /// The transfer ended without an error and without a body.
    noData,
};

/// What a request failed with: a BackendError, or the description of the transport's own error.
using BackendFailure = std::variant<BackendError, QString>;

/// The failure as a log line shows it.
QString describe(const BackendFailure &failure);

/// The client of the writing backend: one HTTP GET for each command; the body is the result.
/// No state between requests, no retries, no cache. Main thread.
class BackendService : public QObject
{
    Q_OBJECT

public:
    using Result = std::variant<QString, BackendFailure>;
    using Completion = std::function<void(const Result &)>;

    explicit BackendService(QObject *parent = nullptr);

    /// The application's one client, created by the first call.
    static BackendService &shared();

    /// Requests `from` with `parameters` as its query and calls `completion` exactly once: before
    /// the call returns when `from` is no URL, from the event loop otherwise. Any HTTP status with
    /// a body that is UTF-8 is a success. Gives up after 60 seconds without data, and on an answer
    /// larger than MaximumAnswerSize bytes.
    void get(const QString &from, const QMap<QString, QString> &parameters, Completion completion);

    static constexpr qint64 MaximumAnswerSize = 32 * 1024 * 1024;

private:
    void request(const QUrl &url, Completion completion);

    QNetworkAccessManager m_session;
};
