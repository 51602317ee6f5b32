// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/ports/InputMethods.h"
#include "platform/linux/ports/Typist.h"

#include <QByteArray>

#include <memory>

namespace platform::linux_
{

/// Types text into an input of an X11 desktop: XTEST presses the keys, XKB lends the
/// characters that the user's layout does not have to keys that it leaves empty, and where those
/// are too few to its letters, digits and signs.
///
/// Works from the event loop in pieces of a few milliseconds. Keys go out in small bursts, each
/// under a server grab in which the focus and the user's modifiers have been checked, and no more
/// are on their way than the input is known to keep up with. A key or click of the user, a change
/// of focus, of layout, or an input that stops answering ends the sequence as Interrupted. The
/// keyboard map is left as it was found; what a killed process has left is put back when the next
/// one is created.
///
/// Main thread only.
class XTestKeyboard : public Typist
{
public:
    /// `methods`, which may be null, must outlive this or stop(). `displayName` as XOpenDisplay
    /// takes it; empty for $DISPLAY. Without a usable X server, and beside an input method that
    /// goes on composing, every sequence ends as Failed.
    explicit XTestKeyboard(InputMethods *methods = nullptr, const QByteArray &displayName = {});
    ~XTestKeyboard() override;

    void type(std::unique_ptr<TypingTarget> target, const QList<KeyboardEvent> &events,
              std::function<void(TypingResult)> completion) override;

    /// Ends for good: waits until the keys on their way have been taken, up to five seconds,
    /// restores the map, and drops targets and completions. The destructor does the same.
    void stop();

private:
    class Loop;
    std::unique_ptr<Loop> m_loop;
};

} // namespace platform::linux_
