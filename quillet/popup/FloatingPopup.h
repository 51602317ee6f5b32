// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "commands/OwnCommands.h"
#include "platform/Workspace.h"
#include "quillet/writing/WritingService.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QRectF>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

class EventTracker;
class InstructionField;
class PillButton;
class QScrollArea;
class QWidget;
class ResultArea;
class ToolRow;

/// Where the popup's text comes from and where its result goes.
class FloatingPopupDelegate : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Calls `completion` exactly once with the input's whole text, at once wherever that can be
    /// read in one go.
    virtual void getText(std::function<void(const QString &)> completion) = 0;
    virtual void setText(const QString &text) = 0;
};

/// The small panel beside the floating button: the tools in a row, the selected tool's options in
/// a grid and, once an option is chosen, the backend's answer with "cancel", "reload" and "apply".
/// It is brought to the front without taking the keyboard, so that the application that owns the
/// input keeps it; it takes the keyboard only while the user edits the result.
///
/// Main thread only.
class FloatingPopup : public QObject
{
    Q_OBJECT

public:
    struct Collaborators {
        platform::Workspace &workspace;
        WritingService &writing;
        EventTracker &tracker;
        /// Reads the commands that the user has made. May be empty.
        std::function<QList<OwnCommand>()> ownCommands = {};
    };

    FloatingPopup(FloatingPopupDelegate *delegate, const Collaborators &collaborators,
                  QObject *parent = nullptr);
    ~FloatingPopup() override;

    /// Opens the popup near `rect`, or closes it when it is open. `rect` is on the screen, in
    /// points, with the origin at the bottom left of the main screen and y growing upwards.
    void show(const QRectF &rect);
    /// Opens the popup as show() does, for a user who works without a pointer: it takes the
    /// keyboard at once. Arrows and Tab move, a letter goes to the next command that begins with
    /// it, Return chooses, Ctrl+Return applies, Escape closes.
    void showForKeyboard(const QRectF &rect);
    void close();

    void showResults(const QString &command);

    /// The open panel; null while the popup is closed.
    QWidget *popupWindow() const { return m_popupWindow; }
    QString lastSelectedTool() const { return m_lastSelectedTool; }
    std::optional<QString> lastCommand() const { return m_lastCommand; }

Q_SIGNALS:
    /// A request has brought no answer, or less than was asked for: why, and what the user can do.
    void failed(const QString &sentence);

private:
    PillButton *createCustomButton(const QString &identifier,
                                   void (FloatingPopup::*action)(PillButton *));
    void applySelectedStyle(PillButton *button);
    void applyUnselectedStyle(PillButton *button);

    QWidget *buildPanel();
    void buildToolRow();
    void showSubcommands(const QString &tool);
    void buildOptions(const QStringList &options, const QRectF &view);
    void buildInstructionField();
    QStringList optionsOf(const QString &tool) const;
    QString titleOf(const QString &identifier) const;
    void renderResultPopup(const QString &command);
    void removeContent();
    void takeKeyboard();
    void moveKeyboardTo(QWidget *widget);

    void toolButtonClicked(PillButton *sender);
    void subButtonClicked(PillButton *sender);
    void textAreaButtonClicked(PillButton *sender);
    void apply();
    void request(const QString &command, const QString &text);
    void finishRequest(const BackendService::AnswerResult &result);
    void tellFailure(const QString &sentence);

    platform::Workspace &m_workspace;
    WritingService &m_writing;
    EventTracker &m_tracker;

    QPointer<QWidget> m_popupWindow;
    QPointer<FloatingPopupDelegate> m_delegate;
    QString m_lastSelectedTool = QStringLiteral("improve");
    QPointer<ToolRow> m_topScroll;
    QPointer<ResultArea> m_resultArea;
    std::unique_ptr<BackendRequest> m_request;
    std::optional<QString> m_lastCommand;
    QPointer<QScrollArea> m_subScrollView;
    QPointer<InstructionField> m_instructionField;
    /// The user's commands, as they were when the popup opened.
    QList<OwnCommand> m_ownCommands;
    /// For the command OwnCommands::once.
    QString m_instruction;
    std::function<QList<OwnCommand>()> m_readOwnCommands;
    QPointer<QWidget> m_resultView;
    QList<PillButton *> m_topToolButtons;
    /// The user has chosen "apply" while the answer was still growing.
    bool m_appliesWhenComplete = false;
    bool m_tookKeyboard = false;
};
