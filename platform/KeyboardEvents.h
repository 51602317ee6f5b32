// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

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
    /// The user pressed a key, or the focus left the input: the rest was not typed.
    Interrupted,
    /// The system did not take the events.
    Failed,
};

/// Posts keyboard input as if the user had typed it, into whatever holds the keyboard focus.
/// Main thread only.
class KeyboardEvents
{
public:
    virtual ~KeyboardEvents() = default;

    /// Posts `events` in order. Returns at once; `completion` is called exactly once on the main
    /// thread. Only one sequence is under way at a time: a second call waits for the first.
    virtual void CGEventPost(const QList<KeyboardEvent> &events,
                             std::function<void(TypingResult)> completion) = 0;
};

} // namespace platform
