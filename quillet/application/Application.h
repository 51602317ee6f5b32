// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "quillet/shell/Notice.h"
#include "quillet/shell/QuilletApp.h"
#include "quillet/window/FoundServerQuestion.h"
#include "quillet/window/WindowNotifications.h"
#include "quillet/writing/FoundServer.h"
#include "quillet/writing/WritingEndpoint.h"
#include "quillet/writing/WritingService.h"

#include <QByteArray>
#include <QSettings>

#include <memory>

/// Puts the application together: every part gets the collaborators that it names, here and nowhere
/// else. Main thread, one object a process, after the QApplication.
class Application : public QObject
{
    Q_OBJECT

public:
    /// `startupId` is the desktop's id of this start. `showWizard`: also for a user who has seen
    /// it.
    Application(const QByteArray &startupId, bool showWizard);
    ~Application() override;

    /// Runs until the user quits; the process's exit status.
    int run();

private:
    void prepareAnalytics();
    void prepareEndpoint();
    QWidget *makeHomeView(QWidget *parent, const std::function<void(bool)> &setShowOnboarding);
    QWidget *makeWizard(QWidget *parent, const std::function<void(bool)> &setShowOnboarding);
    void createObserver();
    void askAboutServer(const FoundServer &server);
    void keepUnwrittenText(const QString &text, const platform::WriteOutcome &outcome);
    void adviseOnFocusedApplication();

    std::unique_ptr<platform::Platform> m_platform;
    QSettings m_defaults;
    WindowNotifications m_notifications;
    Notice m_notice;
    QString m_lastAdvice;
    bool m_observing = false;
    std::unique_ptr<WritingEndpoint> m_endpoint;
    std::unique_ptr<WritingService> m_writing;
    std::unique_ptr<FoundServerDesk> m_foundServers;
    FoundServerQuestion m_serverQuestion;
    std::unique_ptr<QuilletApp> m_app;
};
