// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QNetworkAccessManager>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

class WritingEndpoint;

/// A language model's server that listens on this machine without having been named in the
/// settings. Texts go there only after the user has agreed.
struct FoundServer {
    /// Host and port, such as "127.0.0.1:11434".
    QString address;
    /// The user id that the kernel names for the listener, and its name.
    unsigned owner = 0;
    QString ownerName;
    QString model;
};

/// Asks the local backend what it found, and brings it the user's answer, which the backend keeps
/// in its configuration. A backend elsewhere finds nothing. Main thread.
class FoundServerDesk : public QObject
{
    Q_OBJECT

public:
    /// `endpoint` outlives this object.
    explicit FoundServerDesk(WritingEndpoint &endpoint, QObject *parent = nullptr);

    /// Emits unanswered() when there is a server that the user has not been asked about. Does so at
    /// most once for a server in the life of this object.
    void look();
    /// Tells `found` which server there is and whether the user has agreed to it; does not call it
    /// where there is none that the user may choose. `context` ends the wish.
    void find(QObject *context, std::function<void(const FoundServer &, bool agreed)> found);
    /// Remembers the answer about `server`; `stored` hears whether that worked.
    void answer(const FoundServer &server, bool agreed, std::function<void(bool)> stored = {});

Q_SIGNALS:
    void unanswered(const FoundServer &server);

private:
    void withAddress(std::function<void(const QUrl &)> use);
    using Take = std::function<void(const FoundServer &server, const QString &consent)>;
    /// `context` ends the wish for an answer.
    void ask(QObject *context, Take take);

    WritingEndpoint &m_endpoint;
    QNetworkAccessManager m_network;
    QString m_askedAbout;
};
