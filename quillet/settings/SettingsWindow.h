// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Platform.h"
#include "quillet/settings/DoctorSection.h"
#include "quillet/settings/ModelSection.h"
#include "quillet/settings/OwnCommandsSection.h"

#include <QWidget>

#include <functional>

class QBoxLayout;
class QKeySequenceEdit;
class QLabel;
class QListWidget;
class QPushButton;
class QScrollArea;
class UserSettings;

/// The settings in one window: each is in force as soon as it is changed, and there is nothing to
/// confirm. Works with the keyboard alone; Escape closes it. Main thread.
class SettingsWindow : public QWidget
{
    Q_OBJECT

public:
    struct Collaborators {
        platform::Accessibility &accessibility;
        platform::Installation &installation;
        UserSettings &settings;
        ModelSection::Collaborators model;
        /// Whether the shortcut that is set has been taken from the system.
        std::function<bool()> holdsShortcut;
        /// Examines the desktop for the last section.
        DoctorSection::Examine examine;
        /// Null where the system knows no switches of programs.
        platform::ProgramAccess *programAccess = nullptr;
        OwnCommandsSection::Collaborators ownCommands = {};
    };

    /// What the collaborators refer to must outlive the window.
    explicit SettingsWindow(const Collaborators &collaborators, QWidget *parent = nullptr);

    /// Examines the desktop and brings the section about that into sight.
    void showDoctor();

protected:
    bool event(QEvent *event) override;

private:
    void addPermission(QBoxLayout *layout);
    void addShortcut(QBoxLayout *layout);
    void addLoginStart(QBoxLayout *layout);
    void addModel(QBoxLayout *layout);
    void addOwnCommands(QBoxLayout *layout);
    void addPrograms(QBoxLayout *layout);
    void addSwitchedPrograms(QBoxLayout *layout);
    void addRecording(QBoxLayout *layout);
    void addDoctor(QBoxLayout *layout);

    void showPermission();
    void showShortcut();
    void showPrograms();
    void removeProgram();
    void showSwitchedPrograms();
    void switchProgramOff();

    Collaborators m_collaborators;
    QScrollArea *m_scroll = nullptr;
    DoctorSection *m_doctor = nullptr;
    QLabel *m_permission = nullptr;
    QKeySequenceEdit *m_shortcut = nullptr;
    QLabel *m_shortcutState = nullptr;
    QListWidget *m_programs = nullptr;
    QPushButton *m_remove = nullptr;
    QListWidget *m_switchedPrograms = nullptr;
    QPushButton *m_switchOff = nullptr;
    QLabel *m_switchFailure = nullptr;
};
