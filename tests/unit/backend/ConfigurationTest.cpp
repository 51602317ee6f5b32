// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/model/Configuration.h"

#include "backend/model/ListenerOwner.h"

#include <QFile>
#include <QTcpServer>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <unistd.h>

namespace
{

Configuration read(const QByteArray &content, ConfigurationFile::Environment environment = {},
                   QFile::Permissions permissions = QFile::ReadOwner | QFile::WriteOwner)
{
    QTemporaryDir folder;
    QFile file(folder.filePath(u"backend.ini"_qs));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.setPermissions(permissions);
    file.close();
    ConfigurationFile configuration(file.fileName(), std::move(environment));
    return configuration.current();
}

QString chatAddress(const QByteArray &url)
{
    const Configuration configuration = read("[model]\nurl=" + url);
    return configuration.model ? configuration.model->url.toString() : QString();
}

TEST(Configuration, ReadsTheFileAndLetsTheEnvironmentOverrule)
{
    const Configuration configuration =
        read("# mine\n[model]\nurl = https://models.example/api/\r\nname=a=b; c\n"
             "key = sk-1,2%3\\4\ntemperature = 0\ntimeout=5\nwindow = 32768\n",
             {{u"QUILLET_MODEL_TIMEOUT"_qs, u"7"_qs}, {u"QUILLET_MODEL_NAME"_qs, QString()}});
    ASSERT_TRUE(configuration.model);
    EXPECT_EQ(configuration.model->url.toString(),
              u"https://models.example/api/chat/completions"_qs);
    EXPECT_EQ(configuration.model->name, u"a=b; c"_qs);
    EXPECT_EQ(configuration.model->key, "sk-1,2%3\\4");
    EXPECT_EQ(configuration.model->temperature, 0);
    EXPECT_EQ(configuration.model->timeout, std::chrono::seconds(7));
    EXPECT_EQ(configuration.model->window, 32768);
    EXPECT_EQ(configuration.problems, QStringList());
    EXPECT_FALSE(configuration.findServer);

    EXPECT_TRUE(read("").findServer);
    EXPECT_EQ(chatAddress("http://127.0.0.1:8080"),
              u"http://127.0.0.1:8080/v1/chat/completions"_qs);
    EXPECT_EQ(chatAddress("http://[::1]:8080/v1/chat/completions"),
              u"http://[::1]:8080/v1/chat/completions"_qs);
}

TEST(Configuration, TakesTheKeyOutOfTheEnvironment)
{
    qputenv("QUILLET_MODEL_KEY", "sk-1");
    qputenv("QUILLET_MODEL_NAME", "x");
    const auto environment = ConfigurationFile::processEnvironment();
    EXPECT_EQ(environment.value(u"QUILLET_MODEL_KEY"_qs), u"sk-1"_qs);
    EXPECT_EQ(environment.value(u"QUILLET_MODEL_NAME"_qs), u"x"_qs);
    EXPECT_FALSE(qEnvironmentVariableIsSet("QUILLET_MODEL_KEY"));
    qunsetenv("QUILLET_MODEL_NAME");
}

TEST(Configuration, NamesEachValueThatItCannotUse)
{
    const Configuration configuration = read(
        "url = early\n[model]\nurl = ftp://user:hunter2@x\nsk-loose\nkey = sk 1\n"
        "temperature = 3\ntimeout = soon\nwindow = 12\nfind-ollama = maybe\nmodle = x\n[modle]\n");
    const QString problems = configuration.problems.join(u'\n');
    for (const char16_t *part :
         {u"line 1: \"url\" must stand below [model]", u"line 3: url must be an address",
          u"line 4: a line must read", u"line 5: the key", u"line 6: temperature must be",
          u"line 7: timeout must be a number from 1 to 3600, not \"soon\"; 120 is used",
          u"line 8: window must be", u"line 9: find-ollama must be",
          u"line 10: there is no setting", u"line 11: the only section"}) {
        EXPECT_TRUE(problems.contains(QString::fromUtf16(part)))
            << qPrintable(QString::fromUtf16(part)) << "\n"
            << qPrintable(problems);
    }
    EXPECT_EQ(configuration.problems.size(), 10) << qPrintable(problems);
    EXPECT_FALSE(configuration.model);
    // A server that is named, if badly, is the only one that is meant.
    EXPECT_FALSE(configuration.findServer);
    for (const char16_t *hidden : {u"hunter2", u"sk-loose", u"sk 1"})
        EXPECT_FALSE(problems.contains(QString::fromUtf16(hidden)));
}

TEST(Configuration, RemembersAnAnswerBesideEverythingElse)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(u"quillet/backend.ini"_qs);
    ConfigurationFile configuration(path, {});
    EXPECT_FALSE(configuration.current().foundServer);
    ASSERT_TRUE(configuration.remember({u"127.0.0.1:11434"_qs, 998, true}));
    ASSERT_TRUE(configuration.current().foundServer);
    EXPECT_TRUE(configuration.current().foundServer->agreed);
    EXPECT_EQ(configuration.current().foundServer->owner, 998U);
    EXPECT_EQ(configuration.current().problems, QStringList());

    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("; mine\n[model]\nname = x\nfound-server = 127.0.0.1:1, 2, yes\nwindow = 8192");
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
    file.close();
    ASSERT_TRUE(configuration.remember({u"127.0.0.1:11434"_qs, 0, false}));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "; mine\n[model]\nfound-server = 127.0.0.1:11434, 0, no\nname = x\n"
                              "window = 8192");
    EXPECT_FALSE(file.permissions() & QFile::ReadOther);
    EXPECT_FALSE(configuration.current().foundServer->agreed);

    file.close();
    const QByteArray damaged = "model]\nurl = http://127.0.0.1:1/v1\n; caf\xe9\n";
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(damaged);
    file.close();
    ASSERT_TRUE(configuration.remember({u"127.0.0.1:11434"_qs, 0, true}));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), damaged + "[model]\nfound-server = 127.0.0.1:11434, 0, yes\n");
    EXPECT_FALSE(configuration.current().model) << "no line has moved below the section";
    EXPECT_TRUE(
        read("[model]\nfound-server = 127.0.0.1, yes").problems.value(0).contains(u"found-server"));
}

TEST(ListenerOwner, IsWhoseListenerAConnectionReaches)
{
    QTemporaryDir folder;
    const auto write = [&](const QString &name, const QByteArray &lines) {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(
            "  sl  local_address rem_address   st tx_queue rx_queue tr tm->when retrnsmt   uid\n" +
            lines);
    };
    const auto row = [](const QByteArray &local, const QByteArray &state, int uid) {
        return "   0: " + local + " 00000000:0000 " + state +
               " 00000000:00000000 00:00000000 00000000  " + QByteArray::number(uid) +
               "        0 31 1\n";
    };
    const auto owner = [&] { return listenerOwner(11434, folder.path()); };
    EXPECT_EQ(owner(), std::nullopt);
    write(u"tcp"_qs, row("0100007F:2CAB", "0A", 7) + row("0100007F:2CAA", "01", 8) +
                         row("00000000:2CAA", "0A", 998));
    EXPECT_EQ(owner(), 998U);
    write(u"tcp6"_qs, row("00000000000000000000000000000000:2CAA", "0A", 1001));
    EXPECT_EQ(owner(), 998U) << "one for IPv4 is closer than one for all";
    write(u"tcp"_qs, row("00000000:2CAA", "0A", 998) + row("0100007F:2CAA", "0A", 1000));
    EXPECT_EQ(owner(), 1000U);
    write(u"tcp"_qs, row("0100007F:2CAA", "0A", 998) + row("0100007F:2CAA", "0A", 1000));
    EXPECT_EQ(owner(), std::nullopt);
    // The kernel's own tables.
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    EXPECT_EQ(listenerOwner(server.serverPort()), ::geteuid());
    EXPECT_TRUE(isSystemAccount(0));
    EXPECT_FALSE(isSystemAccount(1000));
}

TEST(Configuration, WarnsOfAKeyThatOthersCanRead)
{
    const auto open = QFile::ReadOwner | QFile::ReadOther;
    EXPECT_TRUE(read("[model]\nkey=sk-1", {}, open).problems.value(0).contains(u"chmod 600"));
    const auto plain = read("[model]\nkey=sk-1\nurl=http://models.example");
    EXPECT_TRUE(plain.problems.value(0).contains(u"unencrypted"));
    EXPECT_TRUE(plain.model);
}

} // namespace
