// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "InstanceFixture.h"

#include "LoopbackServer.h"
#include "QtHTTPTransport.h"

#include <QFile>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>

using namespace metricpost;
using namespace metricpost::test;

namespace
{

constexpr int limitMilliseconds = 60'000;

quint16 unusedPort()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return server.serverPort();
}

} // namespace

// A strict server in front of the service, which answers a method in small letters with 400.
TEST_F(Instances, UploadsPassARealServer)
{
    LoopbackServer service(LoopbackServer::always(LoopbackServer::response(200, "1\n")));
    const quint16 port = unusedPort();
    QFile configuration(sandbox.folder.filePath(u"nginx.conf"_qs));
    ASSERT_TRUE(configuration.open(QIODevice::WriteOnly));
    QByteArray text = "daemon off; master_process off; pid DIR/pid; error_log stderr; events {}\n"
                      "http { access_log off; client_body_temp_path DIR/body;\n"
                      "proxy_temp_path DIR/proxy; fastcgi_temp_path DIR/fastcgi;\n"
                      "uwsgi_temp_path DIR/uwsgi; scgi_temp_path DIR/scgi;\n"
                      "server { listen 127.0.0.1:PORT; location / { proxy_pass SERVICE; } } }\n";
    text.replace("DIR", sandbox.folder.path().toUtf8());
    text.replace("PORT", QByteArray::number(port));
    text.replace("SERVICE", service.url().toUtf8());
    configuration.write(text);
    configuration.close();

    QProcess nginx;
    nginx.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    nginx.start(u"/usr/sbin/nginx"_qs, {u"-p"_qs, sandbox.folder.path(), u"-c"_qs,
                                        configuration.fileName(), u"-e"_qs, u"stderr"_qs});
    ASSERT_TRUE(nginx.waitForStarted(limitMilliseconds)) << "nginx-light is missing";
    ASSERT_TRUE(waitUntil([&] {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, port);
        return socket.waitForConnected(100);
    }));

    Environment environment = sandbox.environment();
    environment.transport = std::make_shared<QtHTTPTransport>();
    MetricPostOptions compressed = options(u"tok"_qs);
    compressed.useGzipCompression = true;
    MetricPostInstance instance(compressed, environment);
    instance.setServerURL(u"http://127.0.0.1:%1"_qs.arg(port));
    instance.track(u"through"_qs);
    flushAndWait(instance);
    EXPECT_EQ(stored(), 0);
    ASSERT_EQ(service.requests().size(), 1);
    EXPECT_TRUE(service.requests()[0].startsWith("POST /track/?ip=1 "));
    EXPECT_EQ(textAt(recordsOf(gunzip(bodyOf(service.requests()[0])))[0], {u"event"_qs}),
              u"through"_qs);
    nginx.terminate();
    EXPECT_TRUE(nginx.waitForFinished(limitMilliseconds));
}
