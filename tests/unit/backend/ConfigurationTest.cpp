// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/model/Configuration.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

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
    EXPECT_EQ(configuration.model->timeoutSeconds, 7);
    EXPECT_EQ(configuration.model->window, 32768);
    EXPECT_EQ(configuration.problems, QStringList());
    EXPECT_FALSE(configuration.findServer);

    EXPECT_TRUE(read("").findServer);
    EXPECT_EQ(chatAddress("http://127.0.0.1:8080"),
              u"http://127.0.0.1:8080/v1/chat/completions"_qs);
    EXPECT_EQ(chatAddress("http://[::1]:8080/v1/chat/completions"),
              u"http://[::1]:8080/v1/chat/completions"_qs);
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
    // Whoever meant another server does not mean this one.
    EXPECT_FALSE(configuration.findServer);
    for (const char16_t *hidden : {u"hunter2", u"sk-loose", u"sk 1"})
        EXPECT_FALSE(problems.contains(QString::fromUtf16(hidden)));
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
