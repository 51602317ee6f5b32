// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "MetricPost/MetricPostLogger.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace metricpost;

TEST(Logger, SinksWriteTheirLines)
{
    const MetricPostLogMessage message{QStringLiteral("MPDB"), QStringLiteral("open"),
                                       QStringLiteral("a \"b\"\nc\x1b"),
                                       MetricPostLogLevel::warning};
    testing::internal::CaptureStdout();
    PrintLogging().addMessage(message);
    PrintDebugLogging().addMessage(message);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "[MetricPost - MPDB - func open] (warning) - a \"b\"\nc\x1b\n"
              "\"[MetricPost - MPDB - func open] (warning) - a \\\"b\\\"\\nc\\u{1b}\"\n");

    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("log"));
    for (int i = 0; i < 2; ++i)
        FileLogging(path).addMessage(message);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray line = "File: MPDB - Func: open - Level: warning - Message: a \"b\"\nc\x1b\n";
    EXPECT_EQ(file.readAll(), line + line);

    testing::internal::CaptureStderr();
    FileLogging(folder.filePath(QStringLiteral("no/such/folder"))).addMessage(message);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), line.toStdString());
}

TEST(Logger, SaysWhereAMessageComesFromAndEvaluatesItOnlyWhenItsLevelIsEnabled)
{
    struct Sink : MetricPostLogging {
        void addMessage(const MetricPostLogMessage &message) override
        {
            lines.append(message.file + u' ' + message.function + u' ' + message.text);
        }
        QStringList lines;
    };
    const auto sink = std::make_shared<Sink>();
    int evaluated = 0;
    const auto message = [&] {
        ++evaluated;
        return QStringLiteral("text");
    };
    MetricPostLogger::addLogging(sink);
    MetricPostLogger::error(message);
    EXPECT_EQ(evaluated, 0);
    MetricPostLogger::enableLevel(MetricPostLogLevel::error);
    MetricPostLogger::error(message);
    MetricPostLogger::warn(message);
    MetricPostLogger::error(message, "/a/b/MPDB", "open");
    MetricPostLogger::disableLevel(MetricPostLogLevel::error);
    MetricPostLogger::error(message);
    MetricPostLogger::removeLogging(sink);
    EXPECT_EQ(evaluated, 2);
    EXPECT_EQ(sink->lines, (QStringList{QStringLiteral("LoggerTest.cpp TestBody text"),
                                        QStringLiteral("MPDB open text")}));
}
