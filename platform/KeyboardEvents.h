// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Accessibility.h"

#include <QList>
#include <QString>
#include <QTextBoundaryFinder>

#include <cstdint>
#include <functional>

namespace platform
{

/// One synthetic press or release. `unicodeString` is what the key types: one character as the user
/// sees it, in as many UTF-16 code units as it takes. Both events of a pair carry it.
struct KeyboardEvent {
    bool keyDown = true;
    QString unicodeString;
    friend bool operator==(const KeyboardEvent &, const KeyboardEvent &) = default;
};

/// The events that type `text`: a press and a release for each character as the user sees it.
inline QList<KeyboardEvent> keyboardEvents(const QString &text)
{
    QList<KeyboardEvent> events;
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    for (qsizetype from = 0, to = 0; (to = characters.toNextBoundary()) != -1; from = to) {
        const QString character = text.sliced(from, to - from);
        events.append({true, character});
        events.append({false, character});
    }
    return events;
}

/// What became of a sequence of synthetic keyboard events.
enum class TypingResult {
    Typed,
    /// The target does not have the focus in the window that it was read in, or is none to type
    /// into: nothing was typed.
    NoTarget,
    /// The user pressed a key, or the focus left the input: the rest was not typed.
    Interrupted,
    /// The focus left the input while keys were on their way: the rest was not typed, and some keys
    /// may have reached another input.
    Misplaced,
    /// The system did not take the events.
    Failed,
};

/// Posts keyboard input as if the user had typed it. Main thread only.
class KeyboardEvents
{
public:
    virtual ~KeyboardEvents() = default;

    /// Posts `events` in order, as long as `target` has the focus: the element that the text was
    /// read from, in the window in which it had the focus then. Nothing is posted into another
    /// element, another window or a terminal. Returns at once; `completion` is called exactly once
    /// on the main thread. Only one sequence is under way at a time: a second call waits for the
    /// first.
    virtual void CGEventPost(const AXUIElement &target, const QList<KeyboardEvent> &events,
                             std::function<void(TypingResult)> completion) = 0;
};

} // namespace platform
