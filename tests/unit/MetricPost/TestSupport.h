// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "Environment.h"
#include "FlushRequest.h"
#include "JSONHandler.h"
#include "MetricPost/MetricPostInstance.h"
#include "MetricPost/MetricPostLogging.h"
#include "MetricPostPersistence.h"
#include "SettingsUserDefaults.h"
#include "support/WaitUntil.h"

#include <QStringList>
#include <QTemporaryDir>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace metricpost::test
{

/// Collects the log, every level enabled, while it lives.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    /// "<level> <text>", in order.
    QStringList lines() const;
    bool contains(const QString &line) const { return lines().contains(line); }

private:
    class Sink;
    std::shared_ptr<Sink> m_sink;
};

/// Answers each request at once with what the test lined up, and remembers the requests. A
/// missing outcome never answers.
class FakeTransport : public HTTPTransport
{
public:
    Cancel start(const URLRequest &request, Completion completion) override;
    void answerWith(const std::function<std::optional<HTTPOutcome>(int number)> &answers);
    /// The same with the request; the requests are then not kept.
    void answerRequests(const std::function<HTTPOutcome(const URLRequest &)> &answers);
    QList<URLRequest> requests() const;
    int abandoned() const { return m_abandoned; }

private:
    std::atomic<int> m_abandoned = 0;
    mutable std::mutex m_mutex;
    // No shared list: its reference count is no order that the thread sanitizer would accept.
    std::vector<URLRequest> m_requests;
    std::function<std::optional<HTTPOutcome>(int)> m_answers;
    std::function<HTTPOutcome(const URLRequest &)> m_requestAnswers;
};

HTTPOutcome answer(int status, const QByteArray &body, const QByteArray &retryAfter = {});

/// A folder, a clock that stands still and doubles for everything else.
struct Sandbox {
    /// Built with what is set at that moment.
    Environment environment() const;
    MetricPostPersistence::Surroundings storeSurroundings() const;
    FlushRequest::Surroundings requestSurroundings() const;
    QString databasePath(const QString &letters) const;
    int storedEvents(const QString &letters) const;

    QTemporaryDir folder;
    std::shared_ptr<std::atomic<double>> now = std::make_shared<std::atomic<double>>(1000.0);
    std::shared_ptr<std::atomic<quint32>> random = std::make_shared<std::atomic<quint32>>(1);
    std::shared_ptr<UserDefaults> defaults =
        std::make_shared<SettingsUserDefaults>(folder.filePath(QStringLiteral("defaults.conf")));
    std::shared_ptr<FakeTransport> transport = std::make_shared<FakeTransport>();
    std::shared_ptr<ApplicationState> applicationState = std::make_shared<ApplicationState>();
    bool doNotTrack = false;

    /// What another process would have: the same files, nothing else.
    Environment otherProcess() const;
};

/// Flushes and waits for the completion.
void flushAndWait(MetricPostInstance &instance, bool performFullFlush = false);

/// Records of a batch that went over the wire.
QList<Properties> recordsOf(const QByteArray &json);

/// A nested text, number, … of a record, by its keys; a null value when there is none.
MetricPostType at(const MetricPostType &value, const QStringList &path);
QString textAt(const MetricPostType &value, const QStringList &path);

/// What SQLite says to a query on the file, the columns of each row joined by "|".
QStringList query(const QString &databasePath, const QString &sql);

} // namespace metricpost::test
