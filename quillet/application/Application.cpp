// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/application/Application.h"

#include "BuildConstants.h"
#include "MetricPost/MetricPost.h"
#include "quillet/analytics/SharedMetricPost.h"
#include "quillet/button/FloatingButtonManager.h"
#include "quillet/focus/AccessibilityObserver.h"
#include "quillet/shell/InstallGuard.h"
#include "quillet/window/HomeView.h"
#include "quillet/window/OnboardingWizardView.h"
#include "quillet/writing/LocalBackend.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QScreen>

using metricpost::MetricPost;

Application::Application(const QByteArray &startupId, bool showWizard)
    : m_platform(platform::createPlatform())
    , m_notice(m_platform->workspace())
{
    m_app = std::make_unique<QuilletApp>(QuilletApp::Parts{
        .platform = *m_platform,
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
        .showWizard = showWizard,
    });
    prepareAnalytics();
    prepareEndpoint();
}

Application::~Application() = default;

int Application::run()
{
    return m_app->run();
}

void Application::prepareAnalytics()
{
    metricpost::ApplicationFacts facts;
    if (const QScreen *screen = QGuiApplication::primaryScreen()) {
        facts.screenHeight = screen->geometry().height();
        facts.screenWidth = screen->geometry().width();
    }
    facts.bundleVersion = facts.bundleShortVersion = BuildConstants::Version;
    MetricPost::setApplicationFacts(facts);
    SharedMetricPost::prepareShared(
        {.developmentRun = isRunningFromXcode(m_platform->installation()),
         .serverURL = BuildConstants::AnalyticsEndpoint});
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
    if (!BuildConstants::BackendEndpoint.isEmpty()) {
        m_endpoint = std::make_unique<FixedEndpoint>(BuildConstants::BackendEndpoint);
    } else {
        auto backend = std::make_unique<LocalBackend>();
        if (BuildConstants::AnalyticsEndpoint.isEmpty()) {
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
    constexpr int CardWidth = 350;
    auto *view = new HomeView(m_platform->accessibility(), m_notifications, CardWidth, parent);
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
         .track = [](const QString &event) { SharedMetricPost::shared().track(event); }},
        parent);
    connect(view, &OnboardingWizardView::showOnboardingChanged, view, setShowOnboarding);
    return view;
}

void Application::createObserver()
{
    if (!std::exchange(m_observing, true)) {
        FloatingButtonManager::prepareShared({m_platform->accessibility(), m_platform->keyboard(),
                                              m_platform->workspace(), *m_writing,
                                              SharedMetricPost::shared()});
        FloatingButtonManager &manager = FloatingButtonManager::shared();
        connect(&manager, &FloatingButtonManager::textApplied, this,
                &Application::keepUnwrittenText);
        AccessibilityObserver::prepareShared(
            {m_platform->accessibility(), m_platform->workspace(), manager,
             static_cast<std::int32_t>(QCoreApplication::applicationPid())});
        // The first command is quicker when the backend is up by then.
        m_foundServers->look();
        connect(&AccessibilityObserver::shared(), &AccessibilityObserver::noInputFocused, this,
                &Application::adviseOnFocusedApplication);
    }
    AccessibilityObserver::shared();
}

void Application::askAboutServer(const FoundServer &server)
{
    m_serverQuestion.ask(
        {server.address, server.ownerName, server.model}, [this, server](bool agreed) {
            m_foundServers->answer(server, agreed, [this](bool stored) {
                if (!stored)
                    m_notice.tell(QStringLiteral("Your answer could not be stored."));
            });
        });
}

void Application::keepUnwrittenText(const QString &text, const platform::WriteOutcome &outcome)
{
    if (outcome.isWritten())
        return;
    QGuiApplication::clipboard()->setText(text);
    QString notice = QStringLiteral("Quillet could not write the text into the other application. "
                                    "It is on the clipboard, so you can paste it.");
    if (outcome.keysMayBeElsewhere)
        notice += QStringLiteral(" The keyboard went to another input meanwhile: some of the text "
                                 "may have gone there.");
    if (outcome.isDamaged)
        notice += QStringLiteral(" Look at your text: a part of it may have changed.");
    m_notice.tell(notice);
}

void Application::adviseOnFocusedApplication()
{
    const QString advice = m_platform->accessibility().adviceForFocusedApplication();
    if (advice.isEmpty() || advice == m_lastAdvice)
        return;
    m_lastAdvice = advice;
    m_notice.tell(advice);
}
