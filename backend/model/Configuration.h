// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QDateTime>
#include <QHash>
#include <QStringList>
#include <QUrl>
#include <chrono>
#include <optional>

/// How to reach a language model through the chat completions interface.
struct ModelSettings {
    /// The address of the chat completions themselves.
    QUrl url;
    QString name;
    /// Sent as a bearer token (RFC 6750 §2.1); may be empty. Never logged.
    QByteArray key;
    /// Absent: the one that fits the command.
    std::optional<double> temperature;
    /// The longest wait for the next piece of an answer.
    std::chrono::milliseconds timeout = std::chrono::seconds(120);
    /// Tokens that the model can see at once, its own answer included.
    int window = 4096;

    /// The server as a person knows it, without path or credentials.
    QString server() const;
    bool operator==(const ModelSettings &) const = default;
};

/// The user's answer about a server that was found on this machine.
struct ServerAnswer {
    /// Host and port.
    QString address;
    /// The user id of the listener that the answer is about.
    unsigned owner = 0;
    bool agreed = false;
};

struct Configuration {
    /// Absent when no address is set, or when it is not usable.
    std::optional<ModelSettings> model;
    /// Settings for a server that is found without being named: all but the address.
    ModelSettings defaults;
    /// Look for a server on its usual address when none is set.
    bool findServer = true;
    /// Absent until the user has answered.
    std::optional<ServerAnswer> foundServer;
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
    /// Writes the answer into the file, beside everything that stands there. False: it cannot be
    /// written.
    bool remember(const ServerAnswer &answer);

private:
    QString m_path;
    Environment m_environment;
    Configuration m_configuration;
    std::optional<QDateTime> m_readAt;
    QDateTime m_modified;
    qint64 m_size = -1;
};
