// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QFile>
#include <QString>

#include <mutex>

namespace metricpost
{

enum class MetricPostLogLevel { debug, info, warning, error };

/// "debug", "info", "warning" or "error".
QString rawValue(MetricPostLogLevel level);

struct MetricPostLogMessage {
    /// The source file's name without its folders.
    QString file;
    QString function;
    QString text;
    MetricPostLogLevel level = MetricPostLogLevel::debug;
};

/// Receives the messages of the enabled levels, on the thread that logs and possibly on several
/// at once. It must not log itself.
class MetricPostLogging
{
public:
    virtual ~MetricPostLogging() = default;
    virtual void addMessage(const MetricPostLogMessage &message) = 0;
};

/// Prints each message as one line on standard output.
class PrintLogging : public MetricPostLogging
{
public:
    void addMessage(const MetricPostLogMessage &message) override;
};

/// Prints the same line in its quoted form, control characters escaped.
class PrintDebugLogging : public MetricPostLogging
{
public:
    void addMessage(const MetricPostLogMessage &message) override;
};

/// Appends each message as one line to a file, or to standard error when the file cannot be
/// opened. The file is created for its owner alone.
class FileLogging : public MetricPostLogging
{
public:
    explicit FileLogging(const QString &path);
    void addMessage(const MetricPostLogMessage &message) override;

private:
    std::mutex m_mutex;
    QFile m_file;
};

} // namespace metricpost
