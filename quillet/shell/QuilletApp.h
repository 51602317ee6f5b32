// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Platform.h"
#include "quillet/shell/AppDelegate.h"
#include "quillet/shell/MenuBarItem.h"
#include "quillet/shell/Notice.h"
#include "quillet/shell/SingleInstance.h"
#include "quillet/shell/WindowHelpers.h"

#include <QByteArray>
#include <QWidget>

#include <functional>
#include <memory>

class QScrollArea;
class QSettings;

/// The application: its one main window, its item in the tray, and its passing between regular and
/// background application. Main thread only, one object a process, after the QApplication.
class QuilletApp : public QObject
{
    Q_OBJECT
public:
    /// Makes one of the main window's views. The view calls `setShowOnboarding` to have the wizard
    /// (true) or the home view (false) in its place.
    using ViewFactory =
        std::function<QWidget *(QWidget *parent, std::function<void(bool)> setShowOnboarding)>;

    struct Parts {
        platform::Platform &platform;
        /// The application's one place to tell the user something.
        Notice &notice;
        /// Read for the flag "onboardingSeen".
        QSettings &defaults;
        ViewFactory homeView;
        ViewFactory onboardingWizardView;
        /// Runs once when the event loop has ended, however it was ended.
        std::function<void()> atQuit = {};
        /// SingleInstance::startupIdOfThisProcess(), asked before the QApplication was made.
        QByteArray startupId = {};
        /// What this start asks for; handed over where another Quillet runs already.
        StartRequest request = StartRequest::Window;
        /// Carry out the requests that are not about the main window.
        std::function<void()> showPermission = [] {};
        std::function<void()> showSettings = [] {};
        std::function<void()> showDoctor = [] {};
        std::function<void()> watchInBackground = [] {};
    };

    /// May hand over to an installed copy, or ask the user whether to install this one; run() then
    /// returns at once.
    explicit QuilletApp(Parts parts);
    ~QuilletApp() override;

    /// The program's main: shows the window and runs until the user quits or a signal ends it.
    /// Returns at once with 0 where another Quillet runs already. The value is the exit status.
    int run();

    bool showOnboarding() const { return m_showOnboarding; }
    QWidget *mainWindow() { return m_window.get(); }
    const MenuBarItem *menuBarItem() const { return m_menuBarItem.get(); }

    /// The window and the tray item, without the event loop and without regard for other
    /// instances. run() does this.
    void launch();

private:
    void openMain();
    void carryOut(StartRequest request);
    void explainFirstClose();
    void sendFeedbackEmail();
    void setShowOnboarding(bool show);
    void showView();
    static void terminate();

    Parts m_parts;
    AppDelegate m_appDelegate;
    WindowDelegateHolder m_windowDelegateHolder;
    bool m_mayRun = false;
    bool m_showOnboarding = false;
    SingleInstance m_instance;
    std::unique_ptr<QWidget> m_window;
    QScrollArea *m_scroll = nullptr;
    QWidget *m_view = nullptr;
    std::unique_ptr<MenuBarItem> m_menuBarItem;
};
