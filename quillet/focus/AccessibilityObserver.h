// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Accessibility.h"
#include "platform/Workspace.h"

#include <QObject>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <optional>

/// What the observer drives: the button beside the input that has the focus.
class InputButton
{
public:
    virtual ~InputButton() = default;
    /// Shows the button at `element`'s corner, in place of any earlier one.
    virtual void show(const platform::AXUIElement &element) = 0;
    virtual void hide() = 0;
    /// Whether the input of the last show() is gone, hidden, or no longer on the screen.
    virtual bool hasLostInput() = 0;
};

/// Watches, by polling twice a second, which element of which application has the keyboard focus,
/// decides whether it is a text input that Quillet can work on, and shows or hides the button.
/// Every decision is made afresh on each tick; only the last input and the last application are
/// remembered, so that an input that keeps the focus does not rebuild the button.
///
/// Main thread only. Nothing is thrown or shown to the user; what happens is printed line by line.
class AccessibilityObserver : public QObject
{
    Q_OBJECT

public:
    struct Collaborators {
        platform::Accessibility &accessibility;
        platform::Workspace &workspace;
        InputButton &button;
        /// The process id of this program.
        std::int32_t ownPid;
        /// Whether the user keeps Quillet out of the program of this name; its elements are then
        /// not read.
        std::function<bool(const QString &program)> isExcluded = {};
    };

    /// Creates an observer and starts it. Without the accessibility permission it never starts to
    /// watch; so create it when the permission is there.
    explicit AccessibilityObserver(const Collaborators &collaborators, QObject *parent = nullptr);

    /// Sets what shared() will be made of. Call once, before the first shared().
    static void prepareShared(const Collaborators &collaborators);

    /// The application's one observer, created, and thereby started, by the first call. It lives as
    /// long as the QCoreApplication.
    static AccessibilityObserver &shared();

    void startObserving();

    /// The timer's tick.
    void checkFocusedElement();

    /// The user has taken the permission back: the button goes at once. What is asked from then on
    /// is refused by the accessibility service, until the permission is back.
    void permissionTakenBack();

    bool isEditableTextField(const platform::AXUIElement &element);
    bool isEditableWebArea(const platform::AXUIElement &element);
    bool isMailEditableWebArea(const platform::AXUIElement &element);

    /// The error in words, for a log line.
    static QString describeAXError(platform::AXError error);

    bool isObserving() const { return m_pollTimer.isActive(); }

Q_SIGNALS:
    /// A tick has found that what has the focus is no input.
    void noInputFocused();

private:
    void handleFocusChange(const platform::AXUIElement &element);
    void failFocusChange();
    void hideStrayButton();
    void forgetInput();
    bool hasEditableTextBelow(const platform::AXUIElement &element);
    template <typename T>
    std::optional<T> read(const platform::AXUIElement &element, QLatin1StringView attribute);

    platform::Accessibility &m_accessibility;
    platform::Workspace &m_workspace;
    InputButton &m_button;
    const std::function<bool(const QString &)> m_isExcluded;

    QTimer m_pollTimer;
    platform::AXUIElement m_lastElement;
    std::optional<std::int32_t> m_lastAppPid;
    const std::int32_t m_ownPid;
    bool m_searchPending = false;
};
