// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/button/FloatingButtonManager.h"

#include "quillet/analytics/EventTracker.h"
#include "quillet/button/ButtonPlacement.h"
#include "quillet/button/DragFriendlyButton.h"
#include "quillet/button/NonActivatingPanel.h"
#include "quillet/diagnostics/DiagnosticLog.h"
#include "quillet/focus/AccessibilityElement.h"
#include "quillet/popup/PopupLayout.h"

#include <QCoreApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

using platform::AXError;
using platform::AXUIElement;
using platform::TypingResult;
using platform::WriteOutcome;

namespace
{

std::optional<FloatingButtonManager::Collaborators> &preparedCollaborators()
{
    static std::optional<FloatingButtonManager::Collaborators> prepared;
    return prepared;
}

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

double mainScreenHeight()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen ? screen->geometry().height() : 0;
}

} // namespace

FloatingButtonManager::FloatingButtonManager(const Collaborators &collaborators, QObject *parent)
    : FloatingPopupDelegate(parent)
    , m_collaborators(collaborators)
{
}

FloatingButtonManager::~FloatingButtonManager()
{
    delete m_popup;
    delete m_buttonWindow;
}

void FloatingButtonManager::prepareShared(const Collaborators &collaborators)
{
    preparedCollaborators().emplace(collaborators);
}

FloatingButtonManager &FloatingButtonManager::shared()
{
    static QPointer<FloatingButtonManager> instance;
    if (!instance) {
        Q_ASSERT_X(preparedCollaborators(), "FloatingButtonManager", "call prepareShared() first");
        instance =
            new FloatingButtonManager(*preparedCollaborators(), QCoreApplication::instance());
    }
    return *instance;
}

NonActivatingPanel *FloatingButtonManager::buttonWindow() const
{
    return m_buttonWindow;
}

void FloatingButtonManager::show(const AXUIElement &element)
{
    hide();
    m_element = element;
    const auto frame = getFrame(m_collaborators.accessibility, element);
    if (!frame)
        return;

    const double screenHeight = mainScreenHeight();
    const double size = ButtonPlacement::ButtonSize;
    const QRectF panelFrame(ButtonPlacement::panelOrigin(*frame, screenHeight), QSizeF(size, size));

    m_buttonWindow = new NonActivatingPanel;
    m_buttonWindow->setWindowTitle(QStringLiteral("Quillet"));
    m_buttonWindow->setGeometry(PopupLayout::flipped(panelFrame, screenHeight).toRect());
    m_collaborators.workspace.preparePanel(m_buttonWindow, false);

    auto *button = new DragFriendlyButton(
        QStringLiteral(":/images/QuilletIcon.svg"), [] { return QPointF(QCursor::pos()); },
        m_buttonWindow);
    button->setAccessibleName(QStringLiteral("Quillet"));
    button->setGeometry(m_buttonWindow->rect());
    connect(button, &DragFriendlyButton::clicked, this, &FloatingButtonManager::buttonClicked);

    m_buttonWindow->show();
    m_buttonWindow->raise();
}

void FloatingButtonManager::hide()
{
    if (m_buttonWindow) {
        m_buttonWindow->hide();
        m_buttonWindow->deleteLater();
        m_buttonWindow = nullptr;
    }
    if (m_popup) {
        m_popup->close();
        m_popup->deleteLater();
        m_popup = nullptr;
    }
}

void FloatingButtonManager::buttonClicked()
{
    if (!m_buttonWindow)
        return;
    const QRectF frame =
        PopupLayout::flipped(QRectF(m_buttonWindow->geometry()), mainScreenHeight());
    if (!m_popup)
        m_popup = new FloatingPopup(
            this, {m_collaborators.workspace, m_collaborators.writing, m_collaborators.tracker},
            this);
    m_popup->show(frame);
    m_collaborators.tracker.track(QStringLiteral("QuilletBadgeClick"));
}

void FloatingButtonManager::getText(std::function<void(const QString &)> completion)
{
    if (!m_element) {
        printLine(QStringLiteral("element is nil"));
        completion({});
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
    // The popup may have held the keyboard while the user edited the result.
    m_collaborators.workspace.restoreFocus(
        [self = QPointer(this), element = m_element, text](bool restored) {
            if (!self)
                return;
            if (restored) {
                self->write(element, text);
                return;
            }
            printLine(QStringLiteral("⚠️ The input's window did not take the keyboard back"));
            Q_EMIT self->textApplied(text, WriteOutcome::notWritten(AXError::CannotComplete));
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
        Q_EMIT textApplied(text, WriteOutcome::notWritten(error == AXError::Success
                                                              ? AXError::AttributeUnsupported
                                                              : error));
        return;
    }
    m_collaborators.accessibility.AXUIElementSetAttributeValue(
        element, value, text, [self = QPointer(this), text](const WriteOutcome &outcome) {
            if (outcome.isWritten())
                printLine(QStringLiteral("✅ Text set successfully"));
            else
                printLine(QStringLiteral("❌ Failed to set text: %1")
                              .arg(static_cast<int>(outcome.error)));
            if (outcome.kind == WriteOutcome::Kind::ChangedByProgram)
                printLine(QStringLiteral("⚠️ The application changed %1 characters of the text")
                              .arg(outcome.changedCharacters));
            if (self)
                Q_EMIT self->textApplied(text, outcome);
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
                Q_EMIT self->textApplied(text, outcome);
        });
}

std::optional<QString> FloatingButtonManager::readText(const AXUIElement &element,
                                                       QLatin1StringView attribute)
{
    return getAttribute<QString>(m_collaborators.accessibility, element, attribute);
}
