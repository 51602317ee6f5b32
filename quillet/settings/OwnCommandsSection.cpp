// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/settings/OwnCommandsSection.h"

#include "quillet/widgets/Localisation.h"

#include <QEvent>
#include <QFormLayout>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace
{

/// Points.
constexpr int listHeight = 84;
constexpr int instructionHeight = 66;

/// One combination with a modifier, or a function key: anything else would be taken from the field
/// for an instruction.
QString usableKeys(const QKeySequence &keys)
{
    if (keys.isEmpty())
        return {};
    const QKeyCombination first = keys[0];
    const bool isFunctionKey = first.key() >= Qt::Key_F1 && first.key() <= Qt::Key_F35;
    const bool hasModifier = first.keyboardModifiers() & (Qt::ControlModifier | Qt::AltModifier);
    return isFunctionKey || hasModifier ? QKeySequence(first).toString(QKeySequence::PortableText)
                                        : QString();
}

/// Those that can be used.
QList<OwnCommand> complete(QList<OwnCommand> commands)
{
    commands.removeIf([](const OwnCommand &command) {
        return command.identifier.isEmpty() || command.name.isEmpty() ||
               command.instruction.isEmpty();
    });
    return commands;
}

} // namespace

OwnCommandsSection::OwnCommandsSection(Collaborators collaborators, QWidget *parent)
    : QWidget(parent)
    , m_collaborators(std::move(collaborators))
    , m_list(new QListWidget)
    , m_remove(new QPushButton(localized("Remove")))
    , m_fields(new QWidget)
    , m_name(new QLineEdit)
    , m_instruction(new QPlainTextEdit)
    , m_model(new QLineEdit)
    , m_keys(new QKeySequenceEdit)
    , m_try(new QPushButton(localized("Try It")))
    , m_outcome(new QLabel)
{
    m_list->setAccessibleName(localized("Your own commands"));
    m_list->setFixedHeight(listHeight);
    m_remove->setAccessibleName(localized("Remove the command"));
    auto *add = new QPushButton(localized("New"));
    add->setAccessibleName(localized("New command"));
    m_try->setAccessibleName(localized("Try the command"));
    m_instruction->setFixedHeight(instructionHeight);
    m_instruction->setTabChangesFocus(true);
    m_instruction->setPlaceholderText(localized("What is to be done with the text"));
    m_instruction->installEventFilter(this);
    for (QLineEdit *field : m_keys->findChildren<QLineEdit *>())
        field->setAccessibleName(localized("Keys"));
    m_model->setPlaceholderText(localized("The one above"));
    m_outcome->setWordWrap(true);
    m_outcome->setTextFormat(Qt::PlainText);
    m_outcome->hide();

    connect(add, &QPushButton::clicked, this, &OwnCommandsSection::add);
    connect(m_remove, &QPushButton::clicked, this, &OwnCommandsSection::remove);
    connect(m_list, &QListWidget::currentRowChanged, this, &OwnCommandsSection::showChosen);
    connect(m_name, &QLineEdit::editingFinished, this, &OwnCommandsSection::keep);
    connect(m_model, &QLineEdit::editingFinished, this, &OwnCommandsSection::keep);
    connect(m_keys, &QKeySequenceEdit::editingFinished, this, &OwnCommandsSection::keep);
    connect(m_try, &QPushButton::clicked, this, &OwnCommandsSection::tryIt);

    auto *form = new QFormLayout(m_fields);
    form->setContentsMargins(0, 0, 0, 0);
    form->addRow(localized("Name"), m_name);
    form->addRow(localized("Instruction"), m_instruction);
    form->addRow(localized("Model"), m_model);
    form->addRow(localized("Keys"), m_keys);
    auto *buttons = new QVBoxLayout;
    buttons->addWidget(add);
    buttons->addWidget(m_remove);
    buttons->addStretch();
    auto *top = new QHBoxLayout;
    top->addWidget(m_list, 1);
    top->addLayout(buttons);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(top);
    layout->addWidget(m_fields);
    layout->addWidget(m_try, 0, Qt::AlignLeading);
    layout->addWidget(m_outcome);
    reload();
}

int OwnCommandsSection::chosen() const
{
    return m_list->currentRow();
}

void OwnCommandsSection::reload()
{
    m_commands = OwnCommands::read(m_collaborators.file);
    showList(std::max(0, chosen()));
}

void OwnCommandsSection::showList(int row)
{
    const QSignalBlocker quiet(m_list);
    m_list->clear();
    for (const OwnCommand &command : std::as_const(m_commands))
        m_list->addItem(command.name.isEmpty() ? localized("New command") : command.name);
    m_list->setCurrentRow(std::min(row, int(m_commands.size()) - 1));
    showChosen();
}

void OwnCommandsSection::showChosen()
{
    const OwnCommand command = m_commands.value(chosen());
    const bool isAny = chosen() >= 0;
    m_fields->setVisible(isAny);
    m_try->setVisible(isAny);
    m_remove->setEnabled(isAny);
    m_outcome->hide();
    m_name->setText(command.name);
    m_instruction->setPlainText(command.instruction);
    m_model->setText(command.model);
    m_keys->setKeySequence(QKeySequence(command.key, QKeySequence::PortableText));
}

void OwnCommandsSection::add()
{
    m_commands.append(OwnCommand());
    showList(int(m_commands.size()) - 1);
    m_name->setFocus();
}

void OwnCommandsSection::remove()
{
    m_commands.removeAt(chosen());
    showList(chosen());
    save();
}

void OwnCommandsSection::keep()
{
    if (chosen() < 0)
        return;
    OwnCommand changed = m_commands[chosen()];
    changed.name = m_name->text().simplified();
    changed.instruction = m_instruction->toPlainText().trimmed();
    changed.model = m_model->text().trimmed();
    changed.key = usableKeys(m_keys->keySequence());
    if (changed == m_commands[chosen()])
        return;
    if (changed.identifier.isEmpty() && !changed.name.isEmpty()) {
        QStringList taken;
        for (const OwnCommand &command : std::as_const(m_commands))
            taken += command.identifier;
        changed.identifier = OwnCommands::newIdentifier(changed.name, taken);
    }
    m_commands[chosen()] = changed;
    m_list->currentItem()->setText(changed.name.isEmpty() ? localized("New command")
                                                          : changed.name);
    save();
}

void OwnCommandsSection::save()
{
    if (OwnCommands::write(m_collaborators.file, complete(m_commands)))
        return;
    m_outcome->setText(localized("The file cannot be written: %1").arg(m_collaborators.file));
    m_outcome->show();
}

void OwnCommandsSection::tryIt()
{
    keep();
    const OwnCommand command = m_commands.value(chosen());
    m_outcome->show();
    if (command.identifier.isEmpty() || command.instruction.isEmpty()) {
        m_outcome->setText(localized("A command needs a name and an instruction."));
        return;
    }
    m_try->setEnabled(false);
    m_outcome->setText(localized("Writing…"));
    m_collaborators.tryIt(this, command.identifier, [this](const QString &outcome) {
        m_outcome->setText(outcome);
        m_try->setEnabled(true);
    });
}

bool OwnCommandsSection::event(QEvent *event)
{
    if (event->type() == QEvent::WindowActivate) {
        // What the user has begun to write here stays.
        const bool isAllKept = complete(m_commands).size() == m_commands.size();
        if (isAllKept && OwnCommands::read(m_collaborators.file) != m_commands)
            reload();
    }
    return QWidget::event(event);
}

bool OwnCommandsSection::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_instruction && event->type() == QEvent::FocusOut)
        keep();
    return QWidget::eventFilter(watched, event);
}
