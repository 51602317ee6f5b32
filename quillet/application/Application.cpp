// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/application/Application.h"

#include "BuildConstants.h"
#include "MetricPost/MetricPost.h"
#include "commands/OwnCommands.h"
#include "quillet/analytics/SharedMetricPost.h"
#include "quillet/application/DoctorRun.h"
#include "quillet/application/ModelTrial.h"
#include "quillet/button/FloatingButtonManager.h"
#include "quillet/diagnostics/DiagnosticLog.h"
#include "quillet/focus/AccessibilityObserver.h"
#include "quillet/shell/InstallGuard.h"
#include "quillet/widgets/Localisation.h"
#include "quillet/window/HomeView.h"
#include "quillet/window/OnboardingWizardView.h"
#include "quillet/writing/LocalBackend.h"

#include <QGuiApplication>
#include <QScreen>
#include <QStandardPaths>

#include <chrono>

#include <unistd.h>

using metricpost::MetricPost;
using namespace std::chrono_literals;

Application::Application(const QByteArray &startupId, StartRequest request, bool diagnostics)
    : m_platform(platform::createPlatform())
    , m_notice(m_platform->workspace())
    , m_rescue(m_notice)
    , m_programAdvice(m_platform->programAccess(), m_notice, m_defaults)
{
    m_app = std::make_unique<QuilletApp>(QuilletApp::Parts{
        .platform = *m_platform,
        .notice = m_notice,
        .defaults = m_defaults,
        .homeView =
            [this](QWidget *parent, const std::function<void(bool)> &setShowOnboarding) {
                return makeHomeView(parent, setShowOnboarding);
            },
        .onboardingWizardView =
            [this](QWidget *parent, const std::function<void(bool)> &setShowOnboarding) {
                return makeWizard(parent, setShowOnboarding);
            },
        .atQuit =
            [this] {
                if (m_observing)
                    FloatingButtonManager::shared().hide();
                MetricPost::shutdown();
            },
        .startupId = startupId,
        .request = request,
        .showPermission = [this] { m_platform->accessibility().openAccessibilitySettings(); },
        .showSettings = [this] { showSettings(); },
        .showDoctor =
            [this] {
                showSettings();
                m_settingsWindow->showDoctor();
            },
        .watchInBackground = [this] { watchInBackground(); },
    });
    prepareDiagnostics(diagnostics);
    prepareAnalytics();
    prepareEndpoint();
}

Application::~Application()
{
    delete m_settingsWindow;
}

int Application::run()
{
    return m_app->run();
}

void Application::prepareDiagnostics(bool wanted)
{
    // A session keeps the output of what it starts: an installed copy does not fill its journal
    // with the names of the programs in use.
    setDiagnosticsEnabled(wanted || isRunningFromXcode(m_platform->installation()) ||
                          qEnvironmentVariableIntValue("QUILLET_DIAGNOSTICS") == 1 ||
                          ::isatty(STDOUT_FILENO) == 1);
}

void Application::prepareAnalytics()
{
    metricpost::ApplicationFacts facts;
    if (const QScreen *screen = QGuiApplication::primaryScreen()) {
        facts.screenHeight = screen->geometry().height();
        facts.screenWidth = screen->geometry().width();
    }
    facts.bundleVersion = facts.bundleShortVersion = BuildConstants::version;
    MetricPost::setApplicationFacts(facts);
    SharedMetricPost::prepareShared(
        {.developmentRun = isRunningFromXcode(m_platform->installation()),
         .serverURL = BuildConstants::analyticsEndpoint});
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this,
            [](Qt::ApplicationState state) {
                if (state == Qt::ApplicationActive)
                    MetricPost::applicationDidBecomeActive();
                else
                    MetricPost::applicationWillResignActive();
            });
}

void Application::prepareEndpoint()
{
    if (!BuildConstants::backendEndpoint.isEmpty()) {
        m_endpoint = std::make_unique<FixedEndpoint>(BuildConstants::backendEndpoint);
    } else {
        auto backend = std::make_unique<LocalBackend>();
        if (BuildConstants::analyticsEndpoint.isEmpty()) {
            connect(backend.get(), &LocalBackend::analyticsMoved, this,
                    [](const QString &url) { SharedMetricPost::shared().setServerURL(url); });
        }
        m_endpoint = std::move(backend);
    }
    m_writing = std::make_unique<WritingService>(*m_endpoint, BackendService::shared());
    m_foundServers = std::make_unique<FoundServerDesk>(*m_endpoint);
    connect(m_foundServers.get(), &FoundServerDesk::unanswered, this, &Application::askAboutServer);
}

QWidget *Application::makeHomeView(QWidget *parent,
                                   const std::function<void(bool)> &setShowOnboarding)
{
    constexpr int cardWidth = 350;
    auto *view = new HomeView(m_platform->accessibility(), m_notifications, cardWidth, parent,
                              [this] { return m_platform->workspace().sessionLimitation(); });
    connect(view, &HomeView::showOnboardingChanged, view, setShowOnboarding);
    return view;
}

QWidget *Application::makeWizard(QWidget *parent,
                                 const std::function<void(bool)> &setShowOnboarding)
{
    auto *view = new OnboardingWizardView(
        {.accessibility = m_platform->accessibility(),
         .defaults = m_defaults,
         .createObserver = [this] { createObserver(); },
         .track = [](const QString &event) { SharedMetricPost::shared().track(event); },
         .bringToFront = [this] { m_platform->workspace().activate(m_app->mainWindow()); },
         .limitationOfSession = [this] { return m_platform->workspace().sessionLimitation(); }},
        parent);
    connect(view, &OnboardingWizardView::showOnboardingChanged, view, setShowOnboarding);
    return view;
}

void Application::createObserver()
{
    if (!std::exchange(m_observing, true)) {
        const auto isExcluded = [this](const QString &program) {
            return m_userSettings.isExcluded(program);
        };
        FloatingButtonManager::prepareShared(
            {m_platform->accessibility(), m_platform->keyboard(), m_platform->workspace(),
             *m_writing, SharedMetricPost::shared(), isExcluded, m_platform->frameWatch(),
             [] { return OwnCommands::read(OwnCommands::defaultPath()); }});
        FloatingButtonManager &manager = FloatingButtonManager::shared();
        connect(&manager, &FloatingButtonManager::textApplied, this,
                [this](const QString &text, const platform::WriteOutcome &outcome) {
                    if (outcome.isWritten())
                        offerLoginStart();
                    else
                        m_rescue.keep(text, outcome);
                });
        connect(&manager, &FloatingButtonManager::requestFailed, this,
                [this](const QString &sentence) { m_notice.mention(sentence); });
        AccessibilityObserver::prepareShared(
            {m_platform->accessibility(), m_platform->workspace(), manager,
             static_cast<std::int32_t>(QCoreApplication::applicationPid()), isExcluded});
        connect(&manager, &FloatingButtonManager::exclusionWanted, &m_userSettings,
                [this](const QString &program) { m_userSettings.setExcluded(program, true); });
        connect(&m_userSettings, &UserSettings::shortcutChanged, this, &Application::takeShortcut);
        takeShortcut();
        m_platform->accessibility().setConsentChanged([](bool allowed) {
            if (!allowed)
                AccessibilityObserver::shared().permissionTakenBack();
        });
        // Starting the backend now makes the first command quicker.
        m_foundServers->look();
        connect(&AccessibilityObserver::shared(), &AccessibilityObserver::noInputFocused, this,
                &Application::adviseOnFocusedApplication);
    }
    AccessibilityObserver::shared();
}

void Application::askAboutServer(const FoundServer &server)
{
    m_serverQuestion.ask({server.address, server.ownerName, server.model},
                         [this, server](bool agreed) { keepAnswer(server, agreed); });
}

void Application::keepAnswer(const FoundServer &server, bool agreed)
{
    m_foundServers->answer(server, agreed, [this](bool stored) {
        if (!stored)
            m_notice.tell(localized("Your answer could not be stored."));
    });
}

void Application::watchInBackground()
{
    // At login the accessibility service may not be there yet, and the observer that is created
    // without it never starts.
    if (m_observing)
        return;
    constexpr std::chrono::milliseconds interval = 500ms;
    m_waitForTrust.setInterval(interval);
    m_waitForTrust.callOnTimeout(this, [this] {
        if (!m_platform->accessibility().AXIsProcessTrusted())
            return;
        m_waitForTrust.stop();
        createObserver();
    });
    m_waitForTrust.start();
}

void Application::showSettings()
{
    if (!m_settingsWindow) {
        m_settingsWindow =
            new SettingsWindow({.accessibility = m_platform->accessibility(),
                                .installation = m_platform->installation(),
                                .settings = m_userSettings,
                                .model = modelCollaborators(),
                                // Before the watching begins, no shortcut is taken.
                                .holdsShortcut = [this] { return !m_observing || m_holdsShortcut; },
                                .examine = examineInOwnProcess,
                                .programAccess = m_platform->programAccess(),
                                .ownCommands = ownCommandsCollaborators()});
        m_settingsWindow->setAttribute(Qt::WA_DeleteOnClose);
    }
    m_platform->workspace().activate(m_settingsWindow);
}

ModelSection::Collaborators Application::modelCollaborators()
{
    return {
        .file = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                QStringLiteral("/quillet/backend.ini"),
        .findServer =
            [this](QObject *context, std::function<void(const QString &, bool)> told) {
                m_foundServers->find(context, [this, told](const FoundServer &server, bool agreed) {
                    m_chosenServer = server;
                    told(QStringLiteral("%1 (%2)").arg(server.model, server.address), agreed);
                });
            },
        .agreeToServer = [this](bool agreed) { keepAnswer(m_chosenServer, agreed); },
        .tryIt =
            [this](QObject *context, const std::function<void(const QString &)> &told) {
                m_trial = writeSample(*m_writing, QStringLiteral("elevate"),
                                      [context = QPointer(context), told](const QString &outcome) {
                                          if (context)
                                              told(outcome);
                                      });
            }};
}

OwnCommandsSection::Collaborators Application::ownCommandsCollaborators()
{
    return {.file = OwnCommands::defaultPath(),
            .tryIt = [this](QObject *context, const QString &identifier,
                            const std::function<void(const QString &)> &told) {
                m_trial = writeSample(*m_writing, identifier,
                                      [context = QPointer(context), told](const QString &outcome) {
                                          if (context)
                                              told(outcome);
                                      });
            }};
}

void Application::takeShortcut()
{
    m_holdsShortcut = m_platform->workspace().setGlobalShortcut(
        m_userSettings.shortcut(), [] { FloatingButtonManager::shared().openForFocusedInput(); });
}

void Application::offerLoginStart()
{
    platform::Installation &installation = m_platform->installation();
    if (m_userSettings.wasLoginStartOffered() || isRunningFromXcode(installation) ||
        installation.startsAtLogin())
        return;
    m_userSettings.setLoginStartOffered();
    m_notice.mention(
        localized("Quillet can start when you log in, in the background, so that its button is "
                  "there at once. You find this in the settings too."),
        {localized("Start at Login"), [&installation] { installation.setStartsAtLogin(true); }});
}

void Application::adviseOnFocusedApplication()
{
    const QString advice = m_platform->accessibility().adviceForFocusedApplication();
    const std::optional<std::int32_t> pid = m_platform->workspace().frontmostApplication();
    if (!advice.isEmpty() && pid)
        m_programAdvice.mention(*pid, advice);
}
