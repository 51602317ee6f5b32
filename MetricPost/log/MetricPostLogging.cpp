// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "MetricPost/MetricPostLogging.h"

#include <cstdio>

namespace metricpost
{

namespace
{

QString line(const MetricPostLogMessage &message)
{
    return QStringLiteral("[MetricPost - ") + message.file + QStringLiteral(" - func ") +
           message.function + QStringLiteral("] (") + rawValue(message.level) +
           QStringLiteral(") - ") + message.text;
}

// One write a line, so that the lines of several threads do not mix.
void print(const QString &text)
{
    const QByteArray bytes = text.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), stdout);
    std::fflush(stdout);
}

QString debugDescription(const QString &text)
{
    QString result = QStringLiteral("\"");
    for (const QChar character : text) {
        switch (character.unicode()) {
        case u'"':
            result += QStringLiteral("\\\"");
            break;
        case u'\\':
            result += QStringLiteral("\\\\");
            break;
        case u'\n':
            result += QStringLiteral("\\n");
            break;
        case u'\r':
            result += QStringLiteral("\\r");
            break;
        case u'\t':
            result += QStringLiteral("\\t");
            break;
        case u'\0':
            result += QStringLiteral("\\0");
            break;
        default:
            if (character < u' ' || character == u'\x7f') {
                result +=
                    QStringLiteral("\\u{%1}").arg(character.unicode(), 2, 16, QLatin1Char('0'));
            } else {
                result += character;
            }
        }
    }
    return result + u'"';
}

} // namespace

QString rawValue(MetricPostLogLevel level)
{
    switch (level) {
    case MetricPostLogLevel::debug:
        return QStringLiteral("debug");
    case MetricPostLogLevel::info:
        return QStringLiteral("info");
    case MetricPostLogLevel::warning:
        return QStringLiteral("warning");
    case MetricPostLogLevel::error:
        break;
    }
    return QStringLiteral("error");
}

void PrintLogging::addMessage(const MetricPostLogMessage &message)
{
    print(line(message));
}

void PrintDebugLogging::addMessage(const MetricPostLogMessage &message)
{
    print(debugDescription(line(message)));
}

FileLogging::FileLogging(const QString &path)
    : m_file(path)
{
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered,
                     QFile::ReadOwner | QFile::WriteOwner)) {
        (void)m_file.open(stderr, QIODevice::WriteOnly | QIODevice::Unbuffered);
    }
}

void FileLogging::addMessage(const MetricPostLogMessage &message)
{
    const QString text = QStringLiteral("File: ") + message.file + QStringLiteral(" - Func: ") +
                         message.function + QStringLiteral(" - Level: ") + rawValue(message.level) +
                         QStringLiteral(" - Message: ") + message.text + u'\n';
    const std::lock_guard lock(m_mutex);
    m_file.write(text.toUtf8());
}

} // namespace metricpost
