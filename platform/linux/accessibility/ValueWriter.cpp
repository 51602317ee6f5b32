// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/accessibility/ValueWriter.h"

#include "platform/linux/reading/CodePoints.h"
#include "platform/text/ProgramChanges.h"

#include <QPointer>

#include <algorithm>

namespace platform::linux_
{

namespace
{

/// With no-break spaces as spaces. A rich text field of a web page keeps spaces as it sees fit: it
/// turns each into the other where it would collapse or break a line.
QString withPlainSpaces(QString text)
{
    return text.replace(QChar::Nbsp, u' ');
}

std::chrono::milliseconds since(const QElapsedTimer &timer)
{
    return std::chrono::milliseconds(timer.elapsed());
}

AXError errorFor(TypingResult result)
{
    return result == TypingResult::NoTarget ? AXError::CannotComplete : AXError::Failure;
}

} // namespace

ValueWriter::ValueWriter(std::unique_ptr<TextInput> input, const QString &text, Typist &typist,
                         std::function<void(const WriteOutcome &)> completion, const Limits &limits)
    : m_input(std::move(input))
    , m_typist(typist)
    , m_completion(std::move(completion))
    , m_limits(limits)
    , m_goal(withLineFeeds(text))
{
    m_silence.setSingleShot(true);
    connect(&m_silence, &QTimer::timeout, this, [this] {
        WriteOutcome outcome = WriteOutcome::notWritten(AXError::CannotComplete);
        outcome.isDamaged = m_isTouched;
        finish(outcome);
    });
}

ValueWriter::~ValueWriter() = default;

template <typename Function> auto ValueWriter::whileWriting(Function function)
{
    return [self = QPointer(this), function](auto &&...arguments) {
        if (self && !self->m_outcome) {
            self->m_silence.stop();
            function(std::forward<decltype(arguments)>(arguments)...);
        }
    };
}

void ValueWriter::start()
{
    read(&ValueWriter::begin);
}

void ValueWriter::read(void (ValueWriter::*next)(const TextInput::Content &))
{
    m_silence.start(m_limits.silence);
    m_input->read(whileWriting([this, next](const std::optional<TextInput::Content> &content) {
        if (content)
            (this->*next)(*content);
        else
            fail(AXError::CannotComplete);
    }));
}

bool ValueWriter::isGoal(const QString &text) const
{
    return text == m_goal || (m_typed && withPlainSpaces(text) == withPlainSpaces(m_goal));
}

void ValueWriter::begin(const TextInput::Content &content)
{
    m_before = content.text;
    m_caretBefore = content.caret;
    pursue(content);
}

void ValueWriter::pursue(const TextInput::Content &content)
{
    m_lastRead = content.text;
    if (isGoal(content.text)) {
        keepCaret(content);
        finish(m_isRestoring ? m_failure : WriteOutcome::written());
        return;
    }
    takeRoute(m_input->takesEdits() ? WriteRoute::Edits : WriteRoute::Stretches, content);
}

/// Where several edits were made as one, or typed, the caret is elsewhere than the user left it.
void ValueWriter::keepCaret(const TextInput::Content &content)
{
    if (!m_isTouched || !m_caretBefore || !content.caret)
        return;
    const qsizetype caret = movedPosition(textDifference(m_before, content.text), *m_caretBefore);
    if (caret != *content.caret)
        m_input->setCaret(caret);
}

void ValueWriter::takeRoute(WriteRoute route, const TextInput::Content &content)
{
    m_route = route;
    m_from = content.text;
    const QList<TextEdit> edits = editsFor(route, content, m_goal, *m_input);
    if (edits.isEmpty()) {
        takeNextRoute(content);
        return;
    }
    switch (route) {
    case WriteRoute::Edits:
        applyEdits(edits);
        break;
    case WriteRoute::Contents:
        m_isTouched = true;
        m_silence.start(m_limits.silence);
        m_input->setContents(m_goal, whileWriting([this](bool) { watch(); }));
        break;
    case WriteRoute::Stretches:
    case WriteRoute::All:
        m_queue = edits;
        typeNext();
        break;
    }
}

void ValueWriter::takeNextRoute(const TextInput::Content &content)
{
    if (m_route == WriteRoute::All)
        fail(AXError::Failure);
    else
        takeRoute(static_cast<WriteRoute>(static_cast<int>(m_route) + 1), content);
}

/// From the end of the text to its beginning, so that the positions hold.
void ValueWriter::applyEdits(const QList<TextEdit> &edits)
{
    m_isTouched = true;
    m_silence.start(m_limits.silence);
    for (qsizetype i = edits.size() - 1; i > 0; --i)
        m_input->edit(edits.at(i), [](bool) {});
    m_input->edit(edits.first(), whileWriting([this](bool) { watch(); }));
}

void ValueWriter::typeNext()
{
    if (m_queue.isEmpty()) {
        watch();
        return;
    }
    m_sinceSelecting.start();
    selectNext();
}

void ValueWriter::selectNext()
{
    const TextEdit &next = m_queue.last();
    const auto onAnswer = whileWriting([this](bool selected) {
        if (selected) {
            typeOver(m_queue.takeLast());
        } else if (since(m_sinceSelecting) < m_limits.selection || isRetryingToRestore()) {
            askForFocus();
            QTimer::singleShot(m_limits.selectionPause, this, [this] {
                if (!m_outcome)
                    selectNext();
            });
        } else if (m_route == WriteRoute::Stretches && !m_isTouched) {
            takeRoute(WriteRoute::All, {m_from, true});
        } else {
            fail(AXError::Failure);
        }
    });
    // A key over no selection would insert or delete at the caret.
    if (next.length == 0) {
        onAnswer(true);
        return;
    }
    m_silence.start(m_limits.silence);
    if (m_route == WriteRoute::All)
        m_input->selectAll(onAnswer);
    else
        m_input->select(next.position, next.length, onAnswer);
}

void ValueWriter::typeOver(const TextEdit &edit)
{
    // Nothing to put in place of the selection: then a key that deletes it.
    const QString keys = edit.replacement.isEmpty() ? QString(QChar(u'\b')) : edit.replacement;
    const QString selected = m_from.sliced(edit.position, edit.length);
    m_typed = true;
    m_typist.type(m_input->typingTarget(selected), keyboardEvents(keys),
                  whileWriting([this](TypingResult result) { onTyped(result); }));
}

void ValueWriter::onTyped(TypingResult result)
{
    if (result != TypingResult::NoTarget)
        m_isTouched = true;
    if (result == TypingResult::Typed) {
        typeNext();
        return;
    }
    m_failure.keysMayBeElsewhere |= result == TypingResult::Misplaced;
    // The text may have become right nonetheless; the reading decides.
    if (result == TypingResult::Failed) {
        watch();
    } else if (result != TypingResult::Interrupted && isRetryingToRestore()) {
        m_queue.clear();
        read(&ValueWriter::pursue);
    } else {
        fail(errorFor(result));
    }
}

void ValueWriter::watch()
{
    m_sinceChange.start();
    m_lastRead = m_from;
    read(&ValueWriter::judge);
}

void ValueWriter::judge(const TextInput::Content &content)
{
    if (isGoal(content.text)) {
        pursue(content);
        return;
    }
    if (content.text != m_lastRead) {
        m_lastRead = content.text;
        m_sinceChange.start();
    }
    const auto still = since(m_sinceChange);
    if (content.text == m_from) {
        if (still >= m_limits.unchanged && !m_typed) {
            takeNextRoute(content);
            return;
        }
    } else if (isProgramsOwnChange(m_goal, content.text)) {
        if (still >= m_limits.changed) {
            if (m_isRestoring) {
                finish(m_failure);
                return;
            }
            WriteOutcome outcome;
            outcome.kind = WriteOutcome::Kind::ChangedByProgram;
            outcome.changedCharacters =
                changedCharacters(textDifference(m_goal, content.text), m_goal);
            finish(outcome);
            return;
        }
    }
    if (still >= m_limits.still) {
        // What took the focus may have got these keys too; there is time for another try.
        if (isRetryingToRestore())
            pursue(content);
        else
            fail(AXError::Failure);
        return;
    }
    QTimer::singleShot(m_limits.readPause, this, [this] {
        if (!m_outcome)
            read(&ValueWriter::judge);
    });
}

void ValueWriter::fail(AXError why)
{
    m_queue.clear();
    m_silence.stop();
    if (m_isRestoring) {
        m_failure.isDamaged = true;
        finish(m_failure);
        return;
    }
    m_failure.kind = WriteOutcome::Kind::NotWritten;
    m_failure.error = why;
    if (m_isTouched)
        restore();
    else
        finish(m_failure);
}

/// Another element of the window may take the focus at any moment, also again.
bool ValueWriter::isRetryingToRestore()
{
    return m_isRestoring && since(m_sinceRestoring) < m_limits.restoring;
}

/// While the old text is put back. What took the focus may be known only a moment later, so that
/// the first look is not the last.
void ValueWriter::askForFocus()
{
    if (!m_isRestoring || m_input->hasFocus())
        return;
    if (m_sinceFocusRequest.isValid() && since(m_sinceFocusRequest) < m_limits.focusPause)
        return;
    m_sinceFocusRequest.start();
    m_input->takeFocus();
}

/// Puts the old text back, once.
void ValueWriter::restore()
{
    m_isRestoring = true;
    m_goal = m_before;
    m_sinceRestoring.start();
    if (!m_input->takesEdits())
        askForFocus();
    read(&ValueWriter::pursue);
}

void ValueWriter::finish(WriteOutcome outcome)
{
    if (m_outcome)
        return;
    m_silence.stop();
    m_outcome = outcome;
    // Never from within an answer: the completion may ask the application something else.
    QMetaObject::invokeMethod(this, &ValueWriter::deliver, Qt::QueuedConnection);
}

void ValueWriter::deliver()
{
    if (const auto completion = std::exchange(m_completion, nullptr))
        completion(*m_outcome);
    deleteLater();
}

} // namespace platform::linux_
