// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <cstddef>
#include <optional>

namespace platform::linux_
{

/// The input that text is being typed into, as far as it can be seen from outside. The typing
/// engine asks it whether to go on, and reads back how much has arrived before it sends more or
/// gives a keycode another character. Main thread only; no call blocks longer than a few
/// milliseconds.
class TypingTarget
{
public:
    virtual ~TypingTarget() = default;

    /// False as soon as the keyboard focus is anywhere else, or the input is gone.
    virtual bool hasFocus() = 0;

    /// Whether the input's program may be sent keys. Asked again and again, once the input has the
    /// focus and no key is down, until it is true: the first time begins what has to be done.
    virtual bool isReadyForKeys() { return true; }

    /// Number of Unicode code points that the input holds now; absent when it does not say.
    virtual std::optional<qint64> characterCount() = 0;

    /// Whether a line break must be typed so that it cannot send a form or a chat message
    /// (Shift+Return where the toolkit takes that for a line break).
    virtual bool needsSoftLineBreaks() = 0;

    /// Number of code points that are selected now, which the first typed character replaces.
    virtual qint64 selectedCharacterCount() { return 0; }
    /// Whether what was selected then has been replaced. The count does not show it where what is
    /// typed is as long as what was selected.
    virtual bool isSelectionReplaced() { return false; }

    /// How many keys may be on their way that the input does not show yet, where something else in
    /// the same window can take the focus between two of them: a frame in a web page.
    virtual std::optional<std::size_t> maxUnconfirmedKeys() { return std::nullopt; }
    /// Tells that keys have been sent.
    virtual void keysSent() {}
    /// Whether the input has said since the last keysSent() that it has the focus. True where it
    /// does not say.
    virtual bool isFocusConfirmed() { return true; }

    /// The end of the text before the caret, no longer than a few hundred characters; absent when
    /// the input does not say.
    virtual std::optional<QString> textBeforeCaret() { return std::nullopt; }

    /// Whether the Tab key types a tab here (a multi-line editor) and does not move the focus on (a
    /// web page, a single-line entry). Where it does not, a tab is typed as four spaces.
    virtual bool takesTabs() { return false; }

    /// Whether the program, where an input method is at work, handles a key that comes while an
    /// earlier one is still with the input method before that one: what is typed quickly arrives
    /// backwards (GTK 4 with IBus).
    virtual bool mayReorderKeys() { return false; }

    /// Whether the program cuts a character above U+FFFF that a Wayland keyboard types to its lower
    /// 16 bits, which is another character (Chromium).
    virtual bool cutsCharacters() { return false; }
};

} // namespace platform::linux_
