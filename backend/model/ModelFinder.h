// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/model/Configuration.h"

#include <QElapsedTimer>
#include <QNetworkAccessManager>
#include <QPointer>
#include <functional>
#include <vector>

/// Looks for an Ollama server on this machine and for a model that it has. What
/// it finds, or that it finds nothing, holds for a while. Thread: the event loop's.
class ModelFinder : public QObject
{
public:
    using Found = std::function<void(std::optional<ModelSettings>)>;

    static QUrl usualAddress() { return QUrl(QStringLiteral("http://127.0.0.1:11434")); }

    explicit ModelFinder(QUrl address = usualAddress());

    /// Calls `found` once, later, unless `context` is destroyed before. Waits for
    /// a server that listens but does not answer no longer than a person notices.
    /// `settings` has everything but the address; a model named there is taken,
    /// otherwise the one that was changed last.
    void find(const ModelSettings &settings, QObject *context, Found found);
    /// What was found turned out to be gone.
    void forget();

private:
    void probe();
    void conclude(std::optional<QString> model);

    struct Waiting {
        QPointer<QObject> context;
        ModelSettings settings;
        Found found;
    };
    void tell(const Waiting &waiting) const;

    QUrl m_address;
    QNetworkAccessManager m_network;
    std::vector<std::pair<int, Waiting>> m_waiting;
    int m_nextTicket = 0;
    bool m_probing = false;
    QElapsedTimer m_age;
    /// The model to use; none when no server was found.
    std::optional<QString> m_model;
};
