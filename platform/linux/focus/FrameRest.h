// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QObject>
#include <QRectF>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <optional>

namespace platform::linux_
{

/// Decides when something that moves has come to rest. It is looked at only after a hint that it
/// may have moved, and until several looks in a row agree: programs report a place of before the
/// movement for a moment. Main thread only.
class FrameRest : public QObject
{
    Q_OBJECT
public:
    struct Reading {
        enum class Kind : std::uint8_t {
            /// It cannot be told at present.
            Unknown,
            OutOfSight,
            At,
        };
        Kind kind = Kind::Unknown;
        /// Where it is, for At.
        QRectF frame = {};
        friend bool operator==(const Reading &, const Reading &) = default;
    };
    using Reader = std::function<Reading()>;
    using Announce = std::function<void(const std::optional<QRectF> &)>;

    explicit FrameRest(QObject *parent = nullptr);

    /// Looks with `reader`; `announce` gets each new place of rest, and nothing for out of sight
    /// and while moving. The first place is announced too.
    void start(Reader reader, Announce announce);
    void stop();
    /// It may have moved.
    void look();
    /// It has moved.
    void leave();

private:
    void readAgain();
    void tell(const std::optional<QRectF> &frame);

    Reader m_reader;
    Announce m_announce;
    QTimer m_timer;
    Reading m_last;
    int m_agreeing = 0;
    /// What was announced last.
    bool m_hasTold = false;
    std::optional<QRectF> m_told;
};

} // namespace platform::linux_
