// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <functional>

/// The child's end of its life with Quillet: standard input brings the secret
/// of this launch as its first line, and its end of file says that Quillet is
/// gone, however it ended. Thread: the event loop's.
class ParentLink : public QObject
{
public:
    /// `secret` is called once, with a line that is not empty. `gone` is called
    /// at the end of file, and when no usable secret comes.
    ParentLink(std::function<void(QByteArray)> secret, std::function<void()> gone);

private:
    void readSome();

    std::function<void(QByteArray)> m_secret;
    std::function<void()> m_gone;
    QSocketNotifier m_notifier;
    QByteArray m_line;
    bool m_hasSecret = false;
};
