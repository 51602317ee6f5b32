// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <optional>

/// A model server that listens on this machine without having been named in the settings.
struct FoundServer {
    enum class Consent {
        /// The user has not been asked, or not about this server of this owner.
        Unanswered,
        Agreed,
        Refused,
        /// It belongs to another person: it is never used, and there is nothing to ask.
        Foreign,
    };

    /// Host and port.
    QString address;
    /// Who the kernel says is listening there.
    unsigned owner = 0;
    QString ownerName;
    QString model;
    Consent consent = Consent::Unanswered;
};

/// What was found, and whether the user lets Quillet use it. A text goes to such a server only
/// after the user has agreed. Thread: the event loop's.
class FoundServers
{
public:
    using Found = std::function<void(const std::optional<FoundServer> &)>;

    virtual ~FoundServers() = default;
    /// Calls `found` once, later, unless `context` is destroyed before.
    virtual void look(QObject *context, Found found) = 0;
    /// Remembers the user's answer for this server of this owner. False: it could not be stored.
    virtual bool remember(const FoundServer &server, bool agreed) = 0;
};
