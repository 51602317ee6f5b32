// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QObject>

#include <array>
#include <csignal>

/// Turns the signals with which a system or a terminal ends programs (SIGTERM, SIGINT, SIGHUP) into
/// an ordinary end, so that what must be undone is undone. A second signal of the same kind ends
/// the process at once. One object a process, main thread only.
class QuitSignals : public QObject
{
    Q_OBJECT
public:
    explicit QuitSignals(QObject *parent = nullptr);
    ~QuitSignals() override;

Q_SIGNALS:
    void quitRequested();

private:
    static constexpr std::array<int, 3> handled{SIGTERM, SIGINT, SIGHUP};
    std::array<struct sigaction, handled.size()> m_before{};
};
