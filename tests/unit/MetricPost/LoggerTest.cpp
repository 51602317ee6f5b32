#include "MetricPostLogger.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace metricpost;

TEST(Logger, EvaluatesAMessageOnlyWhenItsLevelIsEnabled)
{
    int evaluated = 0;
    const auto message = [&] {
        ++evaluated;
        return QStringLiteral("text");
    };
    MetricPostLogger::error(message);
    EXPECT_EQ(evaluated, 0);
    MetricPostLogger::enableLevel(MetricPostLogLevel::error);
    MetricPostLogger::error(message);
    MetricPostLogger::warn(message);
    MetricPostLogger::disableLevel(MetricPostLogLevel::error);
    MetricPostLogger::error(message);
    EXPECT_EQ(evaluated, 1);
}

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

TEST(Logger, NamesTheCallersFileAndFunctionAndKeepsTheOrderOfSinks)
{
    struct Sink : MetricPostLogging {
        Sink(QString n, QStringList &l)
            : name(std::move(n))
            , lines(l)
        {
        }
        void addMessage(const MetricPostLogMessage &message) override
        {
            lines.append(name + message.file + u' ' + message.function + u' ' + message.text);
        }
        QString name;
        QStringList &lines;
    };
    QStringList lines;
    const auto first = std::make_shared<Sink>(QStringLiteral("1 "), lines);
    const auto second = std::make_shared<Sink>(QStringLiteral("2 "), lines);
    MetricPostLogger::addLogging(first);
    MetricPostLogger::addLogging(second);
    MetricPostLogger::enableLevel(MetricPostLogLevel::info);
    MetricPostLogger::info([] { return QStringLiteral("here"); });
    MetricPostLogger::info([] { return QStringLiteral("x"); }, "/a/b/MPDB", "open");
    MetricPostLogger::disableLevel(MetricPostLogLevel::info);
    MetricPostLogger::removeLogging(first);
    MetricPostLogger::removeLogging(second);
    EXPECT_EQ(lines,
              (QStringList{QStringLiteral("1 LoggerTest.cpp TestBody here"),
                           QStringLiteral("2 LoggerTest.cpp TestBody here"),
                           QStringLiteral("1 MPDB open x"), QStringLiteral("2 MPDB open x")}));
}
