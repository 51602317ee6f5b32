// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/shell/QuilletApp.h"

#include "quillet/shell/Feedback.h"
#include "quillet/shell/InstallGuard.h"
#include "quillet/shell/QuitSignals.h"
#include "quillet/widgets/Localisation.h"

#include <QApplication>
#include <QScreen>
#include <QScrollArea>
#include <QSettings>
#include <QStyle>
#include <QVBoxLayout>

#include <utility>

namespace
{

/// The window's size for content of this size: lower on a screen that is too low for it and a title
/// bar, and as much wider as the scroll bar needs then.
QSize sizeOnScreen(const QSize &content, const QSize &screen)
{
    constexpr int titleBar = 40;
    const int room = screen.height() - titleBar;
    if (room >= content.height())
        return content;
    return {content.width() + QApplication::style()->pixelMetric(QStyle::PM_ScrollBarExtent), room};
}

} // namespace

QuilletApp::QuilletApp(Parts parts)
    : m_parts(std::move(parts))
    , m_appDelegate(m_parts.platform, m_parts.notice)
    , m_windowDelegateHolder(m_parts.platform.workspace())
{
    m_mayRun = ensureRunningFromApplications(m_parts.platform.installation(),
                                             QCoreApplication::arguments().mid(1));
    m_showOnboarding = m_parts.request == StartRequest::Wizard ||
                       !m_parts.defaults.value(QStringLiteral("onboardingSeen"), false).toBool();
}

QuilletApp::~QuilletApp() = default;

int QuilletApp::run()
{
    if (!m_mayRun ||
        m_instance.claim(m_parts.startupId, m_parts.request) == SingleInstance::Role::Later)
        return 0;
    connect(&m_instance, &SingleInstance::activationRequested, this,
            [this](const QByteArray &startupId, StartRequest request) {
                // Where the platform looks for it.
                if (!startupId.isEmpty())
                    qputenv("DESKTOP_STARTUP_ID", startupId);
                carryOut(request);
            });
    QuitSignals quitSignals;
    connect(&quitSignals, &QuitSignals::quitRequested, this, &QuilletApp::terminate);

    QApplication::setQuitOnLastWindowClosed(false);
    launch();
    const int status = QApplication::exec();
    // The rest may take a second, and the user has already left.
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
    m_scroll = new QScrollArea;
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    group->addWidget(m_scroll);
    // On a small screen, what has the keyboard is in sight.
    connect(qApp, &QApplication::focusChanged, m_scroll, [this](QWidget *, QWidget *now) {
        if (now && m_scroll->isAncestorOf(now))
            m_scroll->ensureWidgetVisible(now);
    });
    showView();
    new WindowAccessor(
        [this](QWidget *window) {
            window->installEventFilter(&m_windowDelegateHolder.delegate);
            if (m_parts.request != StartRequest::Background)
                openMain();
        },
        m_window.get());

    m_menuBarItem = std::make_unique<MenuBarItem>(
        MenuBarItem::Actions{[this] { openMain(); }, [this] { sendFeedbackEmail(); },
                             [this] {
                                 if (m_appDelegate.updaterController)
                                     m_appDelegate.updaterController->checkForUpdates();
                             },
                             [] { terminate(); }});
    connect(&m_windowDelegateHolder.delegate, &WindowDelegate::windowClosed, this,
            &QuilletApp::explainFirstClose);
    QMetaObject::invokeMethod(
        this,
        [this] {
            const bool hasWindow = m_parts.request != StartRequest::Background;
            m_appDelegate.applicationDidFinishLaunching(hasWindow ? m_window.get() : nullptr);
            if (m_parts.request != StartRequest::Window)
                carryOut(m_parts.request);
        },
        Qt::QueuedConnection);
}

void QuilletApp::carryOut(StartRequest request)
{
    switch (request) {
    case StartRequest::Wizard:
        setShowOnboarding(true);
        openMain();
        break;
    case StartRequest::Window:
        openMain();
        break;
    case StartRequest::Permission:
        m_parts.showPermission();
        break;
    case StartRequest::Settings:
        m_parts.showSettings();
        break;
    case StartRequest::Doctor:
        m_parts.showDoctor();
        break;
    case StartRequest::Background:
        m_parts.watchInBackground();
        break;
    }
}

void QuilletApp::explainFirstClose()
{
    const QString key = QStringLiteral("closingExplained");
    if (m_parts.defaults.value(key, false).toBool())
        return;
    m_parts.defaults.setValue(key, true);
    m_parts.notice.mention(
        m_menuBarItem->isInTray()
            ? localized(
                  "Quillet keeps running in the background. Its icon in the tray opens this window "
                  "again, and ends Quillet.")
            : localized("Quillet keeps running in the background. Start Quillet again to open this "
                        "window."));
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
        m_scroll->takeWidget();
        m_view->deleteLater();
    }
    const auto &factory = m_showOnboarding ? m_parts.onboardingWizardView : m_parts.homeView;
    m_view = factory(m_window.get(), [this](bool show) { setShowOnboarding(show); });
    const QSize size = mainWindowSize();
    m_view->setMinimumSize(size);
    const QSize window = sizeOnScreen(size, m_window->screen()->availableSize());
    new WindowSizeSetter(window.width(), window.height(), m_view);
    m_scroll->setWidget(m_view);
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
        m_parts.notice.tell(localized("No mail program could be opened. Please write to %1.")
                                .arg(feedbackAddress()));
}

void QuilletApp::terminate()
{
    // Unlike quit(), this does not close the windows first: the user has closed none.
    QCoreApplication::exit(0);
}
