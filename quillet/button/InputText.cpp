// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// How the manager reads and writes the text of its input.
#include "quillet/button/FloatingButtonManager.h"

#include "quillet/button/NonActivatingPanel.h"
#include "quillet/diagnostics/DiagnosticLog.h"
#include "quillet/focus/AccessibilityElement.h"

using platform::AXError;
using platform::AXUIElement;
using platform::TypingResult;
using platform::WriteOutcome;

namespace
{

QString lineFor(TypingResult result)
{
    switch (result) {
    case TypingResult::Typed:
        return QStringLiteral("✅ Typed text into WebArea via simulated input");
    case TypingResult::NoTarget:
        return QStringLiteral("⚠️ Nothing typed — the keyboard is elsewhere");
    case TypingResult::Interrupted:
        return QStringLiteral("⚠️ Typing stopped — the keyboard went elsewhere");
    case TypingResult::Misplaced:
        return QStringLiteral("⚠️ Typing stopped — keys may have gone elsewhere");
    case TypingResult::Failed:
        break;
    }
    return QStringLiteral("❌ Failed to type text");
}

} // namespace

std::optional<FloatingButtonManager::Scope>
FloatingButtonManager::selectionOf(const AXUIElement &element)
{
    const auto range = getAttribute<platform::CFRange>(m_collaborators.accessibility, element,
                                                       QStringLiteral("AXSelectedTextRange"));
    const auto value = readText(element, QLatin1StringView("AXValue"));
    if (!range || !value || range->length <= 0 || range->location < 0 ||
        range->location + range->length > value->size())
        return std::nullopt;
    return Scope{*range, value->sliced(range->location, range->length)};
}

void FloatingButtonManager::getText(std::function<void(const QString &)> completion)
{
    if (!m_element) {
        printLine(QStringLiteral("element is nil"));
        completion({});
        return;
    }
    if (m_scope) {
        completion(m_scope->text);
        return;
    }
    if (readText(m_element, QLatin1StringView("AXRole")) == QLatin1StringView("AXWebArea")) {
        if (!m_collaborators.accessibility.copyTreeText(m_element, completion))
            completion(getWebAreaText(m_element));
        return;
    }
    if (const auto value = readText(m_element, QLatin1StringView("AXValue")))
        completion(*value);
    else
        completion(readText(m_element, QLatin1StringView("AXSelectedText")).value_or(QString()));
}

QString FloatingButtonManager::getWebAreaText(const AXUIElement &element)
{
    for (const auto attribute :
         {QLatin1StringView("AXValue"), QLatin1StringView("AXSelectedText")}) {
        const auto text = readText(element, attribute);
        if (text && !text->isEmpty())
            return *text;
    }
    const auto children = getAttribute<QList<AXUIElement>>(m_collaborators.accessibility, element,
                                                           QStringLiteral("AXChildren"));
    if (!children)
        return {};
    QStringList texts;
    for (const AXUIElement &child : *children)
        texts.append(getWebAreaText(child));
    return texts.join(u'\n');
}

void FloatingButtonManager::setText(const QString &text)
{
    if (!m_element) {
        printLine(QStringLiteral("❌ No element to set text on"));
        return;
    }
    QString whole = text;
    if (m_scope) {
        const auto now = readText(m_element, QLatin1StringView("AXValue"));
        const platform::CFRange range = m_scope->range;
        // The rest of the text stays as it is; a place that holds something else by now is not
        // touched.
        if (!now || QStringView(*now).mid(range.location, range.length) != m_scope->text) {
            printLine(QStringLiteral("⚠️ The selected text has changed meanwhile"));
            finish(text, WriteOutcome::notWritten(AXError::CannotComplete));
            return;
        }
        whole = QString(*now).replace(range.location, range.length, text);
    }
    // The popup may have held the keyboard while the user edited the result.
    m_collaborators.workspace.restoreFocus(
        [self = QPointer(this), element = m_element, text = whole](bool restored) {
            if (!self)
                return;
            if (restored) {
                self->write(element, text);
                return;
            }
            printLine(QStringLiteral("⚠️ The input's window did not take the keyboard back"));
            self->finish(text, WriteOutcome::notWritten(AXError::CannotComplete));
        });
}

void FloatingButtonManager::write(const AXUIElement &element, const QString &text)
{
    if (readText(element, QLatin1StringView("AXRole")) == QLatin1StringView("AXWebArea")) {
        setWebAreaText(element, text);
        return;
    }
    const QString value = QStringLiteral("AXValue");
    bool settable = false;
    const AXError error =
        m_collaborators.accessibility.AXUIElementIsAttributeSettable(element, value, settable);
    if (error != AXError::Success || !settable) {
        printLine(QStringLiteral("❌ Cannot set AXValue on this element"));
        finish(text, WriteOutcome::notWritten(
                         error == AXError::Success ? AXError::AttributeUnsupported : error));
        return;
    }
    std::optional<QString> former;
    if (readText(element, QLatin1StringView("AXSubrole")) != QLatin1StringView("AXSecureTextField"))
        former = readText(element, QLatin1StringView("AXValue"));
    m_collaborators.accessibility.AXUIElementSetAttributeValue(
        element, value, text,
        [self = QPointer(this), element, text, former](const WriteOutcome &outcome) {
            if (outcome.isWritten())
                printLine(QStringLiteral("✅ Text set successfully"));
            else
                printLine(QStringLiteral("❌ Failed to set text: %1")
                              .arg(static_cast<int>(outcome.error)));
            if (outcome.kind == WriteOutcome::Kind::ChangedByProgram)
                printLine(QStringLiteral("⚠️ The application changed %1 characters of the text")
                              .arg(outcome.changedCharacters));
            if (!self)
                return;
            if (former && *former != text)
                self->m_formerTexts.remember(element, *former);
            self->finish(text, outcome);
        });
}

void FloatingButtonManager::setWebAreaText(const AXUIElement &element, const QString &text)
{
    m_collaborators.keyboard.CGEventPost(
        element, platform::keyboardEvents(text),
        [self = QPointer(this), text](TypingResult result) {
            printLine(lineFor(result));
            WriteOutcome outcome;
            if (result != TypingResult::Typed)
                outcome = WriteOutcome::notWritten(AXError::CannotComplete);
            // Only what has been sent can have arrived.
            outcome.isDamaged =
                result == TypingResult::Interrupted || result == TypingResult::Misplaced;
            outcome.keysMayBeElsewhere = result == TypingResult::Misplaced;
            if (self)
                self->finish(text, outcome);
        });
}

std::optional<QString> FloatingButtonManager::readText(const AXUIElement &element,
                                                       QLatin1StringView attribute)
{
    return getAttribute<QString>(m_collaborators.accessibility, element, attribute);
}
