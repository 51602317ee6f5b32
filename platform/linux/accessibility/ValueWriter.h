// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Accessibility.h"
#include "platform/linux/accessibility/WriteRoute.h"
#include "platform/linux/ports/TextInput.h"
#include "platform/linux/ports/Typist.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <memory>

namespace platform::linux_
{

/// Replaces the text of one input, and reads back what has become of it. Only what differs is
/// replaced: so the caret, the format of the other words and the program's undo are kept.
///
/// The program is asked to change its text where it offers that, else the text is typed over a
/// selection. What the program says of it is not believed: the text that is read back decides. A
/// write is done again, by another way, only while the old text is still there. A text that has
/// come to nothing is put back.
///
/// Lives until its completion has been called, then deletes itself. Main thread only.
class ValueWriter : public QObject
{
    Q_OBJECT
public:
    /// How long things may take.
    struct Limits {
        std::chrono::milliseconds selectionPause{5};
        std::chrono::milliseconds readPause{20};
        /// A selection that does not come.
        std::chrono::milliseconds selection{2000};
        /// The old text: a program that says yes and does nothing.
        std::chrono::milliseconds unchanged{400};
        /// A text that stands as the program has changed it.
        std::chrono::milliseconds changed{300};
        /// Any other text that moves no more.
        std::chrono::milliseconds still{1500};
        /// How long the old text is tried to be put back while something else has the focus, and
        /// how often the input is asked to take it.
        std::chrono::milliseconds restoring{5000};
        std::chrono::milliseconds focusPause{150};
        /// A program that does not answer.
        std::chrono::milliseconds silence{10000};
    };

    ValueWriter(std::unique_ptr<TextInput> input, const QString &text, Typist &typist,
                std::function<void(const WriteOutcome &)> completion, const Limits &limits);
    ~ValueWriter() override;

    /// True when the completion can be called. Called from the event loop otherwise.
    bool isDone() const { return m_outcome.has_value(); }
    void start();
    /// Calls the completion and ends this object.
    void deliver();

private:
    /// Reads the text; `next` gets it unless this writing has ended meanwhile.
    void read(void (ValueWriter::*next)(const TextInput::Content &));
    void begin(const TextInput::Content &content);
    void pursue(const TextInput::Content &content);
    void takeRoute(WriteRoute route, const TextInput::Content &content);
    void takeNextRoute(const TextInput::Content &content);
    void applyEdits(const QList<TextEdit> &edits);
    void typeNext();
    void selectNext();
    void typeOver(const TextEdit &edit);
    void onTyped(TypingResult result);
    bool isRetryingToRestore();
    void askForFocus();
    void watch();
    void judge(const TextInput::Content &content);
    void fail(AXError why);
    void restore();
    void finish(WriteOutcome outcome);
    void keepCaret(const TextInput::Content &content);
    bool isGoal(const QString &text) const;
    /// `function` that does nothing once this writing has ended.
    template <typename Function> auto whileWriting(Function function);

    std::unique_ptr<TextInput> m_input;
    Typist &m_typist;
    std::function<void(const WriteOutcome &)> m_completion;
    const Limits m_limits;
    std::optional<WriteOutcome> m_outcome;

    /// What the input is to hold: the new text; the old one while that is put back.
    QString m_goal;
    QString m_before;
    std::optional<qsizetype> m_caretBefore;
    bool m_isRestoring = false;
    /// Whether the input may hold something else than before.
    bool m_isTouched = false;
    WriteOutcome m_failure;

    WriteRoute m_route = WriteRoute::Edits;
    /// What the way that is being taken started from.
    QString m_from;
    /// What is still to be typed, from the end of the text to its beginning.
    QList<TextEdit> m_queue;
    bool m_typed = false;

    QString m_lastRead;
    QElapsedTimer m_sinceChange;
    QElapsedTimer m_sinceSelecting;
    QElapsedTimer m_sinceRestoring;
    QElapsedTimer m_sinceFocusRequest;
    QTimer m_silence;
};

} // namespace platform::linux_
