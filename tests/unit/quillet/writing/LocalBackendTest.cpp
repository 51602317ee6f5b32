// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/writing/LocalBackend.h"

#include "BackendProcess.h"
#include "support/WaitUntil.h"

#include <QFile>
#include <QTcpSocket>
#include <QUrlQuery>
#include <gtest/gtest.h>
#include <optional>
#include <signal.h>
#include <sys/resource.h>

namespace
{

const QString program = QStringLiteral(BACKEND_PROGRAM);

struct Endpoint {
    QUrl generate;
    QString failure;
};

Endpoint endpointOf(LocalBackend &backend)
{
    std::optional<Endpoint> result;
    backend.withEndpoint([&result](const QString &url, const QString &failure) {
        result = Endpoint{QUrl(url), failure};
    });
    EXPECT_FALSE(result.has_value());
    EXPECT_TRUE(waitUntil([&] { return result.has_value(); }));
    return result.value_or(Endpoint{});
}

QString secretOf(const QUrl &generate)
{
    return generate.path().section(u'/', 2, 2);
}

Answer rate(const Endpoint &endpoint)
{
    QUrl url = endpoint.generate;
    url.setQuery(QUrlQuery{{u"command"_qs, u"rate"_qs}, {u"text"_qs, QString()}});
    return fetch(url);
}

bool refuses(int port)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, quint16(port));
    waitUntil([&] {
        return socket.state() == QAbstractSocket::ConnectedState ||
               socket.state() == QAbstractSocket::UnconnectedState;
    });
    return socket.state() == QAbstractSocket::UnconnectedState;
}

TEST(LocalBackend, ServesWithASecretThatNobodyElseSees)
{
    LocalBackend backend(program);
    QList<QUrl> analytics;
    QObject::connect(&backend, &LocalBackend::analyticsMoved, &backend,
                     [&](const QString &url) { analytics += QUrl(url); });
    const Endpoint endpoint = endpointOf(backend);
    ASSERT_EQ(endpoint.failure, QString());
    EXPECT_EQ(rate(endpoint).status, 200);
    EXPECT_EQ(endpointOf(backend).generate, endpoint.generate);
    ASSERT_EQ(analytics.size(), 1) << "once for each start";
    QUrl track = analytics.first();
    track.setPath(u"/track/"_qs);
    EXPECT_EQ(post(track, QByteArray(100'000, 'x')).text, u"1"_qs);

    QUrl stranger = endpoint.generate;
    stranger.setPath(u"/generate"_qs);
    EXPECT_EQ(fetch(stranger).status, 401);
    const QString secret = secretOf(endpoint.generate);
    EXPECT_GE(secret.size(), 32);
    EXPECT_EQ(track.password(), secret);
    for (const char *file : {"cmdline", "environ"}) {
        QFile visible(u"/proc/%1/%2"_qs.arg(backend.processId()).arg(QLatin1String(file)));
        const bool isOpen = visible.open(QIODevice::ReadOnly); // the system may keep it to itself
        EXPECT_FALSE(isOpen && visible.readAll().contains(secret.toLatin1()));
    }
}

TEST(LocalBackend, SharesOneChildAndStartsItAgainWhenItDied)
{
    LocalBackend backend(program);
    QList<QUrl> urls;
    for (int i = 0; i < 5; ++i)
        backend.withEndpoint([&](const QString &url, const QString &) { urls += QUrl(url); });
    ASSERT_TRUE(waitUntil([&] { return urls.size() == 5; }));
    EXPECT_EQ(urls, QList<QUrl>(5, urls.first()));
    EXPECT_EQ(endpointOf(backend).generate, urls.first());

    ::kill(pid_t(backend.processId()), SIGKILL);
    ASSERT_TRUE(waitUntil([&] { return backend.processId() == 0; }));
    const Endpoint again = endpointOf(backend);
    EXPECT_NE(secretOf(again.generate), secretOf(urls.first()));
    EXPECT_EQ(rate(again).status, 200);
}

TEST(LocalBackend, ReportsAProgramThatDoesNotServe)
{
    for (const QString &wrong : {u"/nonexistent/quillet-backend"_qs, u"/bin/false"_qs, QString()}) {
        LocalBackend backend(wrong);
        // Twice: the second request tries again.
        for (int i = 0; i < 2; ++i) {
            const Endpoint endpoint = endpointOf(backend);
            EXPECT_FALSE(endpoint.generate.isValid());
            EXPECT_TRUE(endpoint.failure.startsWith(u"The local writing backend"))
                << qPrintable(endpoint.failure);
        }
    }
}

TEST(LocalBackend, EndsWithItsOwner)
{
    int port = 0;
    {
        LocalBackend backend(program);
        port = endpointOf(backend).generate.port();
        EXPECT_FALSE(refuses(port));
    }
    EXPECT_TRUE(waitUntil([&] { return refuses(port); }));
}

TEST(LocalBackend, ChildWritesNoCoreDump)
{
    const rlimit unlimited{RLIM_INFINITY, RLIM_INFINITY};
    ::setrlimit(RLIMIT_CORE, &unlimited); // as far as this user may
    LocalBackend backend(program);
    ASSERT_EQ(endpointOf(backend).failure, QString());
    QFile file(u"/proc/%1/limits"_qs.arg(backend.processId()));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray limits = file.readAll();
    const QByteArray name = "Max core file size";
    const auto core = limits.indexOf(name);
    ASSERT_GE(core, 0);
    EXPECT_TRUE(limits.mid(core + name.size(), 60).simplified().startsWith("0 0"));
}

TEST(LocalBackend, ChildWithoutASecretDoesNotServe)
{
    QProcess child;
    child.start(program, {u"--child"_qs});
    child.write("\n");
    ASSERT_TRUE(waitUntil([&] { return child.state() == QProcess::NotRunning; }));
    EXPECT_TRUE(child.readAllStandardOutput().isEmpty());
}

} // namespace
