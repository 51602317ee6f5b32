// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/keyboard/ReadBack.h"
#include "platform/linux/keyboard/TypingPlan.h"
#include "platform/linux/ports/Typist.h"
#include "platform/linux/wayland/typing/KeyStream.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <deque>
#include <memory>

namespace platform::linux_
{

/// Types over a stream of keys and maps, no further ahead of the input than it can follow, and
/// reads back how much has arrived. Main thread only.
class StreamTypist : public QObject, public Typist
{
    Q_OBJECT
public:
    /// How long is waited, in milliseconds.
    struct Patience {
        /// For the input to have the focus.
        qint64 focus = 2000;
        /// For its program to be ready for keys.
        qint64 readiness = 10'000;
        /// For the next key to show.
        qint64 progress = 4000;
    };

    explicit StreamTypist(std::unique_ptr<KeyStream> stream)
        : StreamTypist(std::move(stream), Patience())
    {
    }
    StreamTypist(std::unique_ptr<KeyStream> stream, const Patience &patience);
    ~StreamTypist() override;

    void type(std::unique_ptr<TypingTarget> target, const QList<KeyboardEvent> &events,
              std::function<void(TypingResult)> completion) override;

private:
    struct Sequence {
        std::unique_ptr<TypingTarget> target;
        QList<KeyboardEvent> events;
        std::function<void(TypingResult)> completion;
    };

    void startNext();
    void step();
    void wait();
    bool plan();
    void advance();
    bool sendSome();
    void finish(TypingResult result);

    std::unique_ptr<KeyStream> m_stream;
    const Patience m_patience;
    std::deque<Sequence> m_waiting;
    Sequence m_current;
    QTimer m_timer;
    QElapsedTimer m_clock;
    bool m_isActive = false;
    bool m_isTyping = false;
    std::optional<qint64> m_askedWhetherReady;
    qint64 m_start = 0;
    qint64 m_lastProgress = 0;
    std::vector<PlannedKey> m_keys;
    std::vector<Segment> m_segments;
    std::size_t m_segment = 0;
    std::size_t m_sent = 0;
    std::size_t m_shown = 0;
    ReadBack m_readBack;
};

} // namespace platform::linux_
