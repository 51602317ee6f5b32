// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/focus/AccessibilityObserver.h"

#include "quillet/diagnostics/DiagnosticLog.h"
#include "quillet/focus/AccessibilityElement.h"

#include <QCoreApplication>
#include <QPointer>

#include <chrono>

using platform::Accessibility;
using platform::AXError;
using platform::AXUIElement;
using platform::AXValue;
using platform::CFRange;
using namespace std::chrono_literals;

namespace
{

constexpr auto pollInterval = 500ms;

std::optional<AccessibilityObserver::Collaborators> &preparedCollaborators()
{
    static std::optional<AccessibilityObserver::Collaborators> prepared;
    return prepared;
}

QString quotedList(const QStringList &names)
{
    QStringList quoted;
    quoted.reserve(names.size());
    for (const QString &name : names)
        quoted.append(u'"' + name + u'"');
    return u'[' + quoted.join(QStringLiteral(", ")) + u']';
}

} // namespace

AccessibilityObserver::AccessibilityObserver(const Collaborators &collaborators, QObject *parent)
    : QObject(parent)
    , m_accessibility(collaborators.accessibility)
    , m_workspace(collaborators.workspace)
    , m_button(collaborators.button)
    , m_isExcluded(collaborators.isExcluded)
    , m_ownPid(collaborators.ownPid)
{
    connect(&m_pollTimer, &QTimer::timeout, this, &AccessibilityObserver::checkFocusedElement);
    startObserving();
}

void AccessibilityObserver::prepareShared(const Collaborators &collaborators)
{
    preparedCollaborators().emplace(collaborators);
}

AccessibilityObserver &AccessibilityObserver::shared()
{
    static QPointer<AccessibilityObserver> instance;
    if (!instance) {
        Q_ASSERT_X(preparedCollaborators(), "AccessibilityObserver", "call prepareShared() first");
        instance =
            new AccessibilityObserver(*preparedCollaborators(), QCoreApplication::instance());
    }
    return *instance;
}

void AccessibilityObserver::startObserving()
{
    if (!m_accessibility.AXIsProcessTrusted()) {
        printLine(QStringLiteral("❌ Accessibility permissions not granted"));
        return;
    }
    printLine(QStringLiteral("✅ Starting Accessibility Observer with polling..."));
    m_pollTimer.start(pollInterval);
}

void AccessibilityObserver::checkFocusedElement()
{
    AXValue focused;
    const AXError error = m_accessibility.AXUIElementCopyAttributeValue(
        m_accessibility.AXUIElementCreateSystemWide(), QStringLiteral("AXFocusedUIElement"),
        focused);
    const auto *focusedElement = std::get_if<AXUIElement>(&focused);
    if (error != AXError::Success || !focusedElement || !*focusedElement) {
        printLine(QStringLiteral("❌ Failed to get focused element: ") + describeAXError(error));
        hideStrayButton();
        return;
    }
    const AXUIElement element = *focusedElement;

    std::int32_t pid = 0;
    m_accessibility.AXUIElementGetPid(element, pid);
    if (const auto application = m_workspace.runningApplication(pid)) {
        printLine(QStringLiteral("🎯 Focused app: %1 [PID: %2]")
                      .arg(application->localizedName.value_or(QStringLiteral("Unknown")),
                           QString::number(pid)));
        if (m_lastAppPid != pid && pid != m_ownPid) {
            printLine(QStringLiteral("🔁 App changed"));
            m_lastAppPid = pid;
            m_lastElement = {};
            m_button.hide();
        }
        if (m_isExcluded && m_isExcluded(application->localizedName.value_or(QString()))) {
            printLine(QStringLiteral("⚠️ Staying out of this program, as the user has chosen"));
            if (m_lastElement)
                forgetInput();
            return;
        }
    }

    if (const auto names = getAllAttributes(m_accessibility, element))
        printLine(QStringLiteral("📋 Attributes: ") + quotedList(*names));

    const auto role = read<QString>(element, QLatin1StringView("AXRole"));
    if (!role) {
        printLine(QStringLiteral("❌ Could not retrieve role"));
        failFocusChange();
        return;
    }
    printLine(QStringLiteral("🔎 Role: ") + *role);

    m_searchPending = false;
    if (!isEditableTextField(element)) {
        // A large page that is still being looked through is decided on a later tick.
        if (m_searchPending)
            return;
        printLine(QStringLiteral("❌ Not a text field"));
        failFocusChange();
        return;
    }

    if (m_lastElement == element)
        return;
    m_lastElement = element;
    printLine(QStringLiteral("📝 Focused on input field: ") + *role);
    handleFocusChange(element);
}

void AccessibilityObserver::handleFocusChange(const AXUIElement &element)
{
    printLine(QStringLiteral("✨ Text input detected!"));
    m_button.show(element);
}

void AccessibilityObserver::failFocusChange()
{
    // Keeps the button, and the popup opened from it, while the user clicks into our own panels.
    if (m_workspace.frontmostApplication() == m_ownPid) {
        printLine(QStringLiteral("⚠️ Skipping hide — our app is frontmost"));
        hideStrayButton();
        return;
    }
    printLine(QStringLiteral("🔻 Hiding button — focus not in our app"));
    forgetInput();
    Q_EMIT noInputFocused();
}

void AccessibilityObserver::hideStrayButton()
{
    if (m_lastElement && m_button.hasLostInput())
        forgetInput();
}

void AccessibilityObserver::permissionTakenBack()
{
    forgetInput();
}

void AccessibilityObserver::forgetInput()
{
    m_lastElement = {};
    m_button.hide();
}

bool AccessibilityObserver::isEditableTextField(const AXUIElement &element)
{
    const auto role = read<QString>(element, QLatin1StringView("AXRole"));
    if (!role)
        return false;
    if (*role == QLatin1StringView("AXTextArea") || *role == QLatin1StringView("AXEditableText"))
        return true;
    if (*role == QLatin1StringView("AXWebArea"))
        return isEditableWebArea(element) || isMailEditableWebArea(element);
    return false;
}

bool AccessibilityObserver::isEditableWebArea(const AXUIElement &element)
{
    if (read<bool>(element, QLatin1StringView("AXEditable")).value_or(false))
        return true;
    const auto focused = read<AXUIElement>(element, QLatin1StringView("AXFocusedUIElement"));
    if (focused && isEditableTextField(*focused))
        return true;
    return hasEditableTextBelow(element);
}

bool AccessibilityObserver::hasEditableTextBelow(const AXUIElement &element)
{
    switch (m_accessibility.containsEditableText(element)) {
    case Accessibility::Answer::Yes:
        return true;
    case Accessibility::Answer::No:
        return false;
    case Accessibility::Answer::Pending:
        m_searchPending = true;
        return false;
    case Accessibility::Answer::Unsupported:
        break;
    }
    const auto children = read<QList<AXUIElement>>(element, QLatin1StringView("AXChildren"));
    if (!children)
        return false;
    for (const AXUIElement &child : *children) {
        if (isEditableTextField(child) || isEditableWebArea(child))
            return true;
    }
    return false;
}

bool AccessibilityObserver::isMailEditableWebArea(const AXUIElement &element)
{
    if (read<QString>(element, QLatin1StringView("AXRole")) != QLatin1StringView("AXWebArea"))
        return false;
    if (read<QString>(element, QLatin1StringView("AXSubrole")) == QLatin1StringView("AXEditor"))
        return true;
    return read<CFRange>(element, QLatin1StringView("AXSelectedTextRange")) ||
           read<QString>(element, QLatin1StringView("AXSelectedText")) ||
           read<QString>(element, QLatin1StringView("AXValue"));
}

template <typename T>
std::optional<T> AccessibilityObserver::read(const AXUIElement &element,
                                             QLatin1StringView attribute)
{
    return getAttribute<T>(m_accessibility, element, attribute);
}

QString AccessibilityObserver::describeAXError(AXError error)
{
    switch (error) {
    case AXError::Success:
        return QStringLiteral("Success");
    case AXError::Failure:
        return QStringLiteral("General failure");
    case AXError::IllegalArgument:
        return QStringLiteral("Illegal argument");
    case AXError::InvalidUIElement:
        return QStringLiteral("Invalid UI element");
    case AXError::InvalidUIElementObserver:
        return QStringLiteral("Invalid UI element observer");
    case AXError::CannotComplete:
        return QStringLiteral("Cannot complete");
    case AXError::AttributeUnsupported:
        return QStringLiteral("Attribute unsupported");
    case AXError::ActionUnsupported:
        return QStringLiteral("Action unsupported");
    case AXError::NotificationUnsupported:
        return QStringLiteral("Notification unsupported");
    case AXError::NotImplemented:
        return QStringLiteral("Not implemented");
    case AXError::NotificationAlreadyRegistered:
        return QStringLiteral("Notification already registered");
    case AXError::NotificationNotRegistered:
        return QStringLiteral("Notification not registered");
    case AXError::APIDisabled:
        return QStringLiteral("API disabled (Accessibility not trusted)");
    case AXError::NoValue:
        return QStringLiteral("No value");
    case AXError::ParameterizedAttributeUnsupported:
        return QStringLiteral("Parameterized attribute unsupported");
    case AXError::NotEnoughPrecision:
        break;
    }
    return QStringLiteral("Unknown error");
}
