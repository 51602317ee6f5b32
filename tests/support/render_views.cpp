// Saves a picture of every page of the main window, for looking at after a change to the artwork,
// the texts or the layout:
//
//     QT_QPA_PLATFORM=offscreen QT_SCALE_FACTOR=1.5 render_views FOLDER
//
// QT_SCALE_FACTOR is the scale of the screen to draw for. The pictures go to FOLDER.
#include "quillet/window/HomeView.h"
#include "quillet/window/OnboardingWizardView.h"
#include "quillet/window/WindowNotifications.h"
#include "support/FakePlatform.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QPlainTextEdit>
#include <QSettings>
#include <QTemporaryDir>

#include <cstdio>

namespace
{

QString folder;
bool failed = false;

void save(QWidget &view, const char *name)
{
    QCoreApplication::processEvents(); // lays out what has changed
    const QString path = QDir(folder).filePath(
        QStringLiteral("%1@%2.png").arg(QString::fromLatin1(name)).arg(view.devicePixelRatioF()));
    if (!view.grab().save(path)) {
        std::fprintf(stderr, "%s cannot be written.\n", qUtf8Printable(path));
        failed = true;
        return;
    }
    std::printf("%s\n", qUtf8Printable(path));
}

void renderWizard()
{
    fake::Accessibility accessibility;
    QTemporaryDir settings;
    QSettings defaults(settings.filePath(QStringLiteral("defaults.ini")), QSettings::IniFormat);
    OnboardingWizardView wizard({accessibility, defaults, [] {}, [](const QString &) {}});
    wizard.show();
    save(wizard, "wizard-1-welcome");
    auto *button = wizard.findChild<QAbstractButton *>();
    button->click();
    save(wizard, "wizard-2-install");
    while (wizard.step() == 2)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    save(wizard, "wizard-3-tutorial");
    wizard.findChild<QPlainTextEdit *>()->setPlainText(
        QStringLiteral("Hi Anna, can we meet tomorow after lunch? I have some idea that I like to "
                       "talk about with you, and it would be good when Ben is there too."));
    button->setFocus(Qt::TabFocusReason);
    save(wizard, "wizard-3-tutorial-filled");
    button->click();
    save(wizard, "wizard-4-done");
}

void renderHome(bool trusted, const char *name)
{
    fake::Accessibility accessibility;
    accessibility.trusted = trusted;
    WindowNotifications notifications;
    HomeView home(accessibility, notifications);
    home.show();
    save(home, name);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "Usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    folder = QString::fromLocal8Bit(argv[1]);
    QDir().mkpath(folder);
    renderWizard();
    renderHome(true, "home-configured");
    renderHome(false, "home-not-configured");
    return failed ? 1 : 0;
}
