// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/accessibility/ValueWriter.h"

#include "platform/linux/reading/CodePoints.h"
#include "platform/linux/reading/RichText.h"

namespace platform::linux_
{

namespace
{

/// What was typed may still be on its way through the application's own scripts.
constexpr int selectionPause = 30;      // milliseconds
constexpr int selectionPatience = 2000; // milliseconds
constexpr int readBackPause = 40;       // milliseconds
constexpr int readBackPatience = 2500;  // milliseconds without any progress
/// An application that does not answer keeps the caller waiting no longer than this.
constexpr int answerPatience = 20'000; // milliseconds

/// With no-break spaces as spaces. A rich text field of a web page keeps spaces as it sees fit: it
/// turns each into the other where it would collapse or break a line.
QString withPlainSpaces(QString text)
{
    return text.replace(QChar::Nbsp, u' ');
}

} // namespace

bool isValueSettable(const ElementFacts &facts, bool focused)
{
    return isEditable(facts) && hasTextValue(facts) &&
           (facts.has(ElementFacts::EditableText) || focused);
}

ValueWriter::ValueWriter(AtspiApplication &application, ObjectRef element, ElementFacts facts,
                         QString text, FocusTracker &focus, Typist &typist, TargetProvider target,
                         std::function<void(const WriteOutcome &)> completion)
    : m_application(&application)
    , m_element(std::move(element))
    , m_facts(std::move(facts))
    , m_text(withLineFeeds(std::move(text)))
    , m_focus(focus)
    , m_typist(typist)
    , m_target(std::move(target))
    , m_completion(std::move(completion))
{
    connect(&application, &QObject::destroyed, this, [this] { finish(AXError::InvalidUIElement); });
    QTimer::singleShot(answerPatience, this, [this] {
        if (!m_application || !m_application->isAnswering())
            finish(AXError::CannotComplete);
    });
}

bool ValueWriter::holds(const std::optional<QString> &value) const
{
    return value && withLineFeeds(*value) == m_text;
}

bool ValueWriter::holdsAsTyped(const std::optional<QString> &value) const
{
    return value && withPlainSpaces(withLineFeeds(*value)) == withPlainSpaces(m_text);
}

void ValueWriter::start()
{
    readRichText(*m_application, m_element.path,
                 [self = QPointer(this)](const std::optional<QString> &value) {
                     if (!self || self->m_result)
                         return;
                     if (!value) {
                         self->finish(AXError::CannotComplete);
                     } else if (self->holds(value)) {
                         self->finish(AXError::Success);
                     } else if (self->m_facts.has(ElementFacts::EditableText)) {
                         self->setContents();
                     } else {
                         self->m_lastRead = *value;
                         self->m_application->call(
                             self->m_element.path, atspi::PropertiesInterface, "Get",
                             [self](DBusMessage &reply) {
                                 if (!self || self->m_result)
                                     return;
                                 const auto number =
                                     reply.enterVariant("i") ? reply.readInt32() : std::nullopt;
                                 self->type(number.value_or(0));
                             },
                             "ss", atspi::TextInterface, "CharacterCount");
                     }
                 });
}

void ValueWriter::setContents()
{
    const QByteArray text = m_text.toUtf8();
    m_application->call(
        m_element.path, atspi::EditableTextInterface, "SetTextContents",
        [self = QPointer(this)](DBusMessage &) {
            // The answer alone proves nothing: some toolkits say yes and do nothing.
            if (self && !self->m_result)
                self->readBack(true);
        },
        "s", text.constData());
}

void ValueWriter::readBack(bool mayTryAgain)
{
    readRichText(*m_application, m_element.path,
                 [self = QPointer(this), mayTryAgain](const std::optional<QString> &value) {
                     if (!self || self->m_result)
                         return;
                     if (self->holds(value))
                         self->finish(AXError::Success);
                     else if (mayTryAgain && value)
                         self->replaceContents(codePointCount(*value));
                     else
                         self->finish(AXError::Failure);
                 });
}

void ValueWriter::replaceContents(qint64 count)
{
    const QByteArray text = m_text.toUtf8();
    if (count > 0)
        m_application->call(
            m_element.path, atspi::EditableTextInterface, "DeleteText", [](DBusMessage &) {}, "ii",
            0, qint32(count));
    m_application->call(
        m_element.path, atspi::EditableTextInterface, "InsertText",
        [self = QPointer(this)](DBusMessage &) {
            if (self && !self->m_result)
                self->readBack(false);
        },
        "isi", 0, text.constData(), qint32(codePointCount(m_text)));
}

void ValueWriter::type(qint64 count)
{
    if (!m_focus.hasFocus(m_element)) {
        finish(AXError::CannotComplete);
        return;
    }
    m_sinceProgress.start();
    if (count > 0)
        selectAll(count);
    else
        typeOverSelection();
}

void ValueWriter::selectAll(qint64 count)
{
    if (!m_application || !m_focus.hasFocus(m_element)) {
        finish(AXError::CannotComplete);
        return;
    }
    // Chromium adds a selection where there is none, and changes the one that there is. Either
    // takes effect some time after the answer, so what is selected is asked for before a key is
    // sent that would otherwise delete or insert at the caret.
    m_application->call(
        m_element.path, atspi::TextInterface, "AddSelection", [](DBusMessage &) {}, "ii", 0,
        qint32(count));
    m_application->call(
        m_element.path, atspi::TextInterface, "SetSelection", [](DBusMessage &) {}, "iii", 0, 0,
        qint32(count));
    m_application->call(
        m_element.path, atspi::TextInterface, "GetSelection",
        [self = QPointer(this), count](DBusMessage &reply) {
            if (!self || self->m_result)
                return;
            const qint32 start = reply.readInt32().value_or(0);
            const qint32 end = reply.readInt32().value_or(0);
            if (std::min(start, end) == 0 && std::max(start, end) >= count)
                self->typeOverSelection();
            else if (self->m_sinceProgress.elapsed() > selectionPatience)
                self->finish(AXError::Failure);
            else
                QTimer::singleShot(selectionPause, self, [self, count] { self->selectAll(count); });
        },
        "i", 0);
}

void ValueWriter::typeOverSelection()
{
    if (!m_focus.hasFocus(m_element)) {
        finish(AXError::CannotComplete);
        return;
    }
    // Nothing to put in place of the selection: then a key that deletes it.
    const QString keys = m_text.isEmpty() ? QString(QChar(u'\b')) : m_text;
    m_typist.type(m_target(), keyboardEvents(keys), [self = QPointer(this)](TypingResult result) {
        if (!self || self->m_result)
            return;
        if (result != TypingResult::Typed) {
            self->finish(AXError::Failure);
            return;
        }
        self->m_sinceProgress.start();
        self->awaitTyped();
    });
}

void ValueWriter::awaitTyped()
{
    if (!m_application) {
        finish(AXError::InvalidUIElement);
        return;
    }
    readRichText(*m_application, m_element.path,
                 [self = QPointer(this)](const std::optional<QString> &value) {
                     if (!self || self->m_result)
                         return;
                     if (self->holdsAsTyped(value)) {
                         self->finish(AXError::Success);
                         return;
                     }
                     if (value && *value != self->m_lastRead) {
                         self->m_lastRead = *value;
                         self->m_sinceProgress.restart();
                     }
                     if (self->m_sinceProgress.elapsed() > readBackPatience)
                         self->finish(AXError::Failure);
                     else
                         QTimer::singleShot(readBackPause, self, &ValueWriter::awaitTyped);
                 });
}

void ValueWriter::finish(AXError result)
{
    if (m_result)
        return;
    m_result = result;
    // Never from within an answer: whoever is told may ask the application something else.
    QMetaObject::invokeMethod(this, &ValueWriter::deliver, Qt::QueuedConnection);
}

void ValueWriter::deliver()
{
    if (const auto completion = std::exchange(m_completion, nullptr))
        completion(*m_result == AXError::Success ? WriteOutcome::written()
                                                 : WriteOutcome::notWritten(*m_result));
    deleteLater();
}

} // namespace platform::linux_
