// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Accessibility.h"
#include "platform/FrameWatch.h"
#include "platform/KeyboardEvents.h"
#include "platform/Workspace.h"
#include "quillet/button/ButtonDistances.h"
#include "quillet/button/FormerTexts.h"
#include "quillet/focus/AccessibilityObserver.h"
#include "quillet/popup/FloatingPopup.h"

#include <QPointer>

#include <memory>

class NonActivatingPanel;
class SidePanel;

/// Owns the floating button and the popup that it opens, and reads and writes the text of the input
/// that they belong to. There is at most one button: show() replaces the former one.
///
/// Main thread only. Nothing is reported to the caller; outcomes are printed. What became of a text
/// is also told through textApplied(), so that the user does not lose one that was not written.
class FloatingButtonManager : public FloatingPopupDelegate, public InputButton
{
    Q_OBJECT

public:
    struct Collaborators {
        platform::Accessibility &accessibility;
        platform::KeyboardEvents &keyboard;
        platform::Workspace &workspace;
        WritingService &writing;
        EventTracker &tracker;
        /// Whether the user keeps Quillet out of the program of this name.
        std::function<bool(const QString &program)> isExcluded = {};
        /// Null where the system cannot follow an element.
        platform::FrameWatch *frames = nullptr;
        /// Reads the commands that the user has made.
        std::function<QList<OwnCommand>()> ownCommands = {};
    };

    explicit FloatingButtonManager(const Collaborators &collaborators, QObject *parent = nullptr);
    ~FloatingButtonManager() override;

    /// Sets what shared() will be made of. Call once, before the first shared().
    static void prepareShared(const Collaborators &collaborators);
    /// The application's one manager, created by the first call. It lives as long as the
    /// QCoreApplication.
    static FloatingButtonManager &shared();

    void show(const platform::AXUIElement &element) override;
    void hide() override;
    bool hasLostInput() override;
    void buttonClicked();
    /// Offers what can be done with the input beside the popup; nothing happens where there is
    /// none.
    void showMenu();
    /// Opens the popup, with the keyboard, for the input that has the focus: for what is selected
    /// in it, else for all of its text. Single-line inputs too. Closes an open popup.
    void openForFocusedInput();
    /// Opens the popup for what is selected in the button's input.
    void openForSelection();
    /// Puts back what stood in the input before the last apply.
    void putBack();

    void getText(std::function<void(const QString &)> completion) override;
    void setText(const QString &text) override;

    NonActivatingPanel *buttonWindow() const;
    FloatingPopup *popup() const { return m_popup; }

Q_SIGNALS:
    /// What became of a text that setText() was given; once for each.
    void textApplied(const QString &text, const platform::WriteOutcome &outcome);
    /// A request of the popup has brought no answer: why, and what the user can do.
    void requestFailed(const QString &sentence);
    /// The user does not want Quillet in this program any more.
    void exclusionWanted(const QString &program);

private:
    bool opensForFocusedInput();
    void tryToOpen(int attempts);
    /// The part of an input's text that the popup works on.
    struct Scope {
        platform::CFRange range;
        QString text;
    };
    std::optional<Scope> selectionOf(const platform::AXUIElement &element);
    void makeButton(const QRectF &inputFrame);
    void follow(const std::optional<QRectF> &inputFrame);
    void keepDistance();
    void preparePopup();
    QRectF buttonFrame() const;
    QString programOfInput();
    void say(const QString &sentence);
    void finish(const QString &text, const platform::WriteOutcome &outcome);
    QString getWebAreaText(const platform::AXUIElement &element);
    void write(const platform::AXUIElement &element, const QString &text);
    void setWebAreaText(const platform::AXUIElement &element, const QString &text);
    std::optional<QString> readText(const platform::AXUIElement &element,
                                    QLatin1StringView attribute);

    const Collaborators m_collaborators;
    QPointer<NonActivatingPanel> m_buttonWindow;
    /// Where the button belongs by its input's place; toolkit coordinates.
    QPoint m_corner;
    ButtonDistances m_distances;
    platform::AXUIElement m_element;
    /// Absent: all of the text.
    std::optional<Scope> m_scope;
    QPointer<FloatingPopup> m_popup;
    FormerTexts m_formerTexts;
    QPointer<SidePanel> m_sidePanel;
};
