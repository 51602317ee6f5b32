// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/button/FloatingButtonManager.h"

#include "platform/ScreenCoordinates.h"
#include "quillet/analytics/EventTracker.h"
#include "quillet/button/ButtonPlacement.h"
#include "quillet/button/DragFriendlyButton.h"
#include "quillet/button/NonActivatingPanel.h"
#include "quillet/button/SidePanel.h"
#include "quillet/diagnostics/DiagnosticLog.h"
#include "quillet/focus/AccessibilityElement.h"
#include "quillet/popup/PopupLayout.h"
#include "quillet/widgets/Localisation.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>

#include <chrono>

using platform::AXError;
using platform::AXUIElement;
using platform::ScreenCoordinates;
using platform::WriteOutcome;

namespace
{

constexpr int maxOpenAttempts = 10;
constexpr std::chrono::milliseconds openAttemptPause{50};

std::optional<FloatingButtonManager::Collaborators> &preparedCollaborators()
{
    static std::optional<FloatingButtonManager::Collaborators> prepared;
    return prepared;
}

double mainScreenHeight()
{
    return ScreenCoordinates::current().mainScreen.height();
}

/// Where the button of an input belongs, in toolkit coordinates.
QRect buttonPlace(const QRectF &inputFrame)
{
    const double size = ButtonPlacement::buttonSize;
    const QPointF origin = ButtonPlacement::panelOrigin(inputFrame, mainScreenHeight());
    return ScreenCoordinates::current()
        .toolkitFromBottomLeft(QRectF(origin, QSizeF(size, size)))
        .toRect();
}

} // namespace

FloatingButtonManager::FloatingButtonManager(const Collaborators &collaborators, QObject *parent)
    : FloatingPopupDelegate(parent)
    , m_collaborators(collaborators)
{
}

FloatingButtonManager::~FloatingButtonManager()
{
    delete m_sidePanel;
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
    m_scope.reset();
    if (const auto frame = getFrame(m_collaborators.accessibility, element))
        makeButton(*frame);
    // An input that is out of sight at first gets its button when it comes into sight.
    if (m_collaborators.frames)
        m_collaborators.frames->watch(
            element, [this](const std::optional<QRectF> &inputFrame) { follow(inputFrame); });
}

void FloatingButtonManager::makeButton(const QRectF &inputFrame)
{
    m_buttonWindow = new NonActivatingPanel;
    m_buttonWindow->setWindowTitle(QStringLiteral("Quillet"));
    const QRect place = buttonPlace(inputFrame);
    m_corner = place.topLeft();
    m_buttonWindow->setGeometry(place.translated(m_distances.of(m_element)));
    m_collaborators.workspace.preparePanel(m_buttonWindow, false);

    auto *button = new DragFriendlyButton(
        QStringLiteral(":/images/QuilletIcon.svg"),
        [&workspace = m_collaborators.workspace] { return workspace.mouseLocation(); },
        m_buttonWindow);
    button->setAccessibleName(QStringLiteral("Quillet"));
    button->setGeometry(m_buttonWindow->rect());
    connect(button, &DragFriendlyButton::clicked, this, &FloatingButtonManager::buttonClicked);
    connect(button, &DragFriendlyButton::menuWanted, this, &FloatingButtonManager::showMenu);
    connect(button, &DragFriendlyButton::dragged, this, &FloatingButtonManager::keepDistance);

    m_buttonWindow->show();
    m_buttonWindow->raise();
}

void FloatingButtonManager::follow(const std::optional<QRectF> &inputFrame)
{
    const bool isHeld = QGuiApplication::mouseButtons() & Qt::LeftButton;
    if (!inputFrame) {
        if (m_buttonWindow && !isHeld)
            m_buttonWindow->hide();
        return;
    }
    if (!m_buttonWindow) {
        makeButton(*inputFrame);
        return;
    }
    m_corner = buttonPlace(*inputFrame).topLeft();
    // The user's hand decides; keepDistance() comes when it lets go.
    if (isHeld)
        return;
    m_buttonWindow->move(m_corner + m_distances.of(m_element));
    if (!m_buttonWindow->isVisible()) {
        m_buttonWindow->show();
        m_buttonWindow->raise();
    }
}

void FloatingButtonManager::keepDistance()
{
    if (m_buttonWindow)
        m_distances.keep(m_element, m_buttonWindow->pos() - m_corner);
}

void FloatingButtonManager::hide()
{
    if (m_collaborators.frames)
        m_collaborators.frames->watch({}, {});
    if (m_sidePanel)
        m_sidePanel->close();
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

bool FloatingButtonManager::hasLostInput()
{
    platform::AXValue frame;
    const AXError error = m_collaborators.accessibility.AXUIElementCopyAttributeValue(
        m_element, kAXFrameAttribute, frame);
    // An application that is busy, or does not answer, has not taken its input away.
    return error == AXError::InvalidUIElement || error == AXError::NoValue;
}

void FloatingButtonManager::buttonClicked()
{
    if (!m_buttonWindow)
        return;
    m_scope.reset();
    preparePopup();
    m_popup->show(buttonFrame());
    m_collaborators.tracker.track(QStringLiteral("QuilletBadgeClick"));
}

void FloatingButtonManager::preparePopup()
{
    if (m_popup)
        return;
    m_popup = new FloatingPopup(this,
                                {m_collaborators.workspace, m_collaborators.writing,
                                 m_collaborators.tracker, m_collaborators.ownCommands},
                                this);
    connect(m_popup, &FloatingPopup::failed, this, &FloatingButtonManager::requestFailed);
}

QRectF FloatingButtonManager::buttonFrame() const
{
    return ScreenCoordinates::current().bottomLeftFromToolkit(QRectF(m_buttonWindow->geometry()));
}

void FloatingButtonManager::openForFocusedInput()
{
    if (m_popup && m_popup->popupWindow()) {
        m_popup->close();
        return;
    }
    tryToOpen(maxOpenAttempts);
}

/// A program loses the focus for a moment while the shortcut's keys are grabbed.
void FloatingButtonManager::tryToOpen(int attempts)
{
    if (!opensForFocusedInput() && attempts > 1 && !(m_popup && m_popup->popupWindow()))
        QTimer::singleShot(openAttemptPause, this, [this, attempts] { tryToOpen(attempts - 1); });
}

/// Whether an input has the focus; opens the popup for it where the user wants one there.
bool FloatingButtonManager::opensForFocusedInput()
{
    platform::Accessibility &accessibility = m_collaborators.accessibility;
    const auto focused =
        getAttribute<AXUIElement>(accessibility, accessibility.AXUIElementCreateSystemWide(),
                                  QStringLiteral("AXFocusedUIElement"));
    if (!focused || !*focused)
        return false;
    const auto role = readText(*focused, QLatin1StringView("AXRole"));
    const bool isInput =
        role == QLatin1StringView("AXTextArea") || role == QLatin1StringView("AXEditableText") ||
        role == QLatin1StringView("AXTextField") || (m_buttonWindow && *focused == m_element);
    const bool isPassword = readText(*focused, QLatin1StringView("AXSubrole")) ==
                            QLatin1StringView("AXSecureTextField");
    const auto frame = getFrame(accessibility, *focused);
    if (isPassword)
        return true;
    if (!isInput || !frame)
        return false;
    const bool hasButton = m_buttonWindow && *focused == m_element;
    if (!hasButton)
        hide();
    m_element = *focused;
    if (m_collaborators.isExcluded && m_collaborators.isExcluded(programOfInput()))
        return true;
    m_scope = selectionOf(m_element);
    preparePopup();
    const double size = ButtonPlacement::buttonSize;
    m_popup->showForKeyboard(
        hasButton
            ? buttonFrame()
            : QRectF(ButtonPlacement::panelOrigin(*frame, mainScreenHeight()), QSizeF(size, size)));
    return true;
}

void FloatingButtonManager::openForSelection()
{
    if (!m_buttonWindow)
        return;
    m_scope = selectionOf(m_element);
    preparePopup();
    m_popup->show(buttonFrame());
}

QString FloatingButtonManager::programOfInput()
{
    std::int32_t pid = 0;
    if (!m_element ||
        m_collaborators.accessibility.AXUIElementGetPid(m_element, pid) != AXError::Success)
        return {};
    const auto program = m_collaborators.workspace.runningApplication(pid);
    return program ? program->localizedName.value_or(QString()) : QString();
}

void FloatingButtonManager::showMenu()
{
    if (!m_buttonWindow)
        return;
    QList<SidePanel::Action> actions;
    if (m_formerTexts.of(m_element))
        actions.append({localized("Put back what was there"), [this] { putBack(); }});
    if (selectionOf(m_element))
        actions.append({localized("Only the selection"), [this] { openForSelection(); }});
    if (const QString program = programOfInput(); !program.isEmpty())
        actions.append({localized("Not in %1").arg(program),
                        [this, program] { Q_EMIT exclusionWanted(program); }});
    if (actions.isEmpty())
        return;
    if (m_popup)
        m_popup->close();
    delete m_sidePanel;
    m_sidePanel = SidePanel::offer(m_collaborators.workspace, actions, m_buttonWindow->geometry());
}

void FloatingButtonManager::putBack()
{
    const std::optional<QString> former = m_formerTexts.of(m_element);
    if (!former)
        return;
    m_formerTexts.forgetLast(m_element);
    setText(*former);
}

void FloatingButtonManager::say(const QString &sentence)
{
    if (!m_buttonWindow)
        return;
    delete m_sidePanel;
    m_sidePanel = SidePanel::say(m_collaborators.workspace, sentence, m_buttonWindow->geometry());
}

void FloatingButtonManager::finish(const QString &text, const WriteOutcome &outcome)
{
    switch (outcome.kind) {
    case WriteOutcome::Kind::Written:
        say(localized("Written"));
        break;
    case WriteOutcome::Kind::ChangedByProgram:
        say(localized("Written; the program changed %1 characters").arg(outcome.changedCharacters));
        break;
    case WriteOutcome::Kind::NotWritten:
        say(text.isEmpty() ? localized("Not written")
                           : localized("Not written; the text is on the clipboard"));
        break;
    }
    Q_EMIT textApplied(text, outcome);
}
