// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/popup/FloatingPopup.h"

#include "commands/Catalogue.h"
#include "quillet/analytics/EventTracker.h"
#include "quillet/diagnostics/DiagnosticLog.h"
#include "quillet/localisation/Localisation.h"
#include "quillet/popup/PillButton.h"
#include "quillet/popup/PopupLayout.h"
#include "quillet/popup/PopupPanel.h"
#include "quillet/popup/ResultTextView.h"
#include "quillet/writing/WritingService.h"

#include <QFrame>
#include <QGuiApplication>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>
#include <QWheelEvent>

using PopupLayout::flipped;

namespace
{

constexpr QColor AccentPurple(108, 61, 245);
constexpr QColor AccentBorder(172, 144, 255);

/// How much of the next tool stays in view beside the one that was chosen.
constexpr int NeighbourMargin = 60;

/// A thin scroll bar that fits beside the grid's columns.
const QString ThinScrollBar = QStringLiteral(
    "QScrollBar:vertical { width: 8px; background: transparent; margin: 2px 1px; }"
    "QScrollBar::handle:vertical { background: rgba(0, 0, 0, 0.28); border-radius: 3px;"
    " min-height: 24px; }"
    "QScrollBar::add-line, QScrollBar::sub-line { height: 0; }"
    "QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }");

QRect placed(const QRectF &rect, qreal containerHeight)
{
    return flipped(rect, containerHeight).toRect();
}

QRect inContent(const QRectF &rect)
{
    return placed(rect, PopupLayout::Size.height());
}

/// A part of the panel that is as wide as the panel and leaves the panel's outline in sight.
void placeBetweenOutlines(QWidget *part, const QRectF &rect)
{
    part->setGeometry(inContent(rect));
    part->setMask(part->rect().adjusted(1, 0, -1, 0));
}

/// A row that shows no scroller and scrolls sideways with any wheel.
class SidewaysScrollArea : public QScrollArea
{
public:
    using QScrollArea::QScrollArea;

protected:
    void wheelEvent(QWheelEvent *event) override
    {
        const QPoint delta =
            event->pixelDelta().isNull() ? event->angleDelta() / 2 : event->pixelDelta();
        const int distance = delta.x() != 0 ? delta.x() : delta.y();
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() - distance);
        event->accept();
    }
};

/// A scroll area without border or background, as all of the popup's are.
template <typename Area> Area *plainScrollArea(QWidget *parent)
{
    auto *area = new Area(parent);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->viewport()->setAutoFillBackground(false);
    area->setFocusPolicy(Qt::NoFocus);
    return area;
}

/// The screen that the button is on, else the main one.
QRectF visibleFrameFor(const QRectF &button)
{
    const QScreen *primary = QGuiApplication::primaryScreen();
    const qreal mainHeight = primary->geometry().height();
    const QPoint centre = flipped(button, mainHeight).center().toPoint();
    const QScreen *screen = QGuiApplication::screenAt(centre);
    return flipped(QRectF((screen ? screen : primary)->availableGeometry()), mainHeight);
}

} // namespace

FloatingPopup::FloatingPopup(FloatingPopupDelegate *delegate, const Collaborators &collaborators,
                             QObject *parent)
    : QObject(parent)
    , m_workspace(collaborators.workspace)
    , m_writing(collaborators.writing)
    , m_tracker(collaborators.tracker)
    , m_delegate(delegate)
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
    const qreal mainHeight = QGuiApplication::primaryScreen()->geometry().height();

    m_popupWindow = buildPanel();
    m_popupWindow->setGeometry(placed(QRectF(origin, PopupLayout::Size), mainHeight));
    buildToolRow();
    showSubcommands(m_lastSelectedTool);
    m_popupWindow->show();
    m_popupWindow->raise();
}

void FloatingPopup::close()
{
    if (!m_popupWindow)
        return;
    m_popupWindow->hide();
    m_popupWindow->deleteLater();
    m_popupWindow = nullptr;
    m_topToolButtons.clear();
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
    panel->setFixedSize(PopupLayout::Size.toSize());
    connect(panel, &PopupPanel::closeWanted, this, &FloatingPopup::close);
    m_workspace.preparePanel(panel, true);
    return panel;
}

void FloatingPopup::buildToolRow()
{
    m_topToolButtons.clear();
    QList<qreal> titleWidths;
    for (const QString &tool : CommandCatalogue::tools()) {
        PillButton *button = createCustomButton(tool, &FloatingPopup::toolButtonClicked);
        button->setCornerRadius(17.5);
        if (tool == m_lastSelectedTool)
            applySelectedStyle(button);
        else
            applyUnselectedStyle(button);
        titleWidths.append(button->titleWidth());
        m_topToolButtons.append(button);
    }

    qreal documentWidth = 0;
    const QList<QRectF> rects = PopupLayout::toolButtons(titleWidths, documentWidth);
    const QRectF row = PopupLayout::toolRow();
    auto *document = new QWidget;
    for (qsizetype i = 0; i < rects.size(); ++i) {
        m_topToolButtons[i]->setParent(document);
        m_topToolButtons[i]->setGeometry(placed(rects[i], row.height()));
    }
    document->setFixedSize(static_cast<int>(documentWidth), static_cast<int>(row.height()));

    m_topScroll = plainScrollArea<SidewaysScrollArea>(m_popupWindow);
    m_topScroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    placeBetweenOutlines(m_topScroll, row);
    m_topScroll->setWidget(document);
    document->setAutoFillBackground(false);
}

void FloatingPopup::showSubcommands(const QString &tool)
{
    removeContent();
    const QStringList options = CommandCatalogue::toolOptions().value(tool);
    if (options.isEmpty())
        return;

    const QRectF view = PopupLayout::optionsView();
    const qreal documentHeight = PopupLayout::optionsDocumentHeight(options.size());
    auto *document = new QWidget;
    for (qsizetype i = 0; i < options.size(); ++i) {
        PillButton *button = createCustomButton(options[i], &FloatingPopup::subButtonClicked);
        button->setParent(document);
        button->setCornerRadius(30);
        PillButton::Look look;
        look.borderWidth = 0;
        button->setLook(look);
        button->setGeometry(
            placed(PopupLayout::option(i, options.size(), view.width()), documentHeight));
    }
    document->setFixedSize(static_cast<int>(view.width()), static_cast<int>(documentHeight));

    m_subScrollView = plainScrollArea<QScrollArea>(m_popupWindow);
    m_subScrollView->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_subScrollView->setStyleSheet(ThinScrollBar);
    placeBetweenOutlines(m_subScrollView, view);
    m_subScrollView->setWidget(document);
    document->setAutoFillBackground(false);
    m_subScrollView->show();
    m_topScroll->show();
}

void FloatingPopup::renderResultPopup(const QString &command)
{
    removeContent();
    m_topScroll->hide();

    m_resultView = new QWidget(m_popupWindow);
    m_resultView->setGeometry(m_popupWindow->rect());

    auto *frame = new QFrame(m_resultView);
    frame->setObjectName(QStringLiteral("resultFrame"));
    frame->setStyleSheet(QStringLiteral("#resultFrame { background: palette(base);"
                                        " border: 1px solid lightgray; border-radius: 8px; }") +
                         ThinScrollBar);
    frame->setGeometry(inContent(PopupLayout::resultView()));
    m_textView = new ResultTextView;
    m_textView->setAccessibleName(command);
    connect(m_textView, &ResultTextView::keyboardWanted, this, &FloatingPopup::takeKeyboard);
    auto *layout = new QVBoxLayout(frame);
    layout->setContentsMargins(3, 3, 3, 3);
    layout->addWidget(m_textView);

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
            button->setLook({AccentPurple, Qt::transparent, 0, Qt::white});
        }
    }
    m_resultView->show();
}

void FloatingPopup::removeContent()
{
    // A button is often removed from within its own click.
    for (QWidget *widget : {static_cast<QWidget *>(m_subScrollView), m_resultView.data()}) {
        if (!widget)
            continue;
        widget->hide();
        widget->deleteLater();
    }
    m_subScrollView = nullptr;
    m_resultView = nullptr;
}

PillButton *FloatingPopup::createCustomButton(const QString &identifier,
                                              void (FloatingPopup::*action)(PillButton *))
{
    auto *button = new PillButton(localized(identifier));
    button->setAccessibleName(identifier);
    connect(button, &PillButton::clicked, this,
            [this, button, action] { (this->*action)(button); });
    return button;
}

void FloatingPopup::applySelectedStyle(PillButton *button)
{
    button->setLook({AccentPurple, AccentBorder, 3, Qt::white});
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
    m_topScroll->ensureWidgetVisible(sender, NeighbourMargin, 0);
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
        if (self)
            self->request(command, text);
    });
}

void FloatingPopup::request(const QString &command, const QString &text)
{
    const QPointer<FloatingPopup> self(this);
    const auto show = [self](const BackendService::Result &result) {
        if (const auto *failure = std::get_if<BackendFailure>(&result))
            printLine(QStringLiteral("Error: ") + describe(*failure));
        else if (self && self->m_textView)
            self->m_textView->setString(std::get<QString>(result));
    };
    m_writing.write(command, text, show);
    m_tracker.track(QStringLiteral("Execute"), {{QStringLiteral("command"), command}});
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
    // The delegate gives the keyboard back before it writes. It may drop this popup meanwhile, so
    // nothing below refers to it.
    const QString text = m_textView ? m_textView->string() : QString();
    QTimer::singleShot(0, m_delegate ? static_cast<QObject *>(m_delegate) : this,
                       [delegate = m_delegate, &tracker = m_tracker, text] {
                           if (!delegate)
                               return;
                           delegate->setText(text);
                           tracker.track(QStringLiteral("Apply"));
                       });
    m_tookKeyboard = false;
    close();
}

void FloatingPopup::takeKeyboard()
{
    m_tookKeyboard = true;
    m_workspace.focusPanel(m_popupWindow);
}
