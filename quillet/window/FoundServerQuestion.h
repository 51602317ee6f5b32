// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QMessageBox>
#include <QPointer>
#include <QString>

#include <functional>

/// Asks the user whether texts may go to a language model's server that was found on this machine.
/// Closing the window answers nothing. Main thread only.
class FoundServerQuestion
{
public:
    struct Server {
        /// Host and port.
        QString address;
        QString ownerName;
        QString model;
    };

    FoundServerQuestion() = default;
    ~FoundServerQuestion() { delete m_box; }
    FoundServerQuestion(const FoundServerQuestion &) = delete;
    FoundServerQuestion &operator=(const FoundServerQuestion &) = delete;

    /// Shows the question; a question that is still open is replaced.
    void ask(const Server &server, std::function<void(bool agreed)> answer);

private:
    QPointer<QMessageBox> m_box;
};
