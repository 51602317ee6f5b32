// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/ports/TypingTarget.h"
#include "platform/text/TextDifference.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace platform::linux_
{

/// One input of another program, as far as writing into it is concerned. What it says is a claim:
/// only what is read back counts. No call waits; each handler is called once, from the event loop
/// or from within the program's answer, unless the connection to the program ends before. Positions
/// are UTF-16 units of the text that was read last. Main thread only.
class TextInput
{
public:
    virtual ~TextInput() = default;

    struct Content {
        /// As the user sees it, with line feeds between lines.
        QString text;
        /// Whether all of it has one format, so that none is lost when a stretch is replaced.
        bool isUniform = true;
        /// Whether each line is a paragraph of its own, as in a word processor.
        bool hasParagraphs = false;
        /// Where the caret is, when the program says.
        std::optional<qsizetype> caret{};
    };
    using Reader = std::function<void(const std::optional<Content> &)>;
    using Done = std::function<void(bool)>;

    /// Nothing when the program does not say.
    virtual void read(Reader reader) = 0;

    /// Whether the program offers to change the text itself.
    virtual bool takesEdits() const = 0;
    /// Whether the stretch can be edited and selected by itself, in contrast to the whole text.
    virtual bool canAddress(qsizetype position, qsizetype length) const = 0;
    /// Has the program replace one stretch.
    virtual void edit(const TextEdit &edit, Done done) = 0;
    /// Has the program replace everything.
    virtual void setContents(const QString &text, Done done) = 0;

    /// Selects a stretch, or everything, and tells whether it is selected now. It may take effect
    /// only after the answer: then ask again.
    virtual void select(qsizetype position, qsizetype length, Done done) = 0;
    virtual void selectAll(Done done) = 0;

    /// Asks the program to put the caret there.
    virtual void setCaret(qsizetype position) = 0;

    virtual bool hasFocus() = 0;
    /// Asks the program to give the input the focus, within the window that has it.
    virtual void takeFocus() = 0;
    /// The input to type into, with that text selected.
    virtual std::unique_ptr<TypingTarget> typingTarget(const QString &selected) = 0;
};

} // namespace platform::linux_
