// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/popup/FloatingPopup.h"

#include "commands/Catalogue.h"
#include "commands/Note.h"
#include "platform/ScreenCoordinates.h"
#include "quillet/analytics/EventTracker.h"
#include "quillet/diagnostics/DiagnosticLog.h"
#include "quillet/popup/InstructionField.h"
#include "quillet/popup/PopupLayout.h"
#include "quillet/popup/PopupPanel.h"
#include "quillet/popup/PopupStyle.h"
#include "quillet/popup/RequestSentences.h"
#include "quillet/popup/ResultArea.h"
#include "quillet/popup/ResultTextView.h"
#include "quillet/popup/ToolRow.h"
#include "quillet/widgets/Localisation.h"
#include "quillet/widgets/PillButton.h"
#include "quillet/writing/WritingService.h"

#include <QGuiApplication>
#include <QScreen>
#include <QScrollArea>
#include <QTimer>

#include <utility>

using PopupLayout::inContent;

namespace
{

/// The screen that the button is on, else the main one.
QRectF visibleFrameFor(const QRectF &button)
{
    const QScreen *primary = QGuiApplication::primaryScreen();
    const auto coordinates = platform::ScreenCoordinates::current();
    const QPoint centre = coordinates.toolkitFromBottomLeft(button).center().toPoint();
    const QScreen *screen = QGuiApplication::screenAt(centre);
    return coordinates.bottomLeftFromToolkit(
        QRectF((screen ? screen : primary)->availableGeometry()));
}

} // namespace

FloatingPopup::FloatingPopup(FloatingPopupDelegate *delegate, const Collaborators &collaborators,
                             QObject *parent)
    : QObject(parent)
    , m_workspace(collaborators.workspace)
    , m_writing(collaborators.writing)
    , m_tracker(collaborators.tracker)
    , m_delegate(delegate)
    , m_readOwnCommands(collaborators.ownCommands)
{
}

FloatingPopup::~FloatingPopup()
{
    close();
}

void FloatingPopup::show(const QRectF &rect)
{
    if (m_popupWindow) {
        close();
        return;
    }
    const QPointF origin = PopupLayout::origin(rect, visibleFrameFor(rect));

    m_ownCommands = m_readOwnCommands ? m_readOwnCommands() : QList<OwnCommand>();
    // The user may have removed the last of them.
    if (m_ownCommands.isEmpty() && m_lastSelectedTool == OwnCommands::tool)
        m_lastSelectedTool = CommandCatalogue::tools().first();
    m_popupWindow = buildPanel();
    m_popupWindow->setGeometry(platform::ScreenCoordinates::current()
                                   .toolkitFromBottomLeft(QRectF(origin, PopupLayout::popupSize))
                                   .toRect());
    buildToolRow();
    showSubcommands(m_lastSelectedTool);
    m_popupWindow->show();
    m_popupWindow->raise();
    m_workspace.watchDismissal(m_popupWindow, [self = QPointer(this)] {
        if (self)
            self->close();
    });
}

void FloatingPopup::showForKeyboard(const QRectF &rect)
{
    show(rect);
    if (!m_popupWindow)
        return;
    m_tookKeyboard = true;
    // A display server gives the keyboard only to a window that is on the screen.
    connect(static_cast<PopupPanel *>(m_popupWindow.data()), &PopupPanel::painted, this,
            &FloatingPopup::takeKeyboard,
            Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
    moveKeyboardTo(m_subScrollView ? m_subScrollView->findChild<PillButton *>() : nullptr);
}

void FloatingPopup::close()
{
    if (!m_popupWindow)
        return;
    m_popupWindow->hide();
    m_popupWindow->deleteLater();
    m_popupWindow = nullptr;
    m_topToolButtons.clear();
    m_request.reset();
    if (m_tookKeyboard) {
        m_tookKeyboard = false;
        m_workspace.restoreFocus([](bool) {});
    }
}

QWidget *FloatingPopup::buildPanel()
{
    auto *panel = new PopupPanel;
    panel->setWindowTitle(QStringLiteral("Quillet"));
    panel->setAccessibleName(QStringLiteral("Quillet"));
    panel->setFixedSize(PopupLayout::popupSize.toSize());
    connect(panel, &PopupPanel::closeWanted, this, &FloatingPopup::close);
    connect(panel, &PopupPanel::applyWanted, this, [this] {
        if (m_resultArea)
            apply();
    });
    m_workspace.preparePanel(panel, true);
    return panel;
}

void FloatingPopup::buildToolRow()
{
    m_topToolButtons.clear();
    PillButton *selected = nullptr;
    QStringList tools = CommandCatalogue::tools();
    if (!m_ownCommands.isEmpty())
        tools += OwnCommands::tool.toString();
    for (const QString &tool : tools) {
        PillButton *button = createCustomButton(tool, &FloatingPopup::toolButtonClicked);
        button->setCornerRadius(17.5);
        if (tool == m_lastSelectedTool) {
            applySelectedStyle(button);
            selected = button;
        } else {
            applyUnselectedStyle(button);
        }
        m_topToolButtons.append(button);
    }
    m_topScroll = new ToolRow(m_topToolButtons, m_popupWindow);
    PopupStyle::placeBetweenOutlines(m_topScroll, inContent(PopupLayout::toolRow()));
    if (selected)
        m_topScroll->reveal(selected);
}

void FloatingPopup::renderResultPopup(const QString &command)
{
    removeContent();
    m_topScroll->hide();

    m_resultView = new QWidget(m_popupWindow);
    m_resultView->setGeometry(m_popupWindow->rect());

    m_resultArea = new ResultArea(command, m_resultView);
    m_resultArea->setGeometry(inContent(PopupLayout::resultView()));
    connect(m_resultArea, &ResultArea::keyboardWanted, this, &FloatingPopup::takeKeyboard);

    int index = 0;
    for (const char *name : {"cancel", "reload", "apply"}) {
        const QString identifier = QString::fromLatin1(name);
        PillButton *button = createCustomButton(identifier, &FloatingPopup::textAreaButtonClicked);
        button->setParent(m_resultView);
        button->setCornerRadius(18);
        button->setGeometry(inContent(PopupLayout::resultButton(index++)));
        if (identifier == QLatin1StringView("apply")) {
            // This one keeps its identifier as its title in every language.
            button->setText(identifier);
            button->setLook({PopupStyle::accentPurple, Qt::transparent, 0, Qt::white});
        }
    }
    m_resultView->show();
    moveKeyboardTo(m_resultArea->textView());
}

void FloatingPopup::removeContent()
{
    // A button is often removed from within its own click.
    for (QWidget *widget : {static_cast<QWidget *>(m_subScrollView), m_resultView.data(),
                            static_cast<QWidget *>(m_instructionField)}) {
        if (!widget)
            continue;
        widget->hide();
        widget->deleteLater();
    }
    m_subScrollView = nullptr;
    m_instructionField = nullptr;
    m_resultView = nullptr;
    m_resultArea = nullptr;
    m_request.reset();
    m_appliesWhenComplete = false;
}

PillButton *FloatingPopup::createCustomButton(const QString &identifier,
                                              void (FloatingPopup::*action)(PillButton *))
{
    auto *button = new PillButton(titleOf(identifier));
    button->setAccessibleName(identifier);
    connect(button, &PillButton::clicked, this,
            [this, button, action] { (this->*action)(button); });
    return button;
}

void FloatingPopup::applySelectedStyle(PillButton *button)
{
    button->setLook({PopupStyle::accentPurple, PopupStyle::accentBorder, 3, Qt::white});
}

void FloatingPopup::applyUnselectedStyle(PillButton *button)
{
    button->setLook({Qt::white, Qt::lightGray, 0, Qt::black});
}

void FloatingPopup::toolButtonClicked(PillButton *sender)
{
    for (PillButton *button : m_topToolButtons)
        applyUnselectedStyle(button);
    applySelectedStyle(sender);
    m_topScroll->reveal(sender);
    if (!sender->accessibleName().isEmpty())
        m_lastSelectedTool = sender->accessibleName();
    showSubcommands(m_lastSelectedTool);
}

void FloatingPopup::subButtonClicked(PillButton *sender)
{
    showResults(sender->accessibleName().isEmpty() ? sender->text() : sender->accessibleName());
}

void FloatingPopup::showResults(const QString &command)
{
    m_lastCommand = command;
    renderResultPopup(command);
    const QPointer<FloatingPopup> self(this);
    if (!m_delegate) {
        request(command, {});
        return;
    }
    m_delegate->getText([self, command](const QString &text) {
        if (!self)
            return;
        self->request(command, text);
        // At once; the backend may answer this in words of its own, or hardly at all.
        if (worksOnText(command) && text.trimmed().isEmpty()) {
            self->tellFailure(localized("There is no text in this input yet. Write something, then "
                                        "choose the command again."));
        }
    });
}

void FloatingPopup::request(const QString &command, const QString &text)
{
    if (m_resultArea)
        m_resultArea->setSource(text);
    // Its end ends what the backend still does for the request before.
    m_request = m_writing.writeAsItComes(
        command, text,
        [this](const AnswerPiece &piece) {
            if (m_resultArea)
                m_resultArea->appendPiece(piece.text, piece.startsOver);
        },
        [this](const BackendService::AnswerResult &result) { finishRequest(result); },
        command == OwnCommands::once ? m_instruction : QString());
    // An own command's identifier has the user's words in it.
    const QString reported = OwnCommands::isOwn(command) ? QStringLiteral("own") : command;
    m_tracker.track(QStringLiteral("Execute"), {{QStringLiteral("command"), reported}});
}

void FloatingPopup::finishRequest(const BackendService::AnswerResult &result)
{
    if (const auto *failure = std::get_if<BackendFailure>(&result)) {
        printLine(QStringLiteral("Error: ") + describe(*failure));
        m_appliesWhenComplete = false;
        tellFailure(failureSentence(*failure));
        return;
    }
    const auto &answer = std::get<BackendAnswer>(result);
    if (m_resultArea)
        m_resultArea->showAnswer(answer.text, answer.writer);
    if (!answer.remark.isEmpty())
        Q_EMIT failed(answer.remark);
    if (std::exchange(m_appliesWhenComplete, false) && !isNote(answer.text))
        apply();
}

void FloatingPopup::tellFailure(const QString &sentence)
{
    if (m_resultArea)
        m_resultArea->showFailure(sentence);
    Q_EMIT failed(sentence);
}

void FloatingPopup::textAreaButtonClicked(PillButton *sender)
{
    const QString key = sender->text().toLower();
    if (key == QLatin1StringView("cancel") || key == QLatin1StringView("back")) {
        showSubcommands(m_lastSelectedTool);
    } else if (key == QLatin1StringView("reload")) {
        if (m_lastCommand)
            showResults(*m_lastCommand);
    } else if (key == QLatin1StringView("apply")) {
        apply();
    }
}

void FloatingPopup::apply()
{
    // Only a whole answer is written; "apply" holds until it is here.
    if (m_resultArea && m_resultArea->isGrowing()) {
        m_appliesWhenComplete = true;
        return;
    }
    const std::optional<QString> text =
        m_resultArea ? m_resultArea->textToApply() : std::optional<QString>();
    if (!text) {
        close();
        return;
    }
    // The delegate gives the keyboard back before it writes. It may drop this popup meanwhile, so
    // nothing below refers to it.
    QTimer::singleShot(0, m_delegate ? static_cast<QObject *>(m_delegate) : this,
                       [delegate = m_delegate, &tracker = m_tracker, text = *text] {
                           if (!delegate)
                               return;
                           delegate->setText(text);
                           tracker.track(QStringLiteral("Apply"));
                       });
    m_tookKeyboard = false;
    close();
}

/// The widget that had the keyboard has been removed; `widget` takes its place.
void FloatingPopup::moveKeyboardTo(QWidget *widget)
{
    if (m_tookKeyboard && widget)
        widget->setFocus(Qt::OtherFocusReason);
}

void FloatingPopup::takeKeyboard()
{
    m_tookKeyboard = true;
    m_workspace.focusPanel(m_popupWindow);
}
