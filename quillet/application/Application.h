// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "quillet/settings/SettingsWindow.h"
#include "quillet/settings/UserSettings.h"
#include "quillet/shell/Notice.h"
#include "quillet/shell/ProgramAdvice.h"
#include "quillet/shell/QuilletApp.h"
#include "quillet/shell/TextRescue.h"
#include "quillet/window/FoundServerQuestion.h"
#include "quillet/window/WindowNotifications.h"
#include "quillet/writing/FoundServer.h"
#include "quillet/writing/WritingEndpoint.h"
#include "quillet/writing/WritingService.h"

#include <QByteArray>
#include <QPointer>
#include <QSettings>
#include <QTimer>

#include <memory>

/// Puts the application together: every part gets the collaborators that it names, here and nowhere
/// else. Main thread, one object a process, after the QApplication.
class Application : public QObject
{
    Q_OBJECT

public:
    /// `startupId` is the desktop's id of this start. `diagnostics`: the user wants to see them.
    Application(const QByteArray &startupId, StartRequest request, bool diagnostics);
    ~Application() override;

    /// Runs until the user quits; the process's exit status.
    int run();

private:
    void prepareDiagnostics(bool wanted);
    void prepareAnalytics();
    void prepareEndpoint();
    QWidget *makeHomeView(QWidget *parent, const std::function<void(bool)> &setShowOnboarding);
    QWidget *makeWizard(QWidget *parent, const std::function<void(bool)> &setShowOnboarding);
    void createObserver();
    void askAboutServer(const FoundServer &server);
    ModelSection::Collaborators modelCollaborators();
    OwnCommandsSection::Collaborators ownCommandsCollaborators();
    void keepAnswer(const FoundServer &server, bool agreed);
    void watchInBackground();
    void showSettings();
    void takeShortcut();
    void offerLoginStart();
    void adviseOnFocusedApplication();

    std::unique_ptr<platform::Platform> m_platform;
    QSettings m_defaults;
    WindowNotifications m_notifications;
    Notice m_notice;
    TextRescue m_rescue;
    ProgramAdvice m_programAdvice;
    UserSettings m_userSettings{m_defaults};
    QPointer<SettingsWindow> m_settingsWindow;
    bool m_holdsShortcut = false;
    QTimer m_waitForTrust;
    bool m_observing = false;
    std::unique_ptr<WritingEndpoint> m_endpoint;
    std::unique_ptr<WritingService> m_writing;
    std::unique_ptr<FoundServerDesk> m_foundServers;
    /// What the settings try out.
    std::unique_ptr<BackendRequest> m_trial;
    /// The one that the settings show.
    FoundServer m_chosenServer;
    FoundServerQuestion m_serverQuestion;
    std::unique_ptr<QuilletApp> m_app;
};
