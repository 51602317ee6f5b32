// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QDateTime>
#include <QHash>
#include <QStringList>
#include <QUrl>
#include <optional>

/// How to reach a language model through the chat completions interface.
struct ModelSettings {
    /// The address of the chat completions themselves.
    QUrl url;
    QString name;
    /// Sent as a bearer token (RFC 6750 §2.1); may be empty. Never logged.
    QByteArray key;
    double temperature = 0.3;
    /// The longest wait for the next piece of an answer.
    int timeoutSeconds = 120;
    /// Tokens that the model can see at once, its own answer included.
    int window = 4096;

    /// The server as a person knows it, without path or credentials.
    QString server() const;
    bool operator==(const ModelSettings &) const = default;
};

struct Configuration {
    /// Absent when no address is set, or when it is not usable.
    std::optional<ModelSettings> model;
    /// Settings for a server that is found without being named: all but the address.
    ModelSettings defaults;
    /// Look for a server on its usual address when none is set.
    bool findServer = true;
    /// One sentence for each value that cannot be used.
    QStringList problems;
};

/// The settings in a configuration file, each of which an environment variable
/// overrules. Thread: one.
class ConfigurationFile
{
public:
    using Environment = QHash<QString, QString>;

    ConfigurationFile(QString path, Environment environment);

    /// backend.ini in the user's configuration folder for Quillet.
    static QString defaultPath();
    static Environment processEnvironment();

    QString path() const { return m_path; }
    /// Reads the file again when it has changed since the last call.
    const Configuration &current();

private:
    QString m_path;
    Environment m_environment;
    Configuration m_configuration;
    std::optional<QDateTime> m_readAt;
    QDateTime m_modified;
    qint64 m_size = -1;
};
