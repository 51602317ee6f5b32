// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/focus/AtspiTextInput.h"

#include "platform/linux/focus/AtspiTypingTarget.h"
#include "platform/linux/reading/CodePoints.h"
#include "platform/linux/reading/ParagraphFlow.h"

#include <algorithm>
#include <utility>

namespace platform::linux_
{

namespace
{

void noteNothing(DBusMessage &) {}

CallChannel::Handler telling(const TextInput::Done &done)
{
    return [done](DBusMessage &reply) { done(!reply.isError()); };
}

/// `reply`: to GetAttributeRun at the beginning of the text.
TextInput::Content withFormat(TextInput::Content content, DBusMessage &reply)
{
    const auto attributes = reply.readDictionary();
    const auto start = reply.readInt32();
    const auto end = reply.readInt32();
    const bool known = attributes && start && end;
    // Some toolkits end every run at the end of its line.
    const qint64 firstLine = codePointCount(content.text.section(u'\n', 0, 0));
    content.isUniform = !known || (*start <= 0 && *end >= firstLine);
    return content;
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
    // A text box looks at its paragraphs only when the caret moves.
    if (!m_paragraphMaker.isEmpty())
        m_application->call(std::exchange(m_paragraphMaker, {}), atspi::textInterface,
                            "SetCaretOffset", noteNothing, "i", 0);
    readRichContent(
        *m_application, m_element.path,
        [application = m_application, shared = m_content, reader,
         edits = takesEdits()](std::optional<RichTextContent> found) {
            if (!found) {
                reader(std::nullopt);
                return;
            }
            Content content;
            content.text = withLineFeeds(found->text);
            // Where two line ends became one, the positions no longer hold.
            if (content.text.size() != found->text.size())
                found->pieces.clear();
            *shared = *std::move(found);
            content.isUniform = shared->pieces.size() <= 1;
            content.hasParagraphs = shared->isFlow;
            content.caret = shared->caret;
            const bool asked =
                edits && shared->pieces.size() == 1 && application &&
                application->call(
                    shared->pieces.first().path, atspi::textInterface, "GetAttributeRun",
                    [content, reader](DBusMessage &reply) { reader(withFormat(content, reply)); },
                    "ib", 0, 0);
            if (!asked)
                reader(content);
        },
        m_content->flowParent);
}

/// Toolkits count characters (code points), but for two, which count UTF-16 units, and for programs
/// of which that is known only when their text has been read.
bool AtspiTextInput::countsUtf16() const
{
    return isQt() || m_facts.toolkit == "Gecko" ||
           (!m_content->pieces.isEmpty() && m_content->pieces.first().countsUnits);
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
        const bool inUnits = countsUtf16() || piece.countsUnits;
        return static_cast<qint32>(inUnits ? at : codePointCount(piece.text.first(at)));
    };
    return {piece.path, number(from), number(from + length)};
}

bool AtspiTextInput::canAddress(qsizetype position, qsizetype length) const
{
    if (pieceAt(position, length))
        return true;
    // Each line of a flow is a paragraph, unless it holds an object.
    return m_content->isFlow && takesEdits() &&
           m_content->pieces.size() == m_content->text.count(u'\n') + 1 - softBreaks();
}

/// The line feeds within the paragraphs.
qsizetype AtspiTextInput::softBreaks() const
{
    qsizetype count = 0;
    for (const TextPiece &piece : std::as_const(m_content->pieces))
        count += piece.text.count(u'\n');
    return count;
}

void AtspiTextInput::edit(const TextEdit &edit, Done done)
{
    const TextPiece *piece = pieceAt(edit.position, edit.length);
    if (m_application && piece)
        editPiece(*piece, edit, std::move(done));
    else if (m_application && canAddress(edit.position, edit.length))
        editParagraphs(edit, done);
    else
        done(false);
}

/// Lines go to the paragraphs that there are, in their order. More lines become paragraphs of their
/// own; where there are fewer, paragraphs stay that are empty.
void AtspiTextInput::editParagraphs(const TextEdit &edit, const Done &done)
{
    QList<TextPiece> pieces = m_content->pieces;
    pieces.removeIf([&](const TextPiece &piece) {
        return piece.position > edit.end() || piece.position + piece.length < edit.position;
    });
    const QStringList lines = edit.replacement.split(u'\n');
    for (qsizetype i = pieces.size() - 1; i >= 0; --i) {
        const TextPiece &piece = pieces.at(i);
        TextEdit part;
        part.position = std::max(edit.position, piece.position);
        part.length = std::min(edit.end(), piece.position + piece.length) - part.position;
        part.replacement = i + 1 == pieces.size() ? lines.mid(i).join(u'\n') : lines.value(i);
        editPiece(
            piece, part, i == 0 ? done : [](bool) {});
    }
}

void AtspiTextInput::editPiece(const TextPiece &piece, const TextEdit &edit, const Done &done)
{
    const Place place = placeOf(piece, edit.position, edit.length);
    const bool inserts = !edit.replacement.isEmpty();
    if (edit.length > 0)
        m_application->call(place.path, atspi::editableTextInterface, "DeleteText",
                            inserts ? CallChannel::Handler(noteNothing) : telling(done), "ii",
                            place.start, place.end);
    if (!inserts) {
        if (edit.length == 0)
            done(true);
        return;
    }
    QString inserted = edit.replacement;
    // A line feed breaks the line within the paragraph, a carriage return begins a new one.
    if (isParagraphOfDocument(m_facts))
        inserted.replace(u'\n', u'\r');
    const QByteArray text = inserted.toUtf8();
    // The length is in bytes (ATK's atk_editable_text_insert_text); Qt takes UTF-16 units.
    const auto length = static_cast<qint32>(isQt() ? inserted.size() : text.size());
    m_application->call(place.path, atspi::editableTextInterface, "InsertText", telling(done),
                        "isi", place.start, text.constData(), length);
    if (inserted.contains(u'\r'))
        m_paragraphMaker = place.path;
}

void AtspiTextInput::setContents(const QString &text, Done done)
{
    if (!m_application) {
        done(false);
        return;
    }
    if (isParagraphOfDocument(m_facts)) {
        edit({0, m_content->text.size(), text}, std::move(done));
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
    askToSelect(placeOf(*piece, position, length), piece->text,
                piece->offset + position - piece->position, length, std::move(done));
}

void AtspiTextInput::selectAll(Done done)
{
    // No selection reaches over several paragraphs here.
    if (m_content->isFlow && m_content->pieces.size() != 1) {
        done(false);
        return;
    }
    const QString &own = m_content->ownText;
    const auto count = static_cast<qint32>(countsUtf16() ? own.size() : codePointCount(own));
    askToSelect({m_element.path, 0, count}, own, 0, own.size(), std::move(done));
}

void AtspiTextInput::askToSelect(const Place &place, const QString &text, qsizetype at,
                                 qsizetype length, Done done)
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
    const auto caret = std::make_shared<std::optional<qint32>>();
    m_application->call(
        place.path, atspi::propertiesInterface, "Get",
        [caret](DBusMessage &reply) {
            if (reply.enterVariant("i"))
                *caret = reply.readInt32();
        },
        "ss", atspi::textInterface, "CaretOffset");
    const auto isOne = std::make_shared<bool>(false);
    m_application->call(place.path, atspi::textInterface, "GetNSelections",
                        [isOne](DBusMessage &reply) { *isOne = reply.readInt32() == 1; });
    m_application->call(
        place.path, atspi::textInterface, "GetSelection",
        [=, application = m_application, caretMovedTo = m_caretMovedTo, movesCaret = isQt(),
         done = std::move(done)](DBusMessage &reply) {
            const auto start = reply.readInt32();
            const auto end = reply.readInt32();
            const bool isCaretBehind = *caret == place.end;
            const bool isHidden = start == 0 && end == 0 && *isOne && isCaretBehind &&
                                  isSelectionHidden(text, at, length);
            const bool isMade = start && end &&
                                (isHidden || isSelection(text, at, length, std::min(*start, *end),
                                                         std::max(*start, *end)));
            // KDE's editors leave the caret where it is, and put there what is typed over the
            // selection. Once it stands at the edge, the same selection is asked for again.
            const bool isAway = isMade && movesCaret && caret->value_or(-1) >= 0 &&
                                !isCaretBehind && *caret != place.start && *caret != start &&
                                *caret != end;
            if (isAway && *caretMovedTo != place.end && application) {
                *caretMovedTo = place.end;
                application->call(place.path, atspi::textInterface, "SetCaretOffset", noteNothing,
                                  "i", place.end);
                done(false);
                return;
            }
            done(isMade);
        },
        "i", 0);
}

void AtspiTextInput::setCaret(qsizetype position)
{
    const TextPiece *piece = pieceAt(position, 0);
    if (piece && m_application)
        m_application->call(piece->path, atspi::textInterface, "SetCaretOffset", noteNothing, "i",
                            placeOf(*piece, position, 0).start);
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
