// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "TestSupport.h"

#include "MetricPost/MetricPostLogger.h"

#include <QFile>

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace metricpost::test
{

namespace
{

constexpr std::array allLevels{MetricPostLogLevel::debug, MetricPostLogLevel::info,
                               MetricPostLogLevel::warning, MetricPostLogLevel::error};

} // namespace

class LogCapture::Sink : public MetricPostLogging
{
public:
    void addMessage(const MetricPostLogMessage &message) override
    {
        const std::lock_guard lock(mutex);
        lines.append(rawValue(message.level) + u' ' + message.text);
    }
    std::mutex mutex;
    QStringList lines;
};

LogCapture::LogCapture()
    : m_sink(std::make_shared<Sink>())
{
    MetricPostLogger::addLogging(m_sink);
    for (const auto level : allLevels)
        MetricPostLogger::enableLevel(level);
}

LogCapture::~LogCapture()
{
    for (const auto level : allLevels)
        MetricPostLogger::disableLevel(level);
    MetricPostLogger::removeLogging(m_sink);
}

QStringList LogCapture::lines() const
{
    const std::lock_guard lock(m_sink->mutex);
    return m_sink->lines;
}

HTTPTransport::Cancel FakeTransport::start(const URLRequest &request, Completion completion)
{
    std::optional<HTTPOutcome> outcome = answer(200, "1");
    if (m_requestAnswers) {
        outcome = m_requestAnswers(request);
    } else {
        const std::lock_guard lock(m_mutex);
        m_requests.push_back(request);
        if (m_answers)
            outcome = m_answers(int(m_requests.size()));
    }
    if (outcome)
        completion(*outcome);
    return [this, isOpen = !outcome] { m_abandoned += isOpen; };
}

void FakeTransport::answerWith(const std::function<std::optional<HTTPOutcome>(int)> &answers)
{
    const std::lock_guard lock(m_mutex);
    m_answers = answers;
}

void FakeTransport::answerRequests(const std::function<HTTPOutcome(const URLRequest &)> &answers)
{
    m_requestAnswers = answers;
}

QList<URLRequest> FakeTransport::requests() const
{
    const std::lock_guard lock(m_mutex);
    return {m_requests.begin(), m_requests.end()};
}

HTTPOutcome answer(int status, const QByteArray &body, const QByteArray &retryAfter)
{
    URLResponse response{status, {}};
    if (!retryAfter.isEmpty())
        response.headers.append({"retry-after", retryAfter});
    return {response, body, {}};
}

Environment Sandbox::environment() const
{
    return {
        .now = [clock = now] { return clock->load(); },
        .random = [source = random] { return source->fetch_add(1); },
        .userDefaults = defaults,
        .cachesFolder = folder.path(),
        .legacyArchiveFolder = folder.filePath(QStringLiteral("archive")),
        .transport = transport,
        .applicationState = applicationState,
        .systemInfo = {QStringLiteral("Linux"), QStringLiteral("12"), QStringLiteral("Maker"),
                       QStringLiteral("Box"), QStringLiteral("d1")},
        .defaultServerURL = QStringLiteral("http://collector.test"),
        .doNotTrack = doNotTrack,
    };
}

MetricPostPersistence::Surroundings Sandbox::storeSurroundings() const
{
    const Environment all = environment();
    return {all.now, all.cachesFolder, all.userDefaults, all.legacyArchiveFolder, {}};
}

FlushRequest::Surroundings Sandbox::requestSurroundings() const
{
    const Environment all = environment();
    return {all.transport, all.now, all.random};
}

Environment Sandbox::otherProcess() const
{
    Environment other = environment();
    other.userDefaults =
        std::make_shared<SettingsUserDefaults>(folder.filePath(QStringLiteral("defaults.conf")));
    other.transport = std::make_shared<FakeTransport>();
    other.applicationState = std::make_shared<ApplicationState>();
    return other;
}

QString Sandbox::databasePath(const QString &letters) const
{
    return folder.filePath(letters + QStringLiteral("_MPDB.sqlite"));
}

int Sandbox::storedEvents(const QString &letters) const
{
    const QString count = u"SELECT count(*) FROM metricpost_%1_events"_qs.arg(letters);
    return query(databasePath(letters), count).value(0).toInt();
}

void flushAndWait(MetricPostInstance &instance, bool performFullFlush)
{
    const auto done = std::make_shared<bool>(false);
    instance.flush(performFullFlush, [done] { *done = true; });
    ASSERT_TRUE(waitUntil([&] { return *done; }));
    // The deletions that the flush asked for come behind it.
    instance.waitUntilStored();
}

QList<Properties> recordsOf(const QByteArray &json)
{
    QList<Properties> records;
    const auto value = JSONHandler::parse(json, JSONHandler::TopLevel::Container);
    if (const ValueList *list = value ? value->get<ValueList>() : nullptr) {
        for (const MetricPostType &element : *list)
            records.append(element.get<Properties>() ? *element.get<Properties>() : Properties());
    }
    return records;
}

MetricPostType at(const MetricPostType &value, const QStringList &path)
{
    MetricPostType current = value;
    for (const QString &key : path) {
        const Properties *dictionary = current.get<Properties>();
        current = MetricPostType(dictionary ? dictionary->value(key) : MetricPostType());
    }
    return current;
}

QString textAt(const MetricPostType &value, const QStringList &path)
{
    return at(value, path).description();
}

QStringList query(const QString &databasePath, const QString &sql)
{
    QStringList rows;
    sqlite3 *database = nullptr;
    sqlite3_open(QFile::encodeName(databasePath).constData(), &database);
    sqlite3_busy_timeout(database, 10'000);
    const auto collect = [](void *list, int columns, char **values, char **) {
        QStringList row;
        for (int i = 0; i < columns; ++i)
            row.append(QString::fromUtf8(values[i]));
        static_cast<QStringList *>(list)->append(row.join(u'|'));
        return 0;
    };
    char *error = nullptr;
    sqlite3_exec(database, sql.toUtf8().constData(), collect, &rows, &error);
    if (error)
        rows = {QStringLiteral("error: ") + QString::fromUtf8(error)};
    sqlite3_free(error);
    sqlite3_close(database);
    return rows;
}

} // namespace metricpost::test
