// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// The popup's choice of commands: the grid of a tool's options, and the user's own commands.

#include "commands/Catalogue.h"
#include "quillet/popup/FloatingPopup.h"
#include "quillet/popup/InstructionField.h"
#include "quillet/popup/PopupLayout.h"
#include "quillet/popup/PopupStyle.h"
#include "quillet/popup/ToolRow.h"
#include "quillet/widgets/Localisation.h"
#include "quillet/widgets/PillButton.h"

#include <QFrame>
#include <QScrollArea>
#include <QShortcut>

void FloatingPopup::showSubcommands(const QString &tool)
{
    removeContent();
    const QStringList options = optionsOf(tool);
    if (options.isEmpty())
        return;
    const bool hasField = tool == OwnCommands::tool;
    buildOptions(options, hasField ? PopupLayout::optionsAboveField() : PopupLayout::optionsView());
    if (hasField)
        buildInstructionField();
    m_topScroll->show();
    moveKeyboardTo(m_subScrollView->findChild<PillButton *>());
}

QStringList FloatingPopup::optionsOf(const QString &tool) const
{
    if (tool != OwnCommands::tool)
        return CommandCatalogue::toolOptions().value(tool);
    QStringList identifiers;
    for (const OwnCommand &command : m_ownCommands)
        identifiers += command.identifier;
    return identifiers;
}

QString FloatingPopup::titleOf(const QString &identifier) const
{
    for (const OwnCommand &command : m_ownCommands) {
        if (command.identifier == identifier)
            return command.name;
    }
    return localized(identifier);
}

void FloatingPopup::buildInstructionField()
{
    m_instructionField = new InstructionField(m_popupWindow);
    m_instructionField->setGeometry(PopupLayout::inContent(PopupLayout::instructionField()));
    connect(m_instructionField, &InstructionField::keyboardWanted, this,
            &FloatingPopup::takeKeyboard);
    connect(m_instructionField, &InstructionField::entered, this, [this](const QString &words) {
        m_instruction = words;
        showResults(OwnCommands::once.toString());
    });
    m_instructionField->show();
    for (const OwnCommand &command : m_ownCommands) {
        if (command.key.isEmpty())
            continue;
        // They are in force while the commands are shown.
        auto *keys = new QShortcut(QKeySequence(command.key, QKeySequence::PortableText),
                                   m_instructionField);
        connect(keys, &QShortcut::activated, this,
                [this, identifier = command.identifier] { showResults(identifier); });
    }
}

void FloatingPopup::buildOptions(const QStringList &options, const QRectF &view)
{
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
            PopupLayout::flipped(PopupLayout::option(i, options.size(), view.width()),
                                 documentHeight)
                .toRect());
    }
    document->setFixedSize(static_cast<int>(view.width()), static_cast<int>(documentHeight));

    m_subScrollView = new QScrollArea(m_popupWindow);
    m_subScrollView->setFrameShape(QFrame::NoFrame);
    m_subScrollView->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_subScrollView->setFocusPolicy(Qt::NoFocus);
    m_subScrollView->viewport()->setAutoFillBackground(false);
    m_subScrollView->setStyleSheet(PopupStyle::thinScrollBar(m_popupWindow->palette()));
    PopupStyle::placeBetweenOutlines(m_subScrollView, PopupLayout::inContent(view));
    m_subScrollView->setWidget(document);
    document->setAutoFillBackground(false);
    m_subScrollView->show();
}
