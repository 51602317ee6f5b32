// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/shell/QuilletApp.h"
#include "quillet/shell/Feedback.h"
#include "quillet/shell/TextRescue.h"
#include "support/CapturedOutput.h"
#include "support/FakeInstallation.h"
#include "support/FakePlatform.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QMessageBox>
#include <QMimeData>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

#include <csignal>

namespace
{

using platform::ActivationPolicy;

void runEvents()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

class QuilletAppTest : public testing::Test
{
protected:
    QTemporaryDir m_folder;
    QSettings m_defaults{m_folder.filePath(QStringLiteral("defaults.ini")), QSettings::IniFormat};
    fake::Platform<fake::Workspace, fake::Installation> m_platform;
    Notice m_notice{m_platform.desktop};
    QStringList m_views;
    std::function<void(bool)> m_setShowOnboarding;
    int m_quits = 0;

    void SetUp() override
    {
        qputenv("XDG_RUNTIME_DIR", m_folder.path().toLocal8Bit());
        m_platform.bundle.installed = true;
    }

    QuilletApp::Parts parts()
    {
        const auto factory = [this](const char *name) {
            return [this, name](QWidget *parent, std::function<void(bool)> setShowOnboarding) {
                m_views.append(QString::fromLatin1(name));
                m_setShowOnboarding = std::move(setShowOnboarding);
                return new QWidget(parent);
            };
        };
        return {m_platform,      m_notice,          m_defaults,
                factory("home"), factory("wizard"), [this] { ++m_quits; }};
    }

    static QAction *action(const QuilletApp &app, const char *title)
    {
        for (QAction *candidate : app.menuBarItem()->menu().actions()) {
            if (candidate->text() == QLatin1String(title))
                return candidate;
        }
        return nullptr;
    }

    static QString notice()
    {
        QString found;
        for (const QWidget *widget : QApplication::topLevelWidgets()) {
            const auto *box = qobject_cast<const QMessageBox *>(widget);
            if (box && box->isVisible())
                found += box->text();
        }
        return found;
    }
};

TEST_F(QuilletAppTest, ShowsTheWizardFirstAndTheHomeViewLater)
{
    QuilletApp first(parts());
    first.launch();
    EXPECT_EQ(m_views, QStringList{QStringLiteral("wizard")});
    EXPECT_TRUE(m_platform.desktop.activated.isEmpty());
    runEvents();
    QWidget *window = first.mainWindow();
    EXPECT_EQ(window->minimumSize(), QSize(600, 600));
    EXPECT_EQ(window->maximumSize(), QSize(600, 600));
    EXPECT_TRUE(m_platform.desktop.activated.contains(window));
    EXPECT_EQ(m_platform.desktop.policies.last(), std::pair(window, ActivationPolicy::Regular));

    m_setShowOnboarding(false);
    runEvents();
    m_setShowOnboarding(false);
    EXPECT_EQ(m_views.mid(1), QStringList{QStringLiteral("home")});
    EXPECT_EQ(window->findChildren<WindowSizeSetter *>().size(), 1) << "the old view is gone";

    m_defaults.setValue(QStringLiteral("onboardingSeen"), true);
    QuilletApp second(parts());
    second.launch();
    EXPECT_EQ(m_views.last(), QStringLiteral("home"));
}

TEST_F(QuilletAppTest, TheFirstCloseIsExplainedOnce)
{
    QuilletApp app(parts());
    app.launch();
    runEvents();
    capturedLines([&] { app.mainWindow()->close(); });
    EXPECT_TRUE(notice().contains(QStringLiteral("keeps running in the background")));
    m_notice.tell(QStringLiteral("another"));
    app.mainWindow()->show();
    capturedLines([&] { app.mainWindow()->close(); });
    EXPECT_EQ(notice(), QStringLiteral("another"));
}

TEST_F(QuilletAppTest, StartsWithoutAWindowAndCarriesOutItsRequest)
{
    QStringList carriedOut;
    for (const StartRequest request :
         {StartRequest::Background, StartRequest::Permission, StartRequest::Settings}) {
        m_platform.desktop.activated.clear();
        QuilletApp::Parts all = parts();
        all.request = request;
        all.watchInBackground = [&] { carriedOut.append(QStringLiteral("background")); };
        all.showPermission = [&] { carriedOut.append(QStringLiteral("permission")); };
        all.showSettings = [&] { carriedOut.append(QStringLiteral("settings")); };
        QuilletApp app(all);
        app.launch();
        runEvents();
        EXPECT_EQ(m_platform.desktop.activated.isEmpty(), request == StartRequest::Background);
        EXPECT_EQ(app.mainWindow()->isVisible(), request != StartRequest::Background);
    }
    EXPECT_EQ(carriedOut.join(u' '), QStringLiteral("background permission settings"));
}

TEST_F(QuilletAppTest, RescuesATextThatCouldNotBeWritten)
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->setText(QStringLiteral("the user's own"));
    TextRescue rescue(m_notice);
    auto outcome = platform::WriteOutcome::notWritten(platform::AXError::Failure);
    rescue.keep(QString(), outcome);
    EXPECT_EQ(clipboard->text(), QStringLiteral("the user's own")) << "nothing to rescue";
    EXPECT_FALSE(notice().contains(QStringLiteral("clipboard")));
    EXPECT_TRUE(m_platform.desktop.activated.isEmpty()) << "the keyboard stays where it is";

    outcome.isDamaged = true;
    rescue.keep(QStringLiteral("result"), outcome);
    EXPECT_TRUE(notice().contains(QStringLiteral("Look at your text")));
    EXPECT_EQ(clipboard->text(), QStringLiteral("result"));
    EXPECT_EQ(clipboard->mimeData()->data(QStringLiteral("x-kde-passwordManagerHint")), "secret");
    EXPECT_TRUE(notice().contains(QStringLiteral("on the clipboard")));
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        const auto *box = qobject_cast<const QMessageBox *>(widget);
        if (box && box->isVisible())
            box->buttons().last()->click();
    }
    EXPECT_EQ(clipboard->text(), QStringLiteral("the user's own"));
}

TEST_F(QuilletAppTest, FeedbackOpensAMessageOrTellsTheAddress)
{
    EXPECT_EQ(feedbackUrl(QStringLiteral("a@b.example")).toEncoded(),
              "mailto:a@b.example?subject=Quillet%20mac%20feedback");
    QuilletApp app(parts());
    app.launch();
    action(app, "Send Feedback")->trigger();
    EXPECT_EQ(m_platform.desktop.opened, QList<QUrl>{feedbackUrl(feedbackAddress())});
    EXPECT_EQ(notice(), QString());

    m_platform.desktop.opens = false;
    action(app, "Send Feedback")->trigger();
    EXPECT_TRUE(notice().contains(feedbackAddress()));

    runEvents();
    action(app, "Check for Updates")->trigger();
    EXPECT_FALSE(notice().contains(feedbackAddress())) << "one box, which says the newest";
}

TEST_F(QuilletAppTest, TheUpdateCheckAnswersOnceTheLaunchHasFinished)
{
    for (const auto &[bundle, expected] :
         {std::pair("/usr", "package manager"), std::pair("/usr/local", "published at"),
          std::pair("/home/a/.local/opt/quillet", "published at")}) {
        m_platform.bundle.bundle = QString::fromLatin1(bundle);
        QuilletApp app(parts());
        app.launch();
        action(app, "Check for Updates")->trigger();
        EXPECT_EQ(notice(), QString());
        runEvents();
        action(app, "Check for Updates")->trigger();
        EXPECT_TRUE(notice().contains(QLatin1String(expected))) << notice().toStdString();
        QApplication::closeAllWindows();
    }
}

TEST_F(QuilletAppTest, EndsInOrderOnQuitAndOnSignals)
{
    for (const int number : {0, SIGTERM, SIGINT, SIGHUP}) {
        QuilletApp app(parts());
        QTimer::singleShot(0, [&] {
            if (number)
                ::raise(number);
            else
                action(app, "Quit")->trigger();
        });
        m_quits = 0;
        EXPECT_EQ(capturedLines([&] { EXPECT_EQ(app.run(), 0); }), QStringList());
        EXPECT_EQ(m_quits, 1);
    }
}

TEST_F(QuilletAppTest, DoesNotRunWhenItHasBeenMoved)
{
    m_platform.bundle.installed = false;
    m_platform.bundle.targetExists = true;
    QuilletApp app(parts());
    EXPECT_EQ(app.run(), 0);
    EXPECT_EQ(app.mainWindow(), nullptr);
    EXPECT_TRUE(m_views.isEmpty());
}

} // namespace
