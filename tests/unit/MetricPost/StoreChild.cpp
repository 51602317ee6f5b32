// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// A process that the tests lock a store with, kill, or starve of disk space.
//   metricpost_child lock FILE MILLISECONDS    holds the write lock that long
//   metricpost_child track FOLDER TOKEN        tracks without end; prints a dot for each row stored
//   metricpost_child starve FOLDER TOKEN       tracks while files cannot grow
//   metricpost_child bare FOLDER TOKEN         tracks and flushes without a QCoreApplication
//   metricpost_child obey FOLDER TOKEN URL     does what standard input says: "track N" or "drain"
#include "Environment.h"
#include "MetricPost/MetricPostInstance.h"
#include "QtHTTPTransport.h"
#include "SettingsUserDefaults.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>

#include <sqlite3.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
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

int bare(const QString &folder, const QString &token)
{
    MetricPostOptions options;
    options.token = token;
    MetricPostInstance instance(options, environmentIn(folder));
    instance.track(QStringLiteral("bare"));
    for (int i = 0; i < 3; ++i)
        instance.flush(true, [] { std::abort(); });
    instance.waitUntilStored();
    return instance.shutdown(std::chrono::seconds(10)) ? 0 : 1;
}

int obey(const QString &folder, const QString &token, const QString &url)
{
    Environment environment = environmentIn(folder);
    environment.transport = std::make_shared<QtHTTPTransport>();
    MetricPostOptions options;
    options.token = token;
    options.serverURL = url;
    options.flushInterval = Seconds(0);
    MetricPostInstance instance(options, environment);
    for (std::string order; std::getline(std::cin, order);) {
        if (order == "drain") {
            QEventLoop loop;
            instance.flush(true, [&loop] { loop.quit(); });
            loop.exec();
        } else {
            for (int number = std::stoi(order.substr(order.find(' '))); number > 0; --number)
                instance.track(QStringLiteral("Execute"), {{QStringLiteral("n"), number}});
        }
        instance.waitUntilStored();
        std::puts("done");
        std::fflush(stdout);
    }
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc == 4 && std::strcmp(argv[1], "bare") == 0)
        return bare(QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3]));
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 5 && arguments[1] == u"obey")
        return obey(arguments[2], arguments[3], arguments[4]);
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
