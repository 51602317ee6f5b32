// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// A process that the tests lock a store with, kill, or starve of disk space.
//   metricpost_child lock FILE MILLISECONDS    holds the write lock that long
//   metricpost_child track FOLDER TOKEN        tracks without end; prints a dot for each committed
//   row metricpost_child starve FOLDER TOKEN       tracks while files cannot grow
#include "Environment.h"
#include "MetricPost/MetricPostInstance.h"
#include "QtHTTPTransport.h"
#include "SettingsUserDefaults.h"

#include <QCoreApplication>
#include <QThread>

#include <sqlite3.h>

#include <csignal>
#include <cstdio>
#include <sys/resource.h>

using namespace metricpost;

namespace
{

Environment environmentIn(const QString &folder)
{
    Environment environment = Environment::standard();
    environment.cachesFolder = folder;
    environment.legacyArchiveFolder.reset();
    environment.userDefaults =
        std::make_shared<SettingsUserDefaults>(folder + QStringLiteral("/suite.conf"));
    environment.defaultServerURL.clear();
    environment.doNotTrack = false;
    return environment;
}

int lock(const QByteArray &file, unsigned long milliseconds)
{
    sqlite3 *database = nullptr;
    if (sqlite3_open(file.constData(), &database) != SQLITE_OK ||
        sqlite3_exec(database, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr) != SQLITE_OK) {
        return 1;
    }
    std::puts("locked");
    std::fflush(stdout);
    QThread::msleep(milliseconds);
    sqlite3_exec(database, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_close(database);
    return 0;
}

int track(MetricPostInstance &instance)
{
    constexpr int group = 16;
    for (int number = 0;; ++number) {
        instance.track(QString::number(number));
        if (number % group != group - 1)
            continue;
        instance.waitUntilStored();
        std::fputs("................", stdout);
        std::fflush(stdout);
    }
}

int starve(const Environment &environment, const MetricPostOptions &options)
{
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit size{};
    getrlimit(RLIMIT_FSIZE, &size);
    const rlim_t before = size.rlim_cur;
    size.rlim_cur = 100 * 1024;
    setrlimit(RLIMIT_FSIZE, &size);
    MetricPostInstance instance(options, environment);
    for (int number = 0; number < 300; ++number)
        instance.track(QString::number(number), {{QStringLiteral("t"), QString(2000, u'x')}});
    instance.waitUntilStored();
    size.rlim_cur = before;
    setrlimit(RLIMIT_FSIZE, &size);
    instance.track(QStringLiteral("fed"));
    return instance.shutdown(std::chrono::seconds(1)) ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4)
        return 2;
    if (arguments[1] == u"lock")
        return lock(arguments[2].toLocal8Bit(), arguments[3].toULong());

    const Environment environment = environmentIn(arguments[2]);
    MetricPostOptions options;
    options.token = arguments[3];
    if (arguments[1] == u"starve")
        return starve(environment, options);
    MetricPostInstance instance(options, environment);
    return track(instance);
}
