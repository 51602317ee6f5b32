// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/atspi/AtspiBus.h"
#include "platform/linux/focus/FocusTracker.h"
#include "platform/linux/ports/TextInput.h"
#include "platform/linux/reading/RichText.h"

#include <QPointer>

namespace platform::linux_
{

/// An input of another application on the accessibility bus. `bus` and `focus` must outlive it.
/// Main thread only.
class AtspiTextInput : public TextInput
{
public:
    /// `window`: the window that the element had the focus in when its text was read.
    AtspiTextInput(AtspiBus &bus, FocusTracker &focus, AtspiApplication &application,
                   ObjectRef element, ElementFacts facts, quint32 window);

    void read(Reader reader) override;
    bool takesEdits() const override { return m_facts.has(ElementFacts::EditableText); }
    bool canAddress(qsizetype position, qsizetype length) const override;
    void edit(const TextEdit &edit, Done done) override;
    void setContents(const QString &text, Done done) override;
    void select(qsizetype position, qsizetype length, Done done) override;
    void selectAll(Done done) override;
    void setCaret(qsizetype position) override;
    bool hasFocus() override;
    void takeFocus() override;
    std::unique_ptr<TypingTarget> typingTarget(const QString &selected) override;

private:
    /// A stretch in the numbers of the application, in one of its elements.
    struct Place {
        QByteArray path;
        qint32 start = 0;
        qint32 end = 0;
    };

    const TextPiece *pieceAt(qsizetype position, qsizetype length) const;
    qsizetype softBreaks() const;
    void editParagraphs(const TextEdit &edit, const Done &done);
    void editPiece(const TextPiece &piece, const TextEdit &edit, const Done &done);
    Place placeOf(const TextPiece &piece, qsizetype position, qsizetype length) const;
    bool countsUtf16() const;
    bool isQt() const;
    /// `at`: where the stretch begins in the text of its element, `length` its UTF-16 units.
    void askToSelect(const Place &place, const QString &text, qsizetype at, qsizetype length,
                     Done done);

    AtspiBus &m_bus;
    FocusTracker &m_focus;
    QPointer<AtspiApplication> m_application;
    const ObjectRef m_element;
    const ElementFacts m_facts;
    const quint32 m_window;
    /// The element into which paragraphs were written since the last reading.
    QByteArray m_paragraphMaker;
    /// What was read last. Shared, because an answer may come when this object is gone.
    std::shared_ptr<RichTextContent> m_content = std::make_shared<RichTextContent>();
    /// Where the caret was put last to be at the edge of a selection. Shared likewise.
    std::shared_ptr<qint32> m_caretMovedTo = std::make_shared<qint32>(-1);
};

} // namespace platform::linux_
