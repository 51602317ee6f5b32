// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "Setup.h"

#include "QtHTTPTransport.h"
#include "SettingsUserDefaults.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <sqlite3.h>

#include <ctime>

namespace metricpost::bench
{

Setup::Setup()
    : environment(Environment::standard())
{
    environment.cachesFolder = folder.path();
    environment.legacyArchiveFolder.reset();
    environment.userDefaults =
        std::make_shared<SettingsUserDefaults>(folder.filePath(QStringLiteral("suite.conf")));
    environment.applicationState = std::make_shared<ApplicationState>();
    environment.defaultServerURL.clear();
    environment.doNotTrack = false;
}

std::unique_ptr<MetricPostInstance> Setup::makeInstance(bool gzip) const
{
    MetricPostOptions options;
    options.token = QStringLiteral("bench");
    options.useGzipCompression = gzip;
    return std::make_unique<MetricPostInstance>(options, environment);
}

void trackOne(MetricPostInstance &instance)
{
    instance.track(QStringLiteral("Execute"),
                   {{QStringLiteral("command"), QStringLiteral("tone-changer")}});
}

void drain(MetricPostInstance &instance)
{
    QEventLoop loop;
    instance.flush(true, [&loop] { loop.quit(); });
    loop.exec();
    instance.waitUntilStored();
}

int storedRows(const QString &databasePath)
{
    sqlite3 *database = nullptr;
    sqlite3_stmt *statement = nullptr;
    sqlite3_open(databasePath.toUtf8().constData(), &database);
    sqlite3_prepare_v2(database, "SELECT count(*) FROM metricpost_bench_events", -1, &statement,
                       nullptr);
    sqlite3_step(statement);
    const int count = sqlite3_column_int(statement, 0);
    sqlite3_finalize(statement);
    sqlite3_close(database);
    return count;
}

double processCpuSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
}

} // namespace metricpost::bench
