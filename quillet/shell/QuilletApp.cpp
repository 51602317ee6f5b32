// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/shell/QuilletApp.h"

#include "quillet/shell/Feedback.h"
#include "quillet/shell/InstallGuard.h"
#include "quillet/shell/QuitSignals.h"

#include <QApplication>
#include <QSettings>
#include <QVBoxLayout>

#include <utility>

QuilletApp::QuilletApp(Parts parts)
    : m_parts(std::move(parts))
    , m_appDelegate(m_parts.platform)
    , m_windowDelegateHolder(m_parts.platform.workspace())
    , m_notice(m_parts.platform.workspace())
{
    m_goesOn = ensureRunningFromApplications(m_parts.platform.installation());
    m_showOnboarding = m_parts.showWizard ||
                       !m_parts.defaults.value(QStringLiteral("onboardingSeen"), false).toBool();
}

QuilletApp::~QuilletApp() = default;

int QuilletApp::run()
{
    if (!m_goesOn ||
        m_instance.claim(m_parts.startupId, m_parts.showWizard) == SingleInstance::Role::Later)
        return 0;
    connect(&m_instance, &SingleInstance::activationRequested, this,
            [this](const QByteArray &startupId, bool showWizard) {
                // Where the platform looks for it.
                if (!startupId.isEmpty())
                    qputenv("DESKTOP_STARTUP_ID", startupId);
                if (showWizard)
                    setShowOnboarding(true);
                openMain();
            });
    QuitSignals quitSignals;
    connect(&quitSignals, &QuitSignals::quitRequested, this, &QuilletApp::terminate);

    QApplication::setQuitOnLastWindowClosed(false);
    launch();
    const int status = QApplication::exec();
    // What is left to do may take a second, and the user has done with us.
    m_menuBarItem.reset();
    m_window->hide();
    if (m_parts.atQuit)
        m_parts.atQuit();
    return status;
}

void QuilletApp::launch()
{
    m_window = std::make_unique<QWidget>();
    m_window->setWindowTitle(QStringLiteral("Quillet"));
    m_window->resize(mainWindowSize());
    auto *group = new QVBoxLayout(m_window.get());
    group->setContentsMargins(0, 0, 0, 0);
    showView();
    new WindowAccessor(
        [this](QWidget *window) {
            window->installEventFilter(&m_windowDelegateHolder.delegate);
            m_parts.platform.workspace().setActivationPolicy(window,
                                                             platform::ActivationPolicy::Regular);
            m_parts.platform.workspace().activate(window);
        },
        m_window.get());

    m_menuBarItem = std::make_unique<MenuBarItem>(
        MenuBarItem::Actions{[this] { openMain(); }, [this] { sendFeedbackEmail(); },
                             [this] {
                                 if (m_appDelegate.updaterController)
                                     m_appDelegate.updaterController->checkForUpdates();
                             },
                             [] { terminate(); }});
    QMetaObject::invokeMethod(
        this, [this] { m_appDelegate.applicationDidFinishLaunching(m_window.get()); },
        Qt::QueuedConnection);
}

void QuilletApp::setShowOnboarding(bool show)
{
    if (std::exchange(m_showOnboarding, show) != show)
        showView();
}

void QuilletApp::showView()
{
    // The view may be the one that asks, from one of its own events.
    if (m_view) {
        m_view->hide();
        m_view->deleteLater();
    }
    const auto &factory = m_showOnboarding ? m_parts.onboardingWizardView : m_parts.homeView;
    m_view = factory(m_window.get(), [this](bool show) { setShowOnboarding(show); });
    const QSize size = mainWindowSize();
    m_view->setMinimumSize(size);
    new WindowSizeSetter(size.width(), size.height(), m_view);
    m_window->layout()->addWidget(m_view);
    m_view->show();
}

void QuilletApp::openMain()
{
    if (!m_window)
        return;
    m_parts.platform.workspace().setActivationPolicy(m_window.get(),
                                                     platform::ActivationPolicy::Regular);
    m_parts.platform.workspace().activate(m_window.get());
}

void QuilletApp::sendFeedbackEmail()
{
    const QUrl url = feedbackUrl(feedbackAddress());
    if (url.isValid() && !m_parts.platform.workspace().open(url))
        m_notice.tell(QStringLiteral("No mail program could be opened. Please write to %1.")
                          .arg(feedbackAddress()));
}

void QuilletApp::terminate()
{
    // Unlike quit(), this does not close the windows first: nobody is closing them.
    QCoreApplication::exit(0);
}
