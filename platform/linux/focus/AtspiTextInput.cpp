// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/focus/AtspiTextInput.h"

#include "platform/linux/focus/AtspiTypingTarget.h"
#include "platform/linux/reading/CodePoints.h"

#include <algorithm>

namespace platform::linux_
{

namespace
{

void noteNothing(DBusMessage &) {}

CallChannel::Handler telling(const TextInput::Done &done)
{
    return [done](DBusMessage &reply) { done(!reply.isError()); };
}

} // namespace

AtspiTextInput::AtspiTextInput(AtspiBus &bus, FocusTracker &focus, AtspiApplication &application,
                               ObjectRef element, ElementFacts facts, quint32 window)
    : m_bus(bus)
    , m_focus(focus)
    , m_application(&application)
    , m_element(std::move(element))
    , m_facts(std::move(facts))
    , m_window(window)
{
}

void AtspiTextInput::read(Reader reader)
{
    if (!m_application) {
        reader(std::nullopt);
        return;
    }
    const auto onFormat = [reader](const QString &text, DBusMessage &reply) {
        const auto attributes = reply.readDictionary();
        const auto start = reply.readInt32();
        const auto end = reply.readInt32();
        const bool known = attributes && start && end;
        // Some toolkits end every run at the end of its line.
        const qint64 firstLine = codePointCount(text.section(u'\n', 0, 0));
        reader(Content{text, !known || (*start <= 0 && *end >= firstLine)});
    };
    readRichContent(*m_application, m_element.path,
                    [application = m_application, content = m_content, path = m_element.path,
                     reader, onFormat, edits = takesEdits()](std::optional<RichTextContent> found) {
                        if (!found) {
                            reader(std::nullopt);
                            return;
                        }
                        const QString text = withLineFeeds(found->text);
                        // Where two line ends became one, the positions no longer hold.
                        if (text.size() != found->text.size())
                            found->pieces.clear();
                        *content = *std::move(found);
                        const bool asked =
                            edits && content->pieces.size() == 1 && application &&
                            application->call(
                                path, atspi::textInterface, "GetAttributeRun",
                                [text, onFormat](DBusMessage &reply) { onFormat(text, reply); },
                                "ib", 0, 0);
                        if (!asked)
                            reader(Content{text, content->pieces.size() <= 1});
                    });
}

/// Toolkits count characters (code points), but for two, which count UTF-16 units.
bool AtspiTextInput::countsUtf16() const
{
    return isQt() || m_facts.toolkit == "Gecko";
}

bool AtspiTextInput::isQt() const
{
    return m_facts.toolkit == "Qt";
}

const TextPiece *AtspiTextInput::pieceAt(qsizetype position, qsizetype length) const
{
    const auto &pieces = m_content->pieces;
    const auto found = std::find_if(pieces.begin(), pieces.end(), [&](const TextPiece &piece) {
        return position >= piece.position && position + length <= piece.position + piece.length;
    });
    return found == pieces.end() ? nullptr : &*found;
}

AtspiTextInput::Place AtspiTextInput::placeOf(const TextPiece &piece, qsizetype position,
                                              qsizetype length) const
{
    const qsizetype from = piece.offset + position - piece.position;
    const auto number = [&](qsizetype at) {
        return static_cast<qint32>(countsUtf16() ? at : codePointCount(piece.text.first(at)));
    };
    return {piece.path, number(from), number(from + length)};
}

bool AtspiTextInput::canAddress(qsizetype position, qsizetype length) const
{
    return pieceAt(position, length) != nullptr;
}

void AtspiTextInput::edit(const TextEdit &edit, Done done)
{
    const TextPiece *piece = pieceAt(edit.position, edit.length);
    if (!piece || !m_application) {
        done(false);
        return;
    }
    const Place place = placeOf(*piece, edit.position, edit.length);
    const bool inserts = !edit.replacement.isEmpty();
    if (edit.length > 0)
        m_application->call(place.path, atspi::editableTextInterface, "DeleteText",
                            inserts ? CallChannel::Handler(noteNothing) : telling(done), "ii",
                            place.start, place.end);
    if (!inserts)
        return;
    const QByteArray text = edit.replacement.toUtf8();
    // The length is in bytes (ATK's atk_editable_text_insert_text); Qt takes UTF-16 units.
    const auto length = static_cast<qint32>(isQt() ? edit.replacement.size() : text.size());
    m_application->call(place.path, atspi::editableTextInterface, "InsertText", telling(done),
                        "isi", place.start, text.constData(), length);
}

void AtspiTextInput::setContents(const QString &text, Done done)
{
    if (!m_application) {
        done(false);
        return;
    }
    m_application->call(m_element.path, atspi::editableTextInterface, "SetTextContents",
                        telling(done), "s", text.toUtf8().constData());
}

void AtspiTextInput::select(qsizetype position, qsizetype length, Done done)
{
    const TextPiece *piece = pieceAt(position, length);
    if (!piece) {
        done(false);
        return;
    }
    const qsizetype from = piece->offset + position - piece->position;
    askToSelect(
        placeOf(*piece, position, length),
        [text = piece->text, from, length](qint32 start, qint32 end) {
            return isSelection(text, from, length, start, end);
        },
        std::move(done));
}

void AtspiTextInput::selectAll(Done done)
{
    const QString own = m_content->ownText;
    const auto count = static_cast<qint32>(countsUtf16() ? own.size() : codePointCount(own));
    askToSelect(
        {m_element.path, 0, count},
        [own](qint32 start, qint32 end) { return isSelection(own, 0, own.size(), start, end); },
        std::move(done));
}

void AtspiTextInput::askToSelect(const Place &place, std::function<bool(qint32, qint32)> isRight,
                                 Done done)
{
    if (!m_application || !hasFocus()) {
        done(false);
        return;
    }
    // Chromium adds a selection where there is none, and changes the one that there is.
    m_application->call(place.path, atspi::textInterface, "AddSelection", noteNothing, "ii",
                        place.start, place.end);
    m_application->call(place.path, atspi::textInterface, "SetSelection", noteNothing, "iii", 0,
                        place.start, place.end);
    m_application->call(
        place.path, atspi::textInterface, "GetSelection",
        [isRight = std::move(isRight), done = std::move(done)](DBusMessage &reply) {
            const auto start = reply.readInt32();
            const auto end = reply.readInt32();
            done(start && end && isRight(std::min(*start, *end), std::max(*start, *end)));
        },
        "i", 0);
}

bool AtspiTextInput::hasFocus()
{
    if (m_focus.hasFocus(m_element, m_window))
        return true;
    // The window may have got the keyboard back a moment ago.
    const FocusTracker::Focus focus = m_focus.current();
    return focus.kind == FocusTracker::Kind::Element && focus.element == m_element &&
           focus.window == m_window;
}

void AtspiTextInput::takeFocus()
{
    // Never away from another window.
    if (m_application && m_focus.windowOf(m_element.busName) == m_window)
        m_application->call(m_element.path, atspi::componentInterface, "GrabFocus", noteNothing);
}

std::unique_ptr<TypingTarget> AtspiTextInput::typingTarget(const QString &selected)
{
    // An editing region is counted by what it reads as.
    const bool inUnits = countsUtf16() && !isEditingHost(m_facts);
    return AtspiTypingTarget::of(m_bus, m_focus, m_element, m_facts, m_window,
                                 inUnits ? selected.size() : codePointCount(selected));
}

} // namespace platform::linux_
