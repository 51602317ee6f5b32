// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/settings/SettingsWindow.h"

#include "quillet/settings/UserSettings.h"
#include "quillet/widgets/Fonts.h"
#include "quillet/widgets/LightLook.h"
#include "quillet/widgets/Localisation.h"

#include <QCheckBox>
#include <QEvent>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>

namespace
{

/// Points.
constexpr int windowWidth = 520;
constexpr int windowHeight = 620;
constexpr int margin = 28;
constexpr int listHeight = 84;

QLabel *text(const QString &words)
{
    auto *label = new QLabel(words);
    label->setFont(customFont(QStringLiteral("Manrope-Regular"), 14));
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    return label;
}

void addTitle(QBoxLayout *layout, const QString &words)
{
    auto *label = new QLabel(words);
    label->setFont(customFont(QStringLiteral("Manrope-SemiBold"), 18));
    layout->addSpacing(10);
    layout->addWidget(label);
}

QHBoxLayout *besides(QWidget *left, QWidget *right)
{
    auto *row = new QHBoxLayout;
    row->addWidget(left, 1);
    row->addWidget(right, 0, Qt::AlignTop);
    return row;
}

} // namespace

SettingsWindow::SettingsWindow(const Collaborators &collaborators, QWidget *parent)
    : QWidget(parent)
    , m_collaborators(collaborators)
{
    setWindowTitle(localized("Quillet Settings"));
    giveLightLook(this);

    auto *page = new QWidget;
    page->setObjectName(QStringLiteral("page"));
    auto *sections = new QVBoxLayout(page);
    sections->setContentsMargins(margin, margin / 2, margin, margin);
    sections->setSpacing(8);
    addPermission(sections);
    addShortcut(sections);
    addLoginStart(sections);
    addModel(sections);
    addOwnCommands(sections);
    addPrograms(sections);
    if (m_collaborators.programAccess)
        addSwitchedPrograms(sections);
    addRecording(sections);
    addDoctor(sections);
    sections->addStretch();

    m_scroll = new QScrollArea;
    m_scroll->setFrameShape(QFrame::NoFrame);
    // The keyboard goes to the controls, and what it is at comes into sight.
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setWidgetResizable(true);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setWidget(page);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_scroll);
    resize(windowWidth, windowHeight);

    auto *escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    connect(escape, &QShortcut::activated, this, &QWidget::close);
}

void SettingsWindow::addPermission(QBoxLayout *layout)
{
    addTitle(layout, localized("Permission"));
    m_permission = text({});
    auto *open = new QPushButton(localized("Change…"));
    open->setAccessibleName(localized("Change the permission"));
    connect(open, &QPushButton::clicked, this,
            [this] { m_collaborators.accessibility.openAccessibilitySettings(); });
    layout->addLayout(besides(m_permission, open));
    showPermission();
}

void SettingsWindow::addShortcut(QBoxLayout *layout)
{
    addTitle(layout, localized("Shortcut"));
    layout->addWidget(text(localized("Opens the commands for the input that you are in, or for "
                                     "what is selected in it.")));
    m_shortcut = new QKeySequenceEdit(m_collaborators.settings.shortcut());
    m_shortcut->setAccessibleName(localized("Shortcut"));
    for (QLineEdit *field : m_shortcut->findChildren<QLineEdit *>())
        field->setAccessibleName(localized("Shortcut"));
    auto *none = new QPushButton(localized("None"));
    none->setAccessibleName(localized("No shortcut"));
    connect(none, &QPushButton::clicked, m_shortcut, &QKeySequenceEdit::clear);
    connect(none, &QPushButton::clicked, this, [this] {
        m_collaborators.settings.setShortcut({});
        showShortcut();
    });
    connect(m_shortcut, &QKeySequenceEdit::editingFinished, this, [this] {
        // One combination: the system knows no sequences of them.
        const QKeySequence keys = m_shortcut->keySequence();
        const QKeySequence first = keys.isEmpty() ? keys : QKeySequence(keys[0]);
        m_shortcut->setKeySequence(first);
        m_collaborators.settings.setShortcut(first);
        showShortcut();
    });
    layout->addLayout(besides(m_shortcut, none));
    m_shortcutState = text({});
    layout->addWidget(m_shortcutState);
    showShortcut();
}

void SettingsWindow::addLoginStart(QBoxLayout *layout)
{
    addTitle(layout, localized("Start"));
    auto *start = new QCheckBox(localized("Start Quillet when I log in, without a window"));
    start->setChecked(m_collaborators.installation.startsAtLogin());
    connect(start, &QCheckBox::toggled, this, [this, start](bool wanted) {
        if (!m_collaborators.installation.setStartsAtLogin(wanted))
            start->setChecked(m_collaborators.installation.startsAtLogin());
    });
    layout->addWidget(start);
}

void SettingsWindow::addModel(QBoxLayout *layout)
{
    addTitle(layout, localized("Language model"));
    layout->addWidget(text(localized(
        "Without one, Quillet corrects and improves texts on this machine. For the other commands, "
        "name a server that speaks the chat completions interface.")));
    layout->addWidget(new ModelSection(m_collaborators.model));
}

void SettingsWindow::addOwnCommands(QBoxLayout *layout)
{
    addTitle(layout, localized("Your own commands"));
    layout->addWidget(text(localized("They are under \"mine\" in the popup, and need a language "
                                     "model. You can copy or edit their file: %1")
                               .arg(m_collaborators.ownCommands.file)));
    layout->addWidget(new OwnCommandsSection(m_collaborators.ownCommands));
}

void SettingsWindow::addPrograms(QBoxLayout *layout)
{
    addTitle(layout, localized("Programs"));
    layout->addWidget(text(localized("Quillet stays out of these. The menu of its button, with the "
                                     "other mouse button, adds one.")));
    m_programs = new QListWidget;
    m_programs->setAccessibleName(localized("Programs that Quillet stays out of"));
    m_programs->setFixedHeight(listHeight);
    m_remove = new QPushButton(localized("Remove"));
    connect(m_remove, &QPushButton::clicked, this, &SettingsWindow::removeProgram);
    connect(m_programs, &QListWidget::itemSelectionChanged, this,
            [this] { m_remove->setEnabled(!m_programs->selectedItems().isEmpty()); });
    connect(&m_collaborators.settings, &UserSettings::excludedProgramsChanged, this,
            &SettingsWindow::showPrograms);
    layout->addLayout(besides(m_programs, m_remove));
    showPrograms();
}

void SettingsWindow::addSwitchedPrograms(QBoxLayout *layout)
{
    layout->addWidget(
        text(localized("These show their texts because Quillet has turned on a switch "
                       "in their menu entry.")));
    m_switchedPrograms = new QListWidget;
    m_switchedPrograms->setAccessibleName(localized("Programs whose switch is on"));
    m_switchedPrograms->setFixedHeight(listHeight);
    m_switchOff = new QPushButton(localized("Turn off"));
    connect(m_switchOff, &QPushButton::clicked, this, &SettingsWindow::switchProgramOff);
    connect(m_switchedPrograms, &QListWidget::itemSelectionChanged, this,
            [this] { m_switchOff->setEnabled(!m_switchedPrograms->selectedItems().isEmpty()); });
    layout->addLayout(besides(m_switchedPrograms, m_switchOff));
    m_switchFailure = text({});
    m_switchFailure->hide();
    layout->addWidget(m_switchFailure);
    showSwitchedPrograms();
}

void SettingsWindow::addRecording(QBoxLayout *layout)
{
    addTitle(layout, localized("What is recorded"));
    layout->addWidget(text(localized(
        "That you have opened the wizard, clicked the button, run a command and which one, and "
        "applied a result. Never a text, nor the name of a program.")));
}

void SettingsWindow::addDoctor(QBoxLayout *layout)
{
    addTitle(layout, localized("Does Quillet work here?"));
    m_doctor = new DoctorSection(m_collaborators.examine);
    layout->addWidget(m_doctor);
}

void SettingsWindow::showDoctor()
{
    m_doctor->examine();
    m_doctor->setFocus();
    // The window and the report take their room first.
    QTimer::singleShot(0, m_doctor, [this] { m_scroll->ensureWidgetVisible(m_doctor); });
}

void SettingsWindow::showPermission()
{
    m_permission->setText(m_collaborators.accessibility.AXIsProcessTrusted()
                              ? localized("Quillet may read and write the inputs of your programs.")
                              : localized("Quillet may not see your programs."));
}

void SettingsWindow::showShortcut()
{
    const bool isTaken =
        !m_collaborators.settings.shortcut().isEmpty() && !m_collaborators.holdsShortcut();
    m_shortcutState->setText(
        isTaken ? localized("These keys are not free: another program has them, or the system does "
                            "not hand them out. Press others.")
                : QString());
    m_shortcutState->setVisible(isTaken);
}

void SettingsWindow::showPrograms()
{
    m_programs->clear();
    m_programs->addItems(m_collaborators.settings.excludedPrograms());
    m_remove->setEnabled(false);
}

void SettingsWindow::removeProgram()
{
    for (const QListWidgetItem *item : m_programs->selectedItems())
        m_collaborators.settings.setExcluded(QString(item->text()), false);
}

void SettingsWindow::showSwitchedPrograms()
{
    m_switchedPrograms->clear();
    const auto programs = m_collaborators.programAccess->turnedOn();
    for (const platform::ProgramAccess::Program &program : programs) {
        auto *item = new QListWidgetItem(program.name, m_switchedPrograms);
        item->setData(Qt::UserRole, program.entry);
    }
    m_switchOff->setEnabled(false);
}

void SettingsWindow::switchProgramOff()
{
    for (const QListWidgetItem *item : m_switchedPrograms->selectedItems()) {
        const QString failure =
            m_collaborators.programAccess->turnOff(item->data(Qt::UserRole).toString());
        m_switchFailure->setText(failure);
        m_switchFailure->setVisible(!failure.isEmpty());
    }
    showSwitchedPrograms();
}

bool SettingsWindow::event(QEvent *event)
{
    // The user comes back from the window where the permission is given.
    if (event->type() == QEvent::WindowActivate)
        showPermission();
    return QWidget::event(event);
}
